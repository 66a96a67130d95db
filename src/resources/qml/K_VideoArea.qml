import QtQuick 2.15
import KMedia 1.0
import Orbilens 1.0
import com.vedra.kontrols 1.0

// The panorama, what lies behind it while there is none, and the pointer over it.
FocusScope {
    id: root

    property var mediaPlayer
    // Frames of another program need no player to be there.
    property int forcedStatus: -1
    readonly property int playerStatus: forcedStatus >= 0 ? forcedStatus : mediaPlayer.playerStatus
    readonly property bool showsMedium: playerStatus === MediaPlayer.Loaded
        || playerStatus === MediaPlayer.Stalled || playerStatus === MediaPlayer.Buffered
    readonly property bool empty: playerStatus === MediaPlayer.NoMedia
        || playerStatus === MediaPlayer.InvalidMedia
    readonly property alias fps: orbilensView.fps
    readonly property bool fileDialogVisible: startScreen.item !== null
        && startScreen.item.fileDialogVisible

    signal changeRootState(string newState, string menuCategory)
    signal clicked()

    // The film goes on under a panel, so neither state changes anything here.
    states: [State { name: "On" }, State { name: "Off" }]

    function zoom(direction, factor) { navigation.zoom(direction, factor) }

    // A medium that is still opening has its picture taken once it shows. One that does not open
    // leaves nothing behind that would take the next one's.
    function printScreen(kind) { orbilensView.printScreenRequested = root.empty ? 0 : kind }
    onEmptyChanged: if (empty) printScreen(0)

    // Below the start screen, whose buttons want the pointer themselves.
    K_PointerNavigation {
        id: navigation
        anchors.fill: parent
        onClicked: {
            root.forceActiveFocus()
            root.clicked()
        }
    }

    // Made when it can first be seen, which a start with a medium need not wait for.
    Loader {
        id: startScreen

        readonly property bool seen: visible && !orbilensView.visible && !kApp.opensMedia

        anchors.fill: parent
        visible: !spinner.visible
        // Behind a panorama nobody sees where the focus is.
        enabled: !orbilensView.visible
        active: false
        onSeenChanged: if (seen) active = true
        sourceComponent: K_StartScreen {
            errorString: root.mediaPlayer.errorString
            onChangeBackend: root.changeRootState("Settings", "video")
        }
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
        visible: root.playerStatus === MediaPlayer.Loading
            || root.playerStatus === MediaPlayer.Stalled
            || root.playerStatus === MediaPlayer.Buffering
            || root.playerStatus === MediaPlayer.EndOfMedia
        running: visible
    }
}
