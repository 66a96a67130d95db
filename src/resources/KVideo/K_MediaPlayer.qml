import QtQuick 2.5
import KMedia 1.0

// One player face over whichever backend was chosen at the start; the backend's own file fills
// the properties in or reads them.
Loader {
    id: k_mediaPlayer

    property string backend: kVideoPlugin.currentPlugin
    property int duration: 0
    property string errorString: ""
    property string logMessage: ""
    property bool nativeSize: true
    property int playbackState: MediaPlayer.StoppedState
    property int position: 0
    property url mediaSource: ""
    property int playerStatus: MediaPlayer.NoMedia
    property real volume: 0.5
    // Used to compute 360 sound.
    property real yaw: 0.0
    property real pitch: 0.0
    property real roll: 0.0
    // The GL texture of the picture, for the libvlc backend, and its size in pixels.
    property int textureId: 0
    property size frameSize: Qt.size(0, 0)
    // The item that draws the picture, for the Qt backend.
    property Item shaderEffectSource: null
    property int fps: 0
    property string textureTransfer: ""
    property string texturePixelFormat: ""
    property var fileMetadata: ({})

    signal seekRequested()

    function pause() {
        if (item)
            item.pause()
    }

    function play() {
        if (item)
            item.play()
    }

    function seek(offset) {
        if (item)
            item.seek(offset)
        seekRequested()
    }

    function stop() {
        if (item)
            item.stop()
    }

    function restart() {
        if (item)
            item.restart()
    }

    // A jump beyond either end wraps to the start.
    function seekJump(delta) {
        var p = position + delta
        if (p < 0 || p > duration)
            p = 0
        seek(p)
    }

    Component.onCompleted: {
        // Read once: a choice made while running waits for the next start, and until then the colours
        // of the picture are those of the player that runs.
        backend = kVideoPlugin.currentPlugin
        var file = backend === "vlc" ? "K_MediaPlayer_VLC.qml" : "K_MediaPlayer_Qt.qml"
        // A loaded item sees the names around its Loader, not the Loader's own.
        setSource(file, { "k_mediaPlayer": k_mediaPlayer })
    }
}
