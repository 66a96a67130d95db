import QtQuick 2.15
import Orbilens 1.0
import com.vedra.kontrols 1.0
import "popup"
import "realsense"

// Root of the scene: stacks the layers, wires them to each other and to the native objects, and
// keeps the state of the screen; it holds no logic of the player.
FocusScope {
    id: root

    width: kSettings.getTyped("application/window/width")
    height: kSettings.getTyped("application/window/height")
    focus: true
    state: "Video"

    states: [
        State {
            name: "Video"
            PropertyChanges { target: k_videoArea; state: "On" }
            PropertyChanges { target: k_popup; state: "Off" }
            PropertyChanges { target: k_settingsWindow; state: "Off" }
        },
        State {
            name: "Popup"
            PropertyChanges { target: k_videoArea; state: "Off" }
            PropertyChanges { target: k_popup; state: "On" }
            PropertyChanges { target: k_settingsWindow; state: "Off" }
        },
        State {
            name: "Settings"
            PropertyChanges { target: k_videoArea; state: "Off" }
            PropertyChanges { target: k_popup; state: "Off" }
            PropertyChanges { target: k_settingsWindow; state: "On" }
        }
    ]

    function changeState(newState, menuCategory) {
        if (root.state !== newState)
            root.state = newState
    }

    function onDisplayPopup(qmlFile, rootState) { k_popup.load(qmlFile, rootState) }

    function onDisplayMessage(message, icon) {
        messageDialog.active = true
        messageDialog.item.show(message, icon)
        kGlobalObject.restoreCursor()
    }

    function onKeyPressed(event) { k_menu.onKeyPressed(event) }
    function onKeyReleased(event) { k_menu.onKeyReleased(event) }

    // A full screen has the size of its screen, which nobody chose for the window.
    function rememberSize(key, value) {
        if (!kView.fullScreen)
            kSettings.set(key, value)
    }

    onWidthChanged: rememberSize("application/window/width", width)
    onHeightChanged: rememberSize("application/window/height", height)
    Keys.onPressed: onKeyPressed(event)
    Keys.onReleased: onKeyReleased(event)

    Component.onCompleted: {
        var layers = [k_videoArea, k_bar, k_popup, k_settingsWindow, k_mediaLoader]
        for (var i = 0; i < layers.length; ++i)
            layers[i].changeRootState.connect(changeState)
        kView.displayPopup.connect(onDisplayPopup)
        k_bar.displayPopup.connect(onDisplayPopup)
        kView.displayMessage.connect(onDisplayMessage)
        ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
        var windows = kGlobalObject.platformOS().indexOf("Q_OS_WIN") === 0
        ThemeManager.loadThemes(":/", windows ? "Orvex LND Windows" : "Orvex LND")
    }

    // The window does not clear itself, so something opaque lies under everything.
    Rectangle {
        anchors.fill: parent
        color: "#222222"
    }

    K_Devices { id: k_devices }

    K_Commands {
        id: k_commands
        loader: k_mediaLoader
        bar: k_bar
        videoArea: k_videoArea
        debugInfo: k_debugInfo
        playerImage: k_playerImage
        devices: k_devices
        enableCameraArrowMove: root.state === "Video" && !k_videoArea.fileDialogVisible
            && !k_debugInfo.spinBoxHasFocus
        onPopupRequested: root.onDisplayPopup(qmlFile)
        onStateRequested: root.changeState(state)
    }

    Item {
        id: layers
        anchors { left: parent.left; right: parent.right; top: k_menu.bottom; bottom: parent.bottom }
        clip: true

        K_MediaLoader {
            id: k_mediaLoader
            x: parent.width
            onDisplayMessage: root.onDisplayMessage(message, icon)
        }

        K_VideoArea {
            id: k_videoArea
            anchors.fill: parent
            focus: true
            mediaPlayer: k_mediaLoader.mediaPlayer
            onChangeRootState: {
                if (menuCategory === "video")
                    k_settingsWindow.gotoVideoCategory()
            }
            onClicked: {
                if (kGlobalObject.touchTable)
                    k_bar.mouseIsInTriggerArea = !k_bar.mouseIsInTriggerArea
            }
        }

        K_RealSense {
            id: k_realSenseCamera
            objectName: "k_realSenseCamera"
            anchors.fill: parent
            mediaPlayer: k_mediaLoader.mediaPlayer
            mediaLoader: k_mediaLoader
        }

        K_Help {
            id: k_help
            anchors { left: parent.left; bottom: parent.bottom; margins: 20; bottomMargin: 90 }
            devices: k_devices
        }

        K_DebugInfo {
            id: k_debugInfo
            anchors { right: parent.right; bottom: parent.bottom; margins: 20; bottomMargin: 90 }
            mediaPlayer: k_mediaLoader.mediaPlayer
            fps: k_videoArea.fps
            onVisibleChanged: {
                if (!visible && activeFocus)
                    k_videoArea.forceActiveFocus()
            }
        }

        Loader {
            id: k_leapPointer
            objectName: "k_leapPointer"
            anchors.fill: parent
            active: k_devices.leapAvailable
            visible: k_devices.leapActivated
            enabled: visible
            sourceComponent: K_LeapPointer {
                playerImage: k_playerImage
                onOptionsRequested: root.onDisplayPopup("qrc:/qml/popup/PopupLeapOptions.qml")
            }
        }

        K_Bar {
            id: k_bar
            objectName: "k_bar"
            visible: k_videoArea.showsMedium
            mediaPlayer: k_mediaLoader.mediaPlayer
            mediaLoader: k_mediaLoader
            devices: k_devices
        }

        K_PlayerImage {
            id: k_playerImage
            anchors.fill: parent
            Component.onCompleted: {
                if (kLeap)
                    kLeap.setPlayerImage(k_playerImage)
            }
        }

        K_SettingsWindow {
            id: k_settingsWindow
            objectName: "k_settingsWindow"
            anchors.fill: parent
            onRestartPlayback: {
                if (k_mediaLoader.mediaPlayer.restart)
                    k_mediaLoader.mediaPlayer.restart()
            }
        }

        K_Popup {
            id: k_popup
            objectName: "k_popup"
            anchors.fill: parent
        }

        KDropArea {
            id: k_dropArea
            anchors.fill: parent
            onFilePathListChanged: kGlobalObject.openFiles(filePathList, true)
        }
    }

    K_Menu {
        id: k_menu
        anchors { left: parent.left; right: parent.right; top: parent.top }
        z: 10
        commands: k_commands
    }

    // Not among the layers, whose edges would cut off the gaze.
    K_HmdUiLoader {
        objectName: "k_hmdUiLoader"
        anchors.fill: parent
        z: 20
    }

    // Made for the first message.
    Loader {
        id: messageDialog
        active: false
        source: "K_MessageDialog.qml"
    }
}
