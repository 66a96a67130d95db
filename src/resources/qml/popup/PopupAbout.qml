import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

K_PopupPanel {
    id: root

    property bool expanded: false

    panelWidth: 600
    panelHeight: expanded ? 500 : 290
    closesOnReturn: true

    Behavior on panelHeight { NumberAnimation { duration: 200 } }

    Image {
        anchors.horizontalCenter: parent.horizontalCenter
        width: Math.min(300, parent.width)
        source: "qrc:/images/newui/LogoWhite.png"
        fillMode: Image.PreserveAspectFit
        mipmap: true
    }

    Label {
        objectName: "version"
        anchors.horizontalCenter: parent.horizontalCenter
        text: qsTr("Version ") + kView.version()
        color: "#999999"
    }

    K_PlainText {
        objectName: "thanks"
        width: parent.width
        horizontalAlignment: Text.AlignHCenter
        text: qsTr("Thanks to everyone who films the world all around, and to the makers of the "
                   + "free components that this player is built on.")
    }

    K_PanelButton {
        objectName: "expander"
        anchors.horizontalCenter: parent.horizontalCenter
        text: root.expanded ? qsTr("Hide the components used") : qsTr("Show the components used")
        onClicked: root.expanded = !root.expanded
    }

    Loader {
        width: parent.width
        active: root.expanded
        visible: active
        sourceComponent: K_RichText {
            objectName: "notices"
            font.pixelSize: 13
            markup: kGlobalObject.aboutThirdParty()
        }
    }

    buttons: K_PanelButton {
        objectName: "closeButton"
        focus: true
        text: qsTr("Close")
        onClicked: root.close()
    }
}
