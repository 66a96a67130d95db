import QtQuick 2.9
import QtQuick.Dialogs 1.2
import Orbilens 1.0

// Root of the scene: stacks the layers and wires them to the native objects; it holds no logic
// of the player.
FocusScope {
    id: root

    width: kSettings.getTyped("application/window/width")
    height: kSettings.getTyped("application/window/height")
    focus: true
    state: "Video"

    states: [
        State { name: "Video" },
        State { name: "Popup" },
        State { name: "Settings" }
    ]

    function changeState(newState, menuCategory) {
        if (root.state !== newState)
            root.state = newState
    }

    function onDisplayMessage(message, icon) {
        messageDialog.icon = icon === undefined ? StandardIcon.Information : icon
        messageDialog.text = message
        messageDialog.open()
        kGlobalObject.restoreCursor()
    }

    // A full screen has the size of its screen, which nobody chose for the window.
    function rememberSize(key, value) {
        if (!kView.fullScreen)
            kSettings.set(key, value)
    }

    onWidthChanged: rememberSize("application/window/width", width)
    onHeightChanged: rememberSize("application/window/height", height)

    Component.onCompleted: kView.displayMessage.connect(onDisplayMessage)

    // The window does not clear itself, so something opaque lies under everything.
    Rectangle {
        anchors.fill: parent
        color: "#222222"
    }

    K_MediaLoader {
        id: k_mediaLoader
        x: parent.width
        onChangeRootState: root.changeState(newState)
        onDisplayMessage: root.onDisplayMessage(message, icon)
    }

    K_VideoArea {
        id: k_videoArea
        anchors.fill: parent
        mediaPlayer: k_mediaLoader.mediaPlayer
        focus: true
    }

    MessageDialog {
        id: messageDialog
        title: kView.title()
        modality: Qt.ApplicationModal
    }

    KDropArea {
        id: k_dropArea
        anchors.fill: parent
        onFilePathListChanged: kGlobalObject.openFiles(filePathList, true)
    }
}
