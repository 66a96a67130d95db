import QtQuick 2.15
import com.vedra.kontrols 1.0
import Orbilens 1.0
import "../lib.js" as Lib

// What the depth camera shows over the picture: its own small picture with the gestures it knows,
// the timeline while the hand has it, the volume, and the call for a hand to begin with. Loaded by
// K_RealSense, whose names it sees.
Item {
    id: root

    property var device: realSense
    property var player: mediaPlayer
    property var loader: mediaLoader

    anchors.fill: parent

    Connections {
        target: root.device
        function onGestureFired(gestureId) {
            strip.mark(gestureId)
            if (gestureId === "thumb_up" || gestureId === "thumb_down")
                volume.show()
        }
    }

    K_GestureStrip {
        id: strip
        objectName: "strip"
        device: root.device
        y: 60
        x: root.device.feedbackScreen ? 0 : -width
        visible: x > -width

        Behavior on x { NumberAnimation { duration: 300; easing.type: Easing.OutQuad } }
    }

    Image {
        id: calibration
        objectName: "calibration"
        anchors.centerIn: parent
        width: 160
        height: 160
        sourceSize: Qt.size(160, 160)
        source: "qrc:/images/newui/hand_calibration.png"
        visible: root.device.calibrationState === KRealSense.Calibrating

        SequentialAnimation on opacity {
            running: calibration.visible
            loops: Animation.Infinite
            NumberAnimation { from: 1; to: 0.5; duration: 600; easing.type: Easing.InOutSine }
            NumberAnimation { from: 0.5; to: 1; duration: 600; easing.type: Easing.InOutSine }
        }
    }

    Rectangle {
        objectName: "timeline"
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 110 }
        width: parent.width * 0.6
        height: 64
        radius: 6
        color: Qt.rgba(0, 0, 0, 0.7)
        visible: root.device.uiState === KRealSense.SeekMode

        Text {
            anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 8 }
            text: root.player
                ? Lib.formatTime(root.device.seekProgression * root.player.duration) + " / "
                  + Lib.formatTime(root.player.duration)
                : ""
            textFormat: Text.PlainText
            color: "white"
            font.family: Theme.fonts.mainFont.family
            font.pixelSize: 18
        }
        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom; margins: 16 }
            height: 8
            color: "#666666"

            Rectangle {
                objectName: "progression"
                width: parent.width * root.device.seekProgression
                height: parent.height
                color: "#00A3DA"
            }
        }
    }

    Rectangle {
        id: volume
        objectName: "volume"
        anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: 60 }
        width: volumeText.implicitWidth + 30
        height: volumeText.implicitHeight + 16
        radius: 6
        color: Qt.rgba(0, 0, 0, 0.7)
        opacity: 0

        function show() { fade.restart() }

        Text {
            id: volumeText
            anchors.centerIn: parent
            text: qsTr("Volume %1 %").arg(root.loader ? Math.round(root.loader.volume * 100) : 0)
            textFormat: Text.PlainText
            color: "white"
            font.family: Theme.fonts.mainFont.family
            font.pixelSize: 24
        }
        SequentialAnimation {
            id: fade
            PropertyAction { target: volume; property: "opacity"; value: 1 }
            PauseAnimation { duration: 1000 }
            NumberAnimation { target: volume; property: "opacity"; to: 0; duration: 500 }
        }
    }
}
