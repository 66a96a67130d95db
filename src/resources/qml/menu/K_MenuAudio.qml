import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Audio")

    MenuItem {
        text: qsTr("Increase volume")
        shortcut: "Ctrl+up"
        onTriggered: commands.loader.volumeUp()
    }
    MenuItem {
        text: qsTr("Decrease volume")
        shortcut: "Ctrl+down"
        onTriggered: commands.loader.volumeDown()
    }
    K_MenuChoice {
        text: qsTr("Mute")
        shortcut: "Alt+Ctrl+down"
        chosen: commands.loader.volume === 0
        onChoose: commands.bar.toggleMute()
    }
    MenuItem {
        text: qsTr("Synchronization...")
        shortcut: "A"
        enabled: kVideoPlugin.currentPlugin === "vlc"
        onTriggered: commands.openPopup("PopupAudioSync")
    }
}
