import QtQuick 2.15
import QtQuick.Window 2.2
import KMedia 1.0

// Shows a still through the same face as a film's player. The picture itself is never seen: the
// ShaderEffectSource keeps it in the scene and out of sight, and its texture goes to the panorama.
Item {
    id: root

    property url mediaSource
    property var fileMetadata: ({})
    property string logMessage
    property int playbackState: MediaPlayer.StoppedState
    readonly property real volume: 0
    readonly property int position: 0
    readonly property int duration: 0
    readonly property int fps: 0
    readonly property int textureTransfer: 0
    readonly property string texturePixelFormat: ""
    readonly property alias shaderEffectSource: effectSource
    readonly property string errorString: image.status === Image.Error
        ? qsTr("An error occurred while loading the image") : ""
    // Follows the picture, but for the loader's word that nothing is shown any more.
    property int playerStatus: MediaPlayer.NoMedia

    function statusOfImage() {
        switch (image.status) {
        case Image.Error: return MediaPlayer.InvalidMedia
        case Image.Null: return MediaPlayer.NoMedia
        case Image.Loading: return MediaPlayer.Loading
        default: return MediaPlayer.Buffered
        }
    }

    function play() {
        if (playerStatus !== MediaPlayer.Buffered)
            return
        if (playbackState === MediaPlayer.PausedState)
            kGlobalObject.resumeTimerNextImage()
        playbackState = MediaPlayer.PlayingState
    }

    function pause() {
        if (playbackState !== MediaPlayer.PlayingState)
            return
        kGlobalObject.pauseTimerNextImage()
        playbackState = MediaPlayer.PausedState
    }

    function stop() { playbackState = MediaPlayer.StoppedState }
    function seek(ms) {}
    function seekJump(deltaMs) {}

    onPlayerStatusChanged: {
        if (playerStatus === MediaPlayer.Buffered) {
            playbackState = MediaPlayer.PlayingState
            kGlobalObject.startTimerNextImage()
        } else {
            kTextureProvider.textureId = 0
            // The next picture's is news, also where it is the same.
            kTextureProvider.textureSize = Qt.size(-1, -1)
        }
    }

    Image {
        id: image
        // Before the driver's limit is known a picture could come out too large for a texture. The
        // size comes before the source, which would otherwise be read twice.
        property bool limited: false
        function takeLimit() {
            if (kView.maxTextureSize.width <= 0)
                return
            sourceSize = Qt.binding(function() {
                return Qt.size(kView.maxTextureSize.width / Screen.devicePixelRatio,
                               kView.maxTextureSize.height / Screen.devicePixelRatio)
            })
            limited = true
        }
        Component.onCompleted: takeLimit()

        source: {
            if (!limited || root.mediaSource.toString() === "")
                return ""
            return "image://still/" + encodeURIComponent(root.mediaSource) + "?"
                + kStillOptions.edition
        }
        onStatusChanged: root.playerStatus = root.statusOfImage()
        asynchronous: true
        cache: false
        smooth: true
    }

    Connections {
        target: kView
        function onMaxTextureSizeChanged() { image.takeLimit() }
    }

    ShaderEffectSource {
        id: effectSource
        x: -1
        width: 1
        height: 1
        visible: false // drawn, it would be a copy
        sourceItem: image
        hideSource: true
        wrapMode: ShaderEffectSource.ClampToEdge
    }
}
