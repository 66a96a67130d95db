import QtQuick 2.15
import com.vedra.kontrols 1.0

// Chooses a value of a range by pointer or arrow keys. The value stays the owner's, who hears of a
// new one when the handle is let go.
Item {
    id: root

    property real from: 0
    property real to: 1
    property real stepSize: 0 // 0 takes any value
    property real value
    property string name

    readonly property real fraction: to > from ? (clamp(value) - from) / (to - from) : 0
    readonly property real shown: mouse.pressed ? mouse.fraction : fraction

    signal released(real value)

    function clamp(x) { return isNaN(x) ? from : Math.max(from, Math.min(to, x)) }

    function rounded(x) {
        return clamp(stepSize > 0 ? from + Math.round((x - from) / stepSize) * stepSize : x)
    }

    // Keys go through the range in twenty steps.
    function step(direction) { released(rounded(value + direction * (to - from) / 20)) }

    implicitWidth: 200
    implicitHeight: 30
    activeFocusOnTab: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Slider
    Accessible.name: name
    Accessible.onIncreaseAction: step(1)
    Accessible.onDecreaseAction: step(-1)
    // What assistive programs ask a slider for, by these names.
    readonly property alias minimumValue: root.from
    readonly property alias maximumValue: root.to

    Keys.onLeftPressed: step(-1)
    Keys.onDownPressed: step(-1)
    Keys.onRightPressed: step(1)
    Keys.onUpPressed: step(1)

    Rectangle {
        id: groove
        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        height: 4
        radius: 2
        color: Qt.rgba(1, 1, 1, 0.25)

        Rectangle {
            width: parent.width * root.shown
            height: parent.height
            radius: parent.radius
            color: Theme.colors.selection
        }
    }

    Rectangle {
        x: root.shown * (root.width - width)
        anchors.verticalCenter: parent.verticalCenter
        width: 14
        height: 14
        radius: 7
        color: mouse.pressed || mouse.containsMouse ? Theme.colors.selection : "white"
        border { width: root.activeFocus ? 2 : 0; color: Theme.colors.selection }
    }

    MouseArea {
        id: mouse
        readonly property real fraction: Math.max(0, Math.min(1, mouseX / Math.max(1, width)))

        anchors.fill: parent
        hoverEnabled: true
        preventStealing: true
        onPressed: root.forceActiveFocus()
        onReleased: root.released(root.rounded(root.from + fraction * (root.to - root.from)))
    }
}
