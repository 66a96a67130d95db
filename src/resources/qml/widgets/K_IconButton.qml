import QtQuick 2.15
import QtQuick.Window 2.2
import com.vedra.kontrols 1.0

// A flat button that is one icon, tinted, with a text for those who wonder what it does.
FocusScope {
    id: root

    property string name
    property url icon
    property color overlay: "white"
    property color background: "transparent"
    property color backgroundHovered: Qt.rgba(1, 1, 1, 0.12)
    property real iconSize: 22
    readonly property alias hovered: mouse.containsMouse

    signal clicked()

    implicitWidth: 40
    implicitHeight: 40
    opacity: enabled ? 1 : 0.35
    activeFocusOnTab: true

    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: clicked()

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    Keys.onSpacePressed: clicked()
    // Space is also the key of "Pause".
    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Space

    Rectangle {
        anchors.fill: parent
        color: mouse.containsMouse ? root.backgroundHovered : root.background
        border { width: root.activeFocus ? 2 : 0; color: "white" }
        Behavior on color { ColorAnimation { duration: 120 } }
    }

    TintedImage {
        anchors.centerIn: parent
        width: root.iconSize
        height: root.iconSize
        icon: root.icon
        color: root.overlay
    }

    MouseArea {
        id: mouse
        anchors.fill: parent
        hoverEnabled: true
        onContainsMouseChanged: if (containsMouse) tip.active = true
        onClicked: root.clicked()
    }

    // Made at the pointer's first visit: hidden texts would be laid out and drawn into the glyph
    // cache all the same.
    Loader {
        id: tip
        active: false
        anchors { bottom: parent.top; bottomMargin: 6 }
        // The whole text stays inside the window, also for the buttons at its edges.
        x: {
            var centred = (root.width - width) / 2
            if (!root.parent || !mouse.containsMouse)
                return centred
            var left = root.mapToItem(null, centred, 0).x
            var windowWidth = root.Window.width
            return centred + Math.max(0, 4 - left) - Math.max(0, left + width + 4 - windowWidth)
        }
        sourceComponent: K_ToolTip {
            text: root.name
            opacity: mouse.containsMouse && tipDelay.elapsed ? 1 : 0
        }
    }

    Timer {
        id: tipDelay
        property bool elapsed: false
        interval: 500
        running: mouse.containsMouse
        onRunningChanged: {
            if (running)
                elapsed = false
        }
        onTriggered: elapsed = true
    }
}
