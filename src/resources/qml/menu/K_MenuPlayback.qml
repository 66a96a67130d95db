import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Playback")

    MenuItem {
        text: commands.playing ? qsTr("Pause") : qsTr("Play")
        shortcut: "space"
        enabled: commands.hasMedia
        onTriggered: commands.loader.playPause()
    }
    MenuItem {
        text: qsTr("Stop")
        shortcut: "Ctrl+w"
        enabled: commands.hasMedia
        onTriggered: commands.loader.stop()
    }
    MenuItem {
        text: qsTr("Previous")
        shortcut: "Alt+left"
        enabled: commands.hasPlaylist
        onTriggered: kGlobalObject.playListSetPrevious()
    }
    MenuItem {
        text: qsTr("Next")
        shortcut: "Alt+right"
        enabled: commands.hasPlaylist
        onTriggered: kGlobalObject.playListSetNext(true)
    }
    MenuItem {
        text: qsTr("Slow seek forward")
        shortcut: "Ctrl+right"
        enabled: commands.hasMedia
        onTriggered: commands.seekJump(1000)
    }
    MenuItem {
        text: qsTr("Slow seek rewind")
        shortcut: "Ctrl+left"
        enabled: commands.hasMedia
        onTriggered: commands.seekJump(-1000)
    }
    MenuItem {
        text: qsTr("Fast seek forward")
        shortcut: "Alt+Ctrl+right"
        enabled: commands.hasMedia
        onTriggered: commands.seekJump(commands.fastSeekStep())
    }
    MenuItem {
        text: qsTr("Fast seek rewind")
        shortcut: "Alt+Ctrl+left"
        enabled: commands.hasMedia
        onTriggered: commands.seekJump(-commands.fastSeekStep())
    }
    Menu {
        title: qsTr("Loop")

        K_MenuChoice {
            text: qsTr("No loop")
            shortcut: "Ctrl+Shift+R"
            chosen: kGlobalObject.loopMode === 0
            onChoose: kSettings.set("instance/general/loopMode", 0)
        }
        K_MenuChoice {
            text: qsTr("Loop all")
            shortcut: "Ctrl+R"
            chosen: kGlobalObject.loopMode === 1
            onChoose: kSettings.set("instance/general/loopMode", 1)
        }
        K_MenuChoice {
            text: qsTr("Loop file")
            shortcut: "Ctrl+Alt+R"
            chosen: kGlobalObject.loopMode === 2
            onChoose: kSettings.set("instance/general/loopMode", 2)
        }
    }
}
