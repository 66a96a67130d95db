import QtQuick 2.15
import com.vedra.kontrols 1.0

// An arrow and a text that lead back to where one came from.
Item {
    id: root

    property alias text: label.text
    property bool highlighted: false
    readonly property color tint: highlighted || mouse.containsMouse ? Theme.colors.selection
                                                                     : Theme.colors.foreground

    signal clicked()

    implicitWidth: label.x + label.width + 12
    implicitHeight: 34
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: text
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()
    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Space

    Rectangle {
        anchors.fill: parent
        radius: 2
        color: "transparent"
        border { width: root.activeFocus ? 2 : 0; color: Theme.colors.foreground }
    }

    TintedImage {
        id: image
        x: 8
        anchors.verticalCenter: parent.verticalCenter
        width: 18
        height: 18
        icon: "qrc:/images/newui/Back.svg"
        color: root.tint
    }

    Label {
        id: label
        anchors { left: image.right; leftMargin: 10; verticalCenter: parent.verticalCenter }
        textFormat: Text.PlainText
        color: root.tint
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: root.clicked()
    }
}
