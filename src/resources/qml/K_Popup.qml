import QtQuick 2.15

// The frame that small panels drop into, one at a time; each is a file with a signal close().
FocusScope {
    id: root

    signal changeRootState(string newState)

    state: "Off"
    states: [
        State { name: "On"; PropertyChanges { target: root; focus: true; opacity: 1; enabled: true } },
        State { name: "Off"; PropertyChanges { target: root; opacity: 0; enabled: false } }
    ]

    // Another layer may take over without a close; a panel left behind would keep its Escape key and
    // could not drop in again.
    onStateChanged: if (state === "Off") loader.source = ""

    // The same panel again closes it, so that each command is a toggle.
    function load(qmlFile, rootState) {
        if (state === "On" && loader.source.toString() === qmlFile.toString()) {
            onClose()
            return
        }
        changeRootState(rootState || "Popup")
        opening.stop()
        loader.anchors.topMargin = -500
        loader.source = qmlFile
    }

    function onClose(rootState) {
        opening.stop()
        loader.source = ""
        changeRootState(typeof rootState === "string" && rootState !== "" ? rootState : "Video")
        loader.anchors.topMargin = -500
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0.078, 0.078, 0.078, 0.7)

        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onClicked: root.onClose()
            onWheel: wheel.accepted = true
        }
    }

    Loader {
        id: loader
        objectName: "popupLoader"
        anchors { horizontalCenter: parent.horizontalCenter; top: parent.top; topMargin: -500 }
        asynchronous: true
        focus: true
        onStatusChanged: {
            if (status === Loader.Ready) {
                item.close.connect(root.onClose)
                item.forceActiveFocus()
                opening.restart()
            } else if (status === Loader.Error) {
                console.error("ERROR in K_Popup.qml::onStatusChanged : an error occurs when "
                              + "loading qml file '" + source)
                root.onClose()
            }
        }
    }

    NumberAnimation {
        id: opening
        target: loader
        property: "anchors.topMargin"
        from: -500
        to: 0
        duration: 200
    }

    // What a panel leaves of the keys does not reach the video.
    Keys.onPressed: event.accepted = true
}
