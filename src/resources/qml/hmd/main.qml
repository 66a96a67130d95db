import QtQuick 2.15
import Orbilens 1.0
import com.vedra.kontrols 1.0

// The playlist as a panel in front of the wearer. The gaze is the pointer: what it rests on is
// hovered, and mainForeground.qml decides when that becomes a choice. 11 pixels are about a degree.
Item {
    id: root

    property var manager: kHmdUIManager
    property var playlist: kGlobalObject
    property var settings: kSettings

    property var media: []
    property var names: []
    // What would be chosen; null while the gaze rests on nothing of the kind.
    property Item hoveredItem: null

    property bool gazeUI: false
    readonly property color accent: Theme.colors.selection
    readonly property string family: Theme.fonts.mainFont.family

    width: 4000
    height: 2000
    enabled: manager !== null && manager.activated

    // Called by name from native code: moves the list on for a positive value, back for a negative.
    function slideList(mouseX) { list.flick(-2 * mouseX, 0) }

    function takePlaylist() {
        names = playlist.getPlayListNames()
        media = playlist.getPlayList()
    }

    function takeSettings() { gazeUI = settings.getTyped("application/hmd/gazeUI") }

    function hover(item, entered) {
        if (entered)
            hoveredItem = item
        else if (hoveredItem === item)
            hoveredItem = null
    }

    function close() { manager.activated = false }

    function choose(index) {
        playlist.playListIndex = index
        close()
    }

    onHoveredItemChanged: {
        manager.uiState = KHmdUIManager.Idle // also between two neighbours: the wait starts anew
        if (hoveredItem)
            manager.uiState = KHmdUIManager.Hovered
    }
    Component.onCompleted: {
        takePlaylist()
        takeSettings()
    }

    Connections {
        target: root.settings
        function onSettingsChanged(key) { root.takeSettings() }
    }

    Connections {
        target: root.playlist
        function onPlayListChanged() { root.takePlaylist() }
        function onPlayListIndexChanged() {
            if (root.playlist.playListIndex < 0)
                root.takePlaylist() // the list has been given up
        }
    }

    Connections {
        target: root.manager
        function onUiStateChanged() {
            if (root.manager.uiState === KHmdUIManager.Clicked && root.hoveredItem)
                root.hoveredItem.chosen()
        }
        function onActivatedChanged() {
            root.hoveredItem = null
            if (root.manager.activated) {
                list.cancelFlick()
                list.positionViewAtIndex(Math.max(0, root.playlist.playListIndex), ListView.Center)
            }
        }
    }

    // Beside the card nothing is meant.
    MouseArea {
        anchors.fill: parent
        onClicked: root.close()
    }

    Rectangle {
        id: card
        anchors { centerIn: parent; verticalCenterOffset: 60 } // the pictures lie straight ahead
        width: 1240
        height: 520
        radius: 32
        color: "#18181a"
        border { width: 2; color: Qt.rgba(1, 1, 1, 0.12) }

        // Clicks between the pictures must not reach what closes the panel.
        MouseArea { anchors.fill: parent }

        Text {
            id: title
            anchors { left: parent.left; leftMargin: 48; verticalCenter: closeButton.verticalCenter }
            text: qsTr("Playlist")
            textFormat: Text.PlainText
            font { family: root.family; pixelSize: 36; weight: Font.DemiBold }
            color: "white"
        }

        Text {
            objectName: "counter"
            anchors { left: title.right; leftMargin: 24; baseline: title.baseline }
            visible: root.media.length > 0
            text: qsTr("%1 of %2").arg(root.playlist.playListIndex + 1).arg(root.media.length)
            textFormat: Text.PlainText
            font { family: root.family; pixelSize: 26 }
            color: Qt.rgba(1, 1, 1, 0.6)
        }

        K_HmdButton {
            id: closeButton
            objectName: "closeButton"
            anchors { right: parent.right; rightMargin: 36; top: parent.top; topMargin: 32 }
            name: qsTr("Close")
            icon: "qrc:/images/newui/Close.svg"
            onHoverChanged: root.hover(closeButton, entered)
            onChosen: root.close()
        }

        ListView {
            id: list
            objectName: "list"
            anchors { left: parent.left; right: parent.right; margins: 112 }
            y: 136
            height: 220
            orientation: ListView.Horizontal
            spacing: 24
            clip: true
            cacheBuffer: 0
            flickDeceleration: 1500
            // Few pictures stand in the middle; many leave room for the frame of the outermost.
            leftMargin: Math.max(12, (width - root.media.length * 224 + spacing) / 2)
            rightMargin: 12
            model: root.media.length
            delegate: K_HmdMedium {
                id: medium
                medium: root.media[index] || ""
                title: root.names[index] || ""
                thumb: root.playlist.getThumb(root.media[index])
                still: root.playlist.isImageFile(root.media[index])
                playing: index === root.playlist.playListIndex
                hovered: root.hoveredItem === medium
                accent: root.accent
                family: root.family
                onHoverChanged: root.hover(medium, entered)
                onChosen: root.choose(index)
            }
        }

        // Pictures come and go softly at the sides of a list that goes on.
        component Fade: Rectangle {
            property bool rising
            anchors { top: list.top; bottom: list.bottom }
            width: 64
            gradient: Gradient {
                orientation: Gradient.Horizontal
                GradientStop { position: rising ? 1 : 0; color: card.color }
                GradientStop { position: rising ? 0 : 1; color: "#0018181a" }
            }
        }
        Fade { anchors.left: list.left; visible: !list.atXBeginning }
        Fade { anchors.right: list.right; visible: !list.atXEnd; rising: true }

        Text {
            objectName: "emptyText"
            anchors.centerIn: list
            width: list.width
            visible: root.media.length === 0
            text: qsTr("There is no playlist.\nOpen several files, a folder or a playlist file.")
            textFormat: Text.PlainText
            horizontalAlignment: Text.AlignHCenter
            lineHeight: 1.3
            font { family: root.family; pixelSize: 30 }
            color: Qt.rgba(1, 1, 1, 0.7)
        }

        component SlideZone: MouseArea {
            property int direction
            property alias icon: arrow.source
            readonly property bool wanted: direction < 0 ? !list.atXBeginning : !list.atXEnd

            y: list.y
            width: 96
            height: 148
            enabled: wanted
            hoverEnabled: true
            onContainsMouseChanged: {
                if (containsMouse)
                    root.slideList(400 * direction)
            }
            onClicked: root.slideList(400 * direction)

            Timer {
                interval: 400
                repeat: true
                running: parent.containsMouse && parent.wanted
                onTriggered: root.slideList(400 * parent.direction)
            }

            Rectangle {
                anchors.centerIn: parent
                width: 64
                height: 64
                radius: 32
                visible: parent.wanted
                color: parent.containsMouse ? root.accent : Qt.rgba(1, 1, 1, 0.12)
            }

            Image {
                id: arrow
                anchors.centerIn: parent
                width: 36
                height: 36
                sourceSize: Qt.size(72, 72)
                visible: parent.wanted
            }
        }

        SlideZone {
            objectName: "slideBack"
            anchors { left: parent.left; leftMargin: 8 }
            direction: -1
            icon: "qrc:/images/newui/SlideLeft.svg"
        }

        SlideZone {
            objectName: "slideOn"
            anchors { right: parent.right; rightMargin: 8 }
            direction: 1
            icon: "qrc:/images/newui/SlideRight.svg"
        }

        Rectangle {
            anchors { left: parent.left; right: parent.right; margins: 48; top: list.bottom }
            anchors.topMargin: 36
            height: 2
            color: Qt.rgba(1, 1, 1, 0.1)
        }

        Text {
            objectName: "hint"
            anchors { left: parent.left; right: parent.right; margins: 48; bottom: parent.bottom }
            anchors.bottomMargin: 40
            text: root.gazeUI ? qsTr("Look at a picture for a moment to play it. "
                                     + "Nod beside the panel to close it.")
                              : qsTr("Look at a picture and press to play it.")
            textFormat: Text.PlainText
            elide: Text.ElideRight
            horizontalAlignment: Text.AlignHCenter
            font { family: root.family; pixelSize: 26 }
            color: Qt.rgba(1, 1, 1, 0.6)
        }
    }
}
