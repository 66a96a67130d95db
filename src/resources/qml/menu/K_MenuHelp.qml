import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Help")

    MenuItem {
        text: qsTr("About")
        onTriggered: commands.openPopup("PopupAbout")
    }
    MenuItem {
        text: qsTr("Software Log")
        shortcut: "L"
        onTriggered: commands.openPopup("PopupSoftwareLog")
    }
    MenuItem {
        text: qsTr("Check for Updates")
        enabled: kView.checkUpdatePossible === true
        onTriggered: kView.checkUpdate()
    }
    MenuItem {
        text: qsTr("Online documentation")
        enabled: kGlobalObject.documentationUrl !== ""
        onTriggered: Qt.openUrlExternally(kGlobalObject.documentationUrl)
    }
}
