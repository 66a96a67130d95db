import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("File")

    MenuItem {
        text: qsTr("Open Media...")
        shortcut: "Ctrl+o"
        onTriggered: commands.openPopup("PopupOpenFile")
    }
    MenuItem {
        text: qsTr("Preferences")
        shortcut: "Ctrl+,"
        onTriggered: commands.stateRequested("Settings")
    }
    MenuItem {
        text: qsTr("Quit")
        shortcut: "Ctrl+q"
        onTriggered: kGlobalObject.quit()
    }
}
