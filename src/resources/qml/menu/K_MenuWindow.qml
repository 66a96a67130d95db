import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Window")

    MenuItem {
        text: kView.fullScreen ? qsTr("Exit fullscreen") : qsTr("Enter fullscreen")
        shortcut: "F"
        onTriggered: kView.fullScreenMode(!kView.fullScreen)
    }
    MenuItem {
        text: qsTr("Print screen")
        shortcut: "Ctrl+p"
        enabled: commands.hasMedia
        onTriggered: commands.videoArea.printScreen(1)
    }
    MenuItem {
        text: qsTr("Print screen HQ")
        shortcut: "Alt+Ctrl+p"
        enabled: commands.hasMedia
        onTriggered: commands.videoArea.printScreen(2)
    }
    K_MenuChoice {
        text: qsTr("Show debug informations")
        shortcut: "H"
        chosen: commands.debugInfo.visible
        onChoose: commands.debugInfo.visible = !commands.debugInfo.visible
    }
}
