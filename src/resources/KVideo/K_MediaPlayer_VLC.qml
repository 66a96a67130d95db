import QtQuick 2.5
import KMedia 1.0
import VLCQt 1.0

// The libvlc backend of K_MediaPlayer, which hands itself in.
VlcVideoPlayer {
    id: player

    property Item k_mediaPlayer

    // libvlc's states in their order: what each means to Qt Multimedia's two values.
    readonly property var states: [
        [MediaPlayer.StoppedState, MediaPlayer.NoMedia],
        [MediaPlayer.StoppedState, MediaPlayer.Loading],
        [MediaPlayer.StoppedState, MediaPlayer.Buffering],
        [MediaPlayer.PlayingState, MediaPlayer.Buffered],
        [MediaPlayer.PausedState, MediaPlayer.Buffered],
        [MediaPlayer.StoppedState, MediaPlayer.NoMedia],
        [MediaPlayer.StoppedState, MediaPlayer.EndOfMedia],
        [MediaPlayer.StoppedState, MediaPlayer.InvalidMedia]
    ]

    // Before the source: what is opened already plays with these.
    fileMetadata: k_mediaPlayer.fileMetadata
    nativeSize: k_mediaPlayer.nativeSize
    source: k_mediaPlayer.mediaSource
    volume: k_mediaPlayer.volume
    yaw: k_mediaPlayer.yaw
    pitch: k_mediaPlayer.pitch
    roll: k_mediaPlayer.roll

    onTexturePixelFormatChanged: k_mediaPlayer.texturePixelFormat = texturePixelFormat
    onTextureTransferChanged: k_mediaPlayer.textureTransfer = textureTransfer
    onFpsChanged: k_mediaPlayer.fps = fps
    onFrameSizeChanged: k_mediaPlayer.frameSize = frameSize
    onTextureIdChanged: k_mediaPlayer.textureId = textureId
    onDurationChanged: k_mediaPlayer.duration = duration
    onErrorStringChanged: k_mediaPlayer.errorString = errorString
    onPositionChanged: k_mediaPlayer.position = position
    onVlcStateChanged: {
        // The status first: whoever reacts to the end of a media asks for both.
        k_mediaPlayer.playbackState = states[vlcState][0]
        k_mediaPlayer.playerStatus = states[vlcState][1]
    }

    Component.onCompleted: {
        kVideoPlugin.vlcHwDecodingChanged.connect(restart)
        kVideoPlugin.vlcShaderColorConversionChanged.connect(restart)
        kVideoPlugin.vlcAudioDelayChanged.connect(updateAudioDelay)
    }
}
