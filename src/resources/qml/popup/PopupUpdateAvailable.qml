import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

K_PopupPanel {
    id: root

    readonly property string website: address("urlWebsite")
    readonly property string installer: address("urlDownload")

    title: qsTr("New version available") + " " + kView.newVersion()
    panelWidth: 620

    // Both come from the update server.
    function address(name) { return kView[name] ? kView[name]().toString() : "" }

    K_PlainText {
        objectName: "released"
        width: parent.width
        text: qsTr("A new version of this product has been released")
              + " (" + Qt.formatDate(kView.newVersionDate(), Qt.DefaultLocaleShortDate) + ")"
        color: Theme.colors.foreground
    }

    K_RichText {
        objectName: "changeLog"
        width: parent.width
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
        markup: kView.newChangeLog()
    }

    buttons: [
        K_PanelButton {
            objectName: "websiteButton"
            text: qsTr("Open Website")
            enabled: root.website !== ""
            onClicked: Qt.openUrlExternally(root.website)
        },
        K_PanelButton {
            objectName: "installerButton"
            text: qsTr("Download installer")
            primary: true
            enabled: root.installer !== ""
            onClicked: Qt.openUrlExternally(root.installer)
        },
        K_PanelButton {
            objectName: "closeButton"
            focus: true
            text: qsTr("Close")
            onClicked: root.close()
        }
    ]
}
