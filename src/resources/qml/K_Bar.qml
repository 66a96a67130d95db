import QtQuick 2.15
import KMedia 1.0
import com.vedra.kontrols 1.0
import "widgets"
import "lib.js" as Lib

// The control bar: rises while the pointer is low in the window or the medium rests, and leaves
// just the timeline otherwise.
FocusScope {
    id: root

    property var mediaPlayer
    property var mediaLoader
    property var devices
    property real volumeBeforeMute: 0
    property bool mouseIsInTriggerArea: false

    readonly property color active: "#00A3DA"
    readonly property color idle: "#666666"
    readonly property bool paused: mediaPlayer.playbackState === MediaPlayer.PausedState
    readonly property bool playing: mediaPlayer.playbackState === MediaPlayer.PlayingState
    readonly property real progression: mediaPlayer.duration > 0
        ? mediaPlayer.position / mediaPlayer.duration : 0
    readonly property bool hasPlaylist: kGlobalObject.playListIndex > -1

    signal changeRootState(string newState)
    signal displayPopup(string qmlFile, string rootState)

    anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
    height: timeline.height + 60
    // Whoever comes by the Tab key sees what has the focus; Escape leaves the bar again.
    state: mouseIsInTriggerArea || paused || activeFocus ? "On" : "Off"
    Keys.onEscapePressed: {
        focus = false
        event.accepted = false
    }

    states: [
        State { name: "On"; PropertyChanges { target: root; anchors.bottomMargin: 0 } },
        State { name: "Off"; PropertyChanges { target: root; anchors.bottomMargin: -60 } }
    ]
    transitions: Transition {
        NumberAnimation { property: "anchors.bottomMargin"; duration: 200 }
    }

    function hmdOnOff() { devices.hmdOnOff() }
    function leapOnOff() { devices.leapOnOff() }
    function gyroOnOff() { devices.gyroOnOff() }
    function realSenseOnOff() { devices.realSenseOnOff() }

    function toggleMute() {
        if (mediaLoader.volume > 0) {
            volumeBeforeMute = mediaLoader.volume
            mediaLoader.applyVolume(0)
        } else {
            mediaLoader.applyVolume(volumeBeforeMute)
        }
    }

    function image(name) { return "qrc:/images/newui/" + name + ".svg" }

    Connections {
        target: kView
        function onMouseMoved(x, y) {
            if (!kGlobalObject.touchTable)
                root.mouseIsInTriggerArea = y / kView.height > 0.8
        }
    }

    Rectangle {
        anchors { fill: parent; topMargin: timeline.height }
        color: Qt.rgba(0, 0, 0, 0.2)
    }

    K_Slider {
        id: timeline
        objectName: "timeline"
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: 10
        visible: !kGlobalObject.adobePlugin
        enabled: root.mediaPlayer.playbackState !== MediaPlayer.StoppedState
        name: qsTr("Timeline")
        progression: root.progression
        toolTipText: root.mediaPlayer.duration > 0
            ? function(fraction) { return Lib.formatTime(fraction * root.mediaPlayer.duration) }
            : null
        onMoved: root.mediaPlayer.seek(Math.round(newProgression * root.mediaPlayer.duration))
    }

    Rectangle {
        anchors.fill: timeline
        visible: kGlobalObject.adobePlugin
        color: root.idle
    }

    Row {
        id: left
        objectName: "leftRow"
        anchors { left: parent.left; leftMargin: 10; bottom: parent.bottom }
        height: 60
        spacing: 8
        visible: !kGlobalObject.adobePlugin

        K_IconButton {
            objectName: "playButton"
            width: 60
            height: 40
            anchors.verticalCenter: parent.verticalCenter
            name: root.playing ? qsTr("Pause") : qsTr("Play")
            icon: root.image(root.playing ? "Pause" : "Play")
            background: root.playing ? root.idle : root.active
            backgroundHovered: root.active
            onClicked: root.mediaLoader.playPause()
        }

        K_IconButton {
            objectName: "loopButton"
            width: 40
            height: 40
            anchors.verticalCenter: parent.verticalCenter
            name: [qsTr("No loop"), qsTr("Loop all"), qsTr("Loop file")][kGlobalObject.loopMode]
                || ""
            icon: root.image(kGlobalObject.loopMode <= 1 ? "Loop" : "LoopOne")
            overlay: kGlobalObject.loopMode === 0 ? root.idle
                                                  : kGlobalObject.loopMode === 1 ? root.active : "white"
            onClicked: kSettings.set("instance/general/loopMode", kGlobalObject.loopMode + 1)
        }

        // Around both, so that the way from the button to the slider does not close it.
        MouseArea {
            id: sound
            height: parent.height
            width: soundButton.width + volume.width + (volume.width > 0 ? 8 : 0)
            hoverEnabled: true
            acceptedButtons: Qt.NoButton

            K_IconButton {
                id: soundButton
                objectName: "soundButton"
                width: 30
                height: 30
                anchors.verticalCenter: parent.verticalCenter
                name: root.mediaLoader.volume > 0 ? qsTr("Mute") : qsTr("Unmute")
                icon: {
                    var level = root.mediaLoader.volume
                    return root.image("Volume_" + (level <= 0 ? "null" : level < 0.5 ? "min"
                                                   : level < 1.0 ? "med" : "Max"))
                }
                onClicked: root.toggleMute()
            }

            K_Slider {
                id: volume
                objectName: "volumeSlider"
                anchors { left: soundButton.right; leftMargin: 8; verticalCenter: parent.verticalCenter }
                height: 10
                width: sound.containsMouse || pressed || byKey ? 100 : 0
                // Next after the button for whoever comes by the Tab key, also before it is wide.
                readonly property bool byKey: soundButton.activeFocus || activeFocus
                visible: width > 0 || byKey
                name: qsTr("Volume")
                live: true
                progression: root.mediaLoader.volume
                onMoved: root.mediaLoader.setVolume(newProgression)

                Behavior on width {
                    SequentialAnimation {
                        PauseAnimation { duration: 100 }
                        NumberAnimation { duration: 200 }
                    }
                }
            }
        }

        Text {
            objectName: "positionText"
            anchors.verticalCenter: parent.verticalCenter
            visible: left.x + x + width + previous.width + next.width + 40 < right.x
            text: Lib.formatTime(root.mediaPlayer.position) + " / "
                  + Lib.formatTime(root.mediaPlayer.duration)
            textFormat: Text.PlainText
            color: "white"
            font: Qt.font({ family: root.Theme.fonts.mainFont.family, pixelSize: 15 })
        }

        K_IconButton {
            id: previous
            objectName: "previousButton"
            width: 30
            height: 30
            anchors.verticalCenter: parent.verticalCenter
            visible: root.hasPlaylist
            name: qsTr("Previous")
            icon: root.image("Previous")
            onClicked: kGlobalObject.playListSetPrevious()
        }

        K_IconButton {
            id: next
            objectName: "nextButton"
            width: 30
            height: 30
            anchors.verticalCenter: parent.verticalCenter
            visible: root.hasPlaylist
            name: qsTr("Next")
            icon: root.image("Next")
            onClicked: kGlobalObject.playListSetNext()
        }
    }

    Row {
        id: right
        anchors { right: parent.right; rightMargin: 10; bottom: parent.bottom }
        height: 60
        spacing: 4

        K_IconButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.devices.sensorAvailable
            name: qsTr("Gyroscope")
            icon: root.image("Gyroscope")
            overlay: root.devices.sensorActivated ? root.active : "white"
            onClicked: root.gyroOnOff()
        }

        K_IconButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.devices.realSenseAvailable
            name: qsTr("Real Sense")
            icon: root.image("RealSense")
            overlay: root.devices.realSenseActivated ? root.active : "white"
            onClicked: root.realSenseOnOff()
        }

        K_IconButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.devices.leapAvailable
            name: qsTr("Leap Motion")
            icon: root.image("LeapMotion")
            overlay: root.devices.leapActivated ? root.active : "white"
            onClicked: root.leapOnOff()
        }

        K_IconButton {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.devices.headsetAvailable
            name: qsTr("HMD")
            icon: root.devices.headset ? root.image("Hmd_" + root.devices.headset.sdkType()) : ""
            overlay: root.devices.headsetActivated ? root.active : "white"
            onClicked: root.hmdOnOff()
        }

        K_IconButton {
            objectName: "fullscreenButton"
            anchors.verticalCenter: parent.verticalCenter
            name: kView.fullScreen ? qsTr("Exit fullscreen") : qsTr("Enter fullscreen")
            icon: root.image(kView.fullScreen ? "ExitFullscreen" : "Fullscreen")
            overlay: kView.fullScreen ? root.active : "white"
            onClicked: kView.fullScreenMode(!kView.fullScreen)
        }
    }
}
