import QtQuick 2.15
import KMedia 1.0
import Orbilens 1.0
import KVideo 1.0

// Owns the players and loads what KGlobalObject decides to show. It lies outside the window: a
// source must be painted to yield a texture, but nobody should see it there.
Item {
    id: root

    property QtObject mediaPlayer: videoPlayer
    property real volume: kSettings.getTyped("application/volume")

    // StandardIcon.Critical, for whose module no start should wait.
    readonly property int criticalIcon: 3

    signal changeRootState(string newState)
    signal displayMessage(string message, int icon)

    width: parent.width
    height: parent.height

    // --- Called by name from native code ------------------------------------------------------

    function processFileSource(fileSource, clearPlaylist, error, dragAndDrop) {
        mediaPlayer.mediaSource = ""
        videoPlayer.errorString = ""
        kView.updateTitle(fileSource)
        if (clearPlaylist)
            kGlobalObject.clearPlayList()

        var message = error
        var url
        if (message === "") {
            url = kGlobalObject.checkFilePath(fileSource)
            message = choosePlayer(url)
            kView.updateTitle(url)
        }

        var metadata = kGlobalObject.readMetaData(url)
        var log = kGlobalObject.logMetaData(url, metadata)
        if (message === "") {
            mediaPlayer.fileMetadata = metadata
            mediaPlayer.logMessage = log
            mediaPlayer.mediaSource = url
        } else {
            mediaPlayer.fileMetadata = {}
            mediaPlayer.logMessage = ""
            mediaPlayer.mediaSource = ""
            displayMessage(message, criticalIcon)
        }
        if (dragAndDrop)
            changeRootState("Video")
    }

    function destroyVideoPlayer() {
        videoPlayer.stop()
        videoPlayer.source = ""
    }

    function play() { mediaPlayer.play() }
    function pause() { mediaPlayer.pause() }
    function seek(position) { mediaPlayer.seek(position) }
    function seekJumpUp() { mediaPlayer.seekJump(fastStep()) }
    function seekJumpDown() { mediaPlayer.seekJump(-fastStep()) }

    function playPause() {
        if (mediaPlayer.playbackState === MediaPlayer.PlayingState)
            pause()
        else
            play()
    }

    function stop() {
        mediaPlayer.playerStatus = MediaPlayer.NoMedia
        processFileSource("", true, "", false)
        mediaPlayer.stop()
    }

    // A master's state; its stop is left out, since a slave would go black in the middle of a film.
    function syncPlaybackState(masterState) {
        switch (masterState) {
        case MediaPlayer.PlayingState:
            play()
            break
        case MediaPlayer.PausedState:
            pause()
            break
        case MediaPlayer.StoppedState:
            break
        default:
            console.error("ERROR in K_MediaLoader::syncPlaybackState() : masterState '"
                          + masterState + "' is not supported.")
        }
    }

    // --- Volume -------------------------------------------------------------------------------

    function volumeUp() { setVolume(volume + 0.05) }
    function volumeDown() { setVolume(volume - 0.05) }

    // Loudness of this run, kept for the next.
    function setVolume(value) {
        applyVolume(value)
        kSettings.set("application/volume", volume)
    }

    // Loudness of the moment: muting is not what the next run should start with.
    function applyVolume(value) { volume = Math.max(0, Math.min(1, value)) }

    // --- Players ------------------------------------------------------------------------------

    function fastStep() { return Math.round(mediaPlayer.duration / 20) }

    // Selects the player for a medium; returns why there is none, or an empty text.
    function choosePlayer(url) {
        if (!kGlobalObject.isValidFilePath(url))
            return qsTr("Cannot open the file") + " '" + url + "'."
        if (kGlobalObject.isImageFile(url)) {
            videoPlayer.pause()
            videoPlayer.mediaSource = ""
            videoPlayer.stop()
            mediaPlayer = imagePlayer
            return ""
        }
        var kind = kGlobalObject.isVideoFile(url)
        if (kind === 1 || !kGlobalObject.isFile(url)) {
            imagePlayer.mediaSource = ""
            mediaPlayer = videoPlayer
            return ""
        }
        if (kind === 2) {
            return qsTr("Raw video format is only supported with custom VLC arguments.<br />"
                        + "See <a href=\"%1\">documentation</a>.").arg(kGlobalObject.documentationUrl)
        }
        return qsTr("The file format is not supported.")
    }

    function showMediaPlayer() {
        var still = mediaPlayer === imagePlayer
        kTextureProvider.setShaderEffectSource(mediaPlayer.shaderEffectSource, still)
        kShaderCodeBuilder.invertedColors = !still && videoPlayer.backend === "vlc"
                && !kTextureProvider.isSharedMemory()
        showTexture(mediaPlayer)
    }

    // The backend that has a texture of its own states its name here.
    function showTexture(player) {
        if (player !== mediaPlayer || player.textureId === undefined)
            return
        if (player.frameSize.width > 0)
            kTextureProvider.textureSize = player.frameSize
        kTextureProvider.textureId = player.textureId
    }

    function videoEnded() {
        if (!kGlobalObject.playListIsEmpty())
            kGlobalObject.playListSetNext(false)
        else if (kGlobalObject.loopMode > 0)
            videoPlayer.restart()
        else
            stop()
    }

    onMediaPlayerChanged: showMediaPlayer()
    Component.onCompleted: {
        kGlobalObject.setMediaLoader(root)
        showMediaPlayer()
    }

    Connections {
        target: kGlobalObject
        function onEndOfPlaylistReached() { root.stop() }
    }

    K_MediaPlayer {
        id: videoPlayer
        objectName: "videoPlayer"
        anchors.fill: parent
        volume: root.volume
        yaw: kGlobalObject.yaw
        pitch: kGlobalObject.pitch
        roll: kGlobalObject.roll
        // Only now, since nobody knows which of the two completes first.
        onLoaded: kGlobalObject.hackQmlMediaPlayer(videoPlayer)
        onTextureIdChanged: root.showTexture(videoPlayer)
        onFrameSizeChanged: root.showTexture(videoPlayer)
        onShaderEffectSourceChanged: {
            if (root.mediaPlayer === videoPlayer)
                root.showMediaPlayer()
        }
        onPositionChanged: kGlobalObject.interpolateKeyPoints(position)
        onPlayerStatusChanged: {
            if (playerStatus === MediaPlayer.EndOfMedia && root.mediaPlayer === videoPlayer)
                root.videoEnded()
        }
    }

    K_ImagePlayer {
        id: imagePlayer
        objectName: "imagePlayer"
    }
}
