import QtQuick 2.9
import com.vedra.kontrols 1.0

// The handle of a thin scroll bar; lies where a scroll view's style names its handle.
Item {
    id: root

    property Item control
    readonly property bool grabbed: styleData.pressed || styleData.hovered

    implicitWidth: 10
    implicitHeight: 10

    Rectangle {
        anchors.fill: parent
        anchors.margins: root.grabbed ? 1 : 2
        radius: Math.min(width, height) / 2
        color: root.control.Theme.colors.foreground
        opacity: styleData.pressed ? 0.8 : styleData.hovered ? 0.6 : 0.35
    }
}
