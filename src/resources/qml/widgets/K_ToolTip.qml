import QtQuick 2.15
import com.vedra.kontrols 1.0

// A short text beside the pointer: says what an icon does or where on the timeline one points.
Rectangle {
    id: root

    property alias text: label.text

    width: label.implicitWidth + 12
    height: label.implicitHeight + 8
    radius: 2
    color: Qt.rgba(0, 0, 0, 0.85)
    border { width: 1; color: Qt.rgba(1, 1, 1, 0.2) }
    visible: opacity > 0

    Behavior on opacity { NumberAnimation { duration: 120 } }

    Text {
        id: label
        anchors.centerIn: parent
        color: "white"
        font: Qt.font({ family: root.Theme.fonts.mainFont.family, pixelSize: 13 })
        textFormat: Text.PlainText
    }
}
