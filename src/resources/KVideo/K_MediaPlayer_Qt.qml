import QtQuick 2.5
import QtQuick.Window 2.2
import QtMultimedia 5.5

// The Qt Multimedia backend of K_MediaPlayer, which hands itself in.
Item {
    id: player

    property Item k_mediaPlayer

    // Peers reach the player's media object through this to ask for more position reports.
    property alias qtMediaPlayer: mediaPlayer

    function pause() {
        mediaPlayer.pause()
    }

    function play() {
        mediaPlayer.play()
    }

    function seek(offset) {
        mediaPlayer.seek(offset)
    }

    function stop() {
        mediaPlayer.stop()
    }

    // Some media services do not leave the end of a media by seeking.
    function restart() {
        if (["avf", "qt7", "ds"].indexOf(k_mediaPlayer.backend) !== -1) {
            var source = k_mediaPlayer.mediaSource
            k_mediaPlayer.mediaSource = ""
            k_mediaPlayer.mediaSource = source
            mediaPlayer.play()
        } else {
            // Asked for at the end of a media, which the service has announced but not yet left: it
            // would stop what starts now.
            Qt.callLater(playFromStart)
        }
    }

    function playFromStart() {
        mediaPlayer.seek(0)
        mediaPlayer.play()
    }

    VideoOutput {
        id: videoOutput

        // Pixel for pixel: what is drawn here is the whole sphere, so that bars beside the picture
        // would be part of it.
        readonly property bool ownSize: k_mediaPlayer.nativeSize && sourceRect.width > 0
            && sourceRect.height > 0

        width: ownSize ? sourceRect.width / Screen.devicePixelRatio : parent.width
        height: ownSize ? sourceRect.height / Screen.devicePixelRatio : parent.height
        fillMode: k_mediaPlayer.nativeSize ? VideoOutput.PreserveAspectFit : VideoOutput.Stretch
        source: mediaPlayer
    }

    MediaPlayer {
        id: mediaPlayer

        autoPlay: true
        volume: k_mediaPlayer.volume
        source: k_mediaPlayer.mediaSource

        onDurationChanged: k_mediaPlayer.duration = duration
        onPositionChanged: k_mediaPlayer.position = position
        onPlaybackStateChanged: k_mediaPlayer.playbackState = playbackState
        onStatusChanged: k_mediaPlayer.playerStatus = status
        onErrorChanged: {
            if (errorString !== "")
                k_mediaPlayer.errorString = errorString
            else if (error === 1)
                k_mediaPlayer.errorString = "Mediaplayer can't find a resource. Codec may be missing."
            else if (error === 0)
                k_mediaPlayer.errorString = ""
            else
                k_mediaPlayer.errorString = "Unknow mediaplayer error (" + error + ")"
        }
    }

    ShaderEffectSource {
        id: effectSource

        sourceItem: videoOutput
        hideSource: false
        x: -1
        width: 1
        height: 1
        wrapMode: ShaderEffectSource.ClampToEdge
    }

    Component.onCompleted: k_mediaPlayer.shaderEffectSource = effectSource
}
