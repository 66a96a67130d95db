import QtQuick 2.15
import com.vedra.kontrols 1.0

// The path of a folder, to read; a click or Return asks for another.
Rectangle {
    id: root

    property string path
    property string name

    signal clicked()

    implicitHeight: 30
    radius: Theme.radius
    color: Theme.colors.darkerBackground
    border {
        width: activeFocus ? 2 : 1
        color: activeFocus ? Theme.colors.selection
             : mouse.containsMouse ? Theme.colors.foreground : Theme.colors.darkerForeground
    }
    activeFocusOnTab: true
    Accessible.role: Accessible.Button
    Accessible.name: name + ": " + path
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()
    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Space

    // The end of a path tells more than its beginning.
    K_PlainText {
        anchors {
            left: parent.left
            leftMargin: 8
            right: icon.left
            rightMargin: 6
            verticalCenter: parent.verticalCenter
        }
        text: root.path
        color: Theme.colors.foreground
        wrapMode: Text.NoWrap
        elide: Text.ElideLeft
    }

    Image {
        id: icon
        anchors { right: parent.right; rightMargin: 8; verticalCenter: parent.verticalCenter }
        source: "qrc:/images/newui/Browse.svg"
        sourceSize: Qt.size(16, 16)
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        cursorShape: Qt.PointingHandCursor
        onClicked: {
            root.forceActiveFocus()
            root.clicked()
        }
    }
}
