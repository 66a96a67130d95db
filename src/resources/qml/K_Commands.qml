import QtQuick 2.15
import KMedia 1.0
import Orbilens 1.0
import "lib.js" as Lib

// What the menus and keys do, apart from how they are listed.
QtObject {
    id: root

    property var loader
    property var bar
    property var videoArea
    property var debugInfo
    property var playerImage
    property var devices
    // Where arrow keys belong to a text or a list, they do not move the camera.
    property bool enableCameraArrowMove: true

    readonly property bool macKeys: kGlobalObject.platformOS() === "Q_OS_MAC"
    readonly property real degToRad: Math.PI / 180
    readonly property var player: loader.mediaPlayer
    readonly property bool hasMedia: player.playerStatus !== MediaPlayer.NoMedia
    readonly property bool hasPlaylist: kGlobalObject.playListIndex > -1
    readonly property bool playing: player.playbackState === MediaPlayer.PlayingState
    readonly property bool flatSource:
        kShaderCodeBuilder.projectionSource === KShaderCodeBuilder.STANDARD
    property var multipleKeys: ({ "C": false, "H": false })

    signal popupRequested(string qmlFile)
    signal stateRequested(string state)

    function openPopup(name) { popupRequested("qrc:/qml/popup/" + name + ".qml") }

    function seekJump(delta) {
        var position = player.position
        player.seekJump(delta)
        playerImage.onShowPlayerText(Lib.formatTime(position))
    }

    function fastSeekStep() { return Math.round(player.duration / 20) }

    // direction: -1 left or up, 1 right or down.
    function turn(property, direction) {
        var step = kSettings.getTyped("instance/general/cameraMoveSteps") * degToRad
        kGlobalObject.interpolateValue(property, direction * step,
                                       kSettings.getTyped("instance/general/cameraInertia"), true)
    }

    function moveSideways(direction) {
        if (devices.headsetActivated)
            devices.headset.shiftYaw -= direction * Math.PI / 2
        else
            turn("yawInterpolate", direction)
    }

    function moveUpDown(direction) {
        if (!devices.headsetActivated)
            turn("pitchInterpolate", direction)
    }

    function keyPressed(event) {
        var modifiers = Qt.ShiftModifier | Qt.ControlModifier
        if (event.key === Qt.Key_Escape) {
            kView.fullScreenMode(false)
        } else if (event.key === Qt.Key_Return || event.key === Qt.Key_Enter) {
            littlePlanetAndBack()
        } else if ((event.modifiers & modifiers) === modifiers
                   && (event.key === Qt.Key_C || event.key === Qt.Key_H)) {
            multipleKeys[event.key === Qt.Key_C ? "C" : "H"] = true
            if (multipleKeys["C"] && multipleKeys["H"] && kView.displayCrashManager)
                kView.displayCrashManager()
        }
    }

    function keyReleased(event) { multipleKeys = { "C": false, "H": false } }

    function littlePlanetAndBack() {
        if (kSettings.getTyped("instance/output/projection") !== KShaderCodeBuilder.ORVEX)
            return
        var opens = kGlobalObject.fov < 180
        kGlobalObject.interpolateValue("fov", opens ? 250 : 90, 1000)
        kGlobalObject.interpolateValue("pitch", opens ? Math.PI / 2 : 0, 1000)
    }
}
