import QtQuick 2.15
import "../widgets"

K_PopupPanel {
    id: root

    title: qsTr("Components used")
    panelWidth: 600
    panelHeight: 500
    closesOnReturn: true

    K_RichText {
        objectName: "notices"
        width: parent.width
        font.pixelSize: 13
        markup: kGlobalObject.aboutThirdParty()
    }

    buttons: K_PanelButton {
        objectName: "closeButton"
        focus: true
        text: qsTr("Close")
        onClicked: root.close()
    }
}
