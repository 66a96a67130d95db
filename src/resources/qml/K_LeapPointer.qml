import QtQuick 2.15
import "leap"
import "widgets"

// What the hand tracker shows over the picture: hands, pointer, warnings, tutorial, and the camera's
// way back from beyond the little planet.
Item {
    id: root

    property var leap: kLeap
    property var camera: kGlobalObject
    property var builder: kShaderCodeBuilder
    property var headset: kHmdDevice
    property var playerImage

    readonly property bool headsetActivated: headset !== null && headset.activated
    property point place

    signal optionsRequested()

    Connections {
        target: root.leap
        function onPointerChanged() {
            root.place = root.mapFromItem(null, root.leap.pointer.x, root.leap.pointer.y)
        }
        function onPitchBounce(pitch_end, fov_end, roll_end) {
            pitchBack.to = pitch_end
            pitchBack.restart()
            if (fov_end < 0)
                return
            fovBack.to = fov_end
            rollBack.to = roll_end
            fovBack.restart()
            rollBack.restart()
        }
        function onIconProjChange() {
            if (root.playerImage)
                root.playerImage.onShowPlayerImage("qrc:/images/newui/LeapInterface/Projection_"
                                                   + root.builder.projection + ".svg")
        }
    }

    Connections {
        target: root.headset
        function onActivatedChanged() { root.leap.hmdActivated() }
    }

    component Bounce: NumberAnimation {
        target: root.camera
        duration: 1000
        easing.type: Easing.OutBounce
    }

    Bounce { id: pitchBack; property: "pitch"; onFinished: root.leap.animationFinished() }
    Bounce { id: fovBack; property: "fov" }
    Bounce { id: rollBack; property: "roll" }

    K_LeapHands {
        anchors.fill: parent
        leap: root.leap
        headsetActivated: root.headsetActivated
    }

    K_LeapZone {
        anchors.fill: parent
        edges: root.leap.handOutZone
    }

    Rectangle {
        objectName: "pointer"
        readonly property real side: 200 * (1 - root.leap.pointer.z)
        x: root.place.x - side / 2
        y: root.place.y - side / 2
        width: side
        height: side
        radius: side / 2
        visible: root.leap.pointer.w === 1
        color: Qt.rgba(0, 0.64, 0.85, 0.15 + 0.35 * root.leap.pointer.z)
        border { width: 3; color: root.leap.menuState ? "white" : "#00A3DA" }
        antialiasing: true
    }

    K_LeapTutorial {
        objectName: "tutorial"
        anchors { right: parent.right; top: parent.top; margins: 20 }
        visible: shown !== undefined && !root.headsetActivated
        page: root.leap.tutoState
        onNext: root.leap.nextTutorialPage()
        onClose: root.leap.tutoState = -1
    }

    Repeater {
        model: root.headsetActivated
            ? [root.headset.lensCenterLeft, root.headset.lensCenterRight] : []

        K_LeapTutorial {
            x: root.width * modelData.x - width / 2
            y: root.height * modelData.y - height / 2
            buttons: false
            page: root.leap.tutoState
        }
    }

    K_IconButton {
        objectName: "optionsButton"
        anchors { left: parent.left; top: parent.top; margins: 12 }
        width: 30
        height: 30
        visible: !root.headsetActivated
        name: qsTr("Leap Motion options")
        icon: "qrc:/images/newui/Settings.svg"
        onClicked: root.optionsRequested()
    }
}
