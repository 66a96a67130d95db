import QtQuick 2.9
import QtQuick.Dialogs 1.2
import QtMultimedia 5.8
import Orbilens 1.0

// Owns the players and loads what KGlobalObject decides to show. It lies outside the window: a
// source must be painted to yield a texture, but nobody should see it there.
Item {
    id: root

    property QtObject mediaPlayer: imagePlayer

    signal changeRootState(string newState)
    signal displayMessage(string message, int icon)

    // Called by name from KGlobalObject.
    function processFileSource(fileSource, clearPlaylist, error, dragAndDrop) {
        mediaPlayer.mediaSource = ""
        kView.updateTitle(fileSource)
        if (clearPlaylist)
            kGlobalObject.clearPlayList()

        var message = error
        var url = ""
        if (message === "" && fileSource.toString() !== "") {
            url = kGlobalObject.checkFilePath(fileSource)
            if (!kGlobalObject.isValidFilePath(url))
                message = qsTr("Cannot open the file") + " '" + url + "'."
            else if (kGlobalObject.isImageFile(url))
                mediaPlayer = imagePlayer
            else
                message = qsTr("The file format is not supported.")
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
            displayMessage(message, StandardIcon.Critical)
        }
        if (dragAndDrop)
            changeRootState("Video")
    }

    function destroyVideoPlayer() {}

    function play() { mediaPlayer.play() }
    function pause() { mediaPlayer.pause() }

    // Called by name from KUdpSocket. A stop is ignored: it would blacken a slave that still reads
    // a large film.
    function syncPlaybackState(state) {
        if (state === MediaPlayer.PlayingState)
            play()
        else if (state === MediaPlayer.PausedState)
            pause()
    }

    function seek(ms) { mediaPlayer.seek(ms) }

    function stop() {
        processFileSource("", true, "", false)
        mediaPlayer.stop()
    }

    function showMediaPlayer() {
        kTextureProvider.setShaderEffectSource(mediaPlayer.shaderEffectSource, true)
        kShaderCodeBuilder.invertedColors = false
    }

    onMediaPlayerChanged: showMediaPlayer()
    Component.onCompleted: {
        kGlobalObject.setMediaLoader(root)
        showMediaPlayer()
    }

    K_ImagePlayer { id: imagePlayer }
}
