import QtQuick 2.9
import QtQuick.Controls 1.4
import QtMultimedia 5.8
import Orbilens 1.0

// The panorama, what lies behind it while there is none, and the pointer over it.
FocusScope {
    id: root

    property var mediaPlayer
    // Frames of another program need no player to be there.
    property int forcedStatus: -1
    readonly property int playerStatus: forcedStatus >= 0 ? forcedStatus : mediaPlayer.playerStatus
    readonly property bool showsMedium: playerStatus === MediaPlayer.Loaded
        || playerStatus === MediaPlayer.Stalled || playerStatus === MediaPlayer.Buffered
    readonly property alias fps: orbilensView.fps

    K_StartScreen {
        anchors.fill: parent
        visible: !spinner.running
        errorString: root.mediaPlayer.errorString
    }

    OrbilensView {
        id: orbilensView
        objectName: "orbilensView"
        anchors.fill: parent
        visible: root.showsMedium
        Component.onCompleted: {
            init(kApp)
            if (kTextureProvider.isSharedMemory())
                root.forcedStatus = MediaPlayer.Buffered
        }
    }

    BusyIndicator {
        id: spinner
        anchors.centerIn: parent
        width: 150
        height: 150
        running: root.playerStatus === MediaPlayer.Loading
            || root.playerStatus === MediaPlayer.Stalled
            || root.playerStatus === MediaPlayer.Buffering
            || root.playerStatus === MediaPlayer.EndOfMedia
    }

    K_PointerNavigation {
        anchors.fill: parent
    }
}
