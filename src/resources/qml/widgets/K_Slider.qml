import QtQuick 2.15

// A bar that shows a part of a whole and lets one choose another: the timeline and the volume.
// The owner's value stays the truth; while a press lasts the bar follows the pointer.
Item {
    id: root

    property real progression: 0 // 0 to 1
    property string name
    // Text for the point under the pointer (0 to 1); without one no tooltip shows.
    property var toolTipText: null
    property color barColor: Qt.rgba(1, 1, 1, 0.25)
    property color filledColor: "#00A3DA"
    // Emits while the pointer moves, not at its release alone.
    property bool live: false

    readonly property alias pressed: area.pressed
    readonly property real shown: area.pressed ? area.fraction : clamp(progression)

    signal moved(real newProgression)

    implicitHeight: 10

    Accessible.role: Accessible.Slider
    Accessible.name: name
    // What assistive programs ask a slider for, by these names.
    readonly property real value: clamp(progression)
    readonly property real minimumValue: 0
    readonly property real maximumValue: 1
    readonly property real stepSize: 0.05
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)

    activeFocusOnTab: true
    Keys.onLeftPressed: step(-1)
    Keys.onDownPressed: step(-1)
    Keys.onRightPressed: step(1)
    Keys.onUpPressed: step(1)
    // The arrows turn the camera otherwise.
    Keys.onShortcutOverride: event.accepted = event.modifiers === Qt.NoModifier
        && [Qt.Key_Left, Qt.Key_Right, Qt.Key_Up, Qt.Key_Down].indexOf(event.key) !== -1

    function step(direction) { moved(clamp(value + direction * stepSize)) }

    function clamp(value) {
        return isNaN(value) ? 0 : Math.max(0, Math.min(1, value))
    }

    Rectangle {
        anchors.fill: parent
        color: root.barColor
    }

    Rectangle {
        z: 1
        anchors { fill: parent; margins: -2 }
        visible: root.activeFocus
        color: "transparent"
        border { width: 2; color: "white" }
    }

    Rectangle {
        width: parent.width * root.shown
        height: parent.height
        color: root.filledColor
    }

    MouseArea {
        id: area
        // Where the pointer is; a finger comes down without having hovered there.
        property real fraction: 0

        function follow(x) { fraction = root.clamp(x / Math.max(1, width)) }

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onEntered: follow(mouseX)
        onPressed: {
            follow(mouse.x)
            if (root.live)
                root.moved(fraction)
        }
        onPositionChanged: {
            follow(mouse.x)
            if (root.live && pressed)
                root.moved(fraction)
        }
        onReleased: {
            if (!root.live)
                root.moved(fraction)
        }
    }

    K_ToolTip {
        x: Math.max(0, Math.min(root.width - width, area.fraction * root.width - width / 2))
        anchors { bottom: parent.top; bottomMargin: 6 }
        text: root.toolTipText ? root.toolTipText(area.fraction) : ""
        opacity: root.toolTipText && area.containsMouse && root.enabled ? 1 : 0
    }
}
