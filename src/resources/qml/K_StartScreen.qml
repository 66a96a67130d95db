import QtQuick 2.15
import com.vedra.kontrols 1.0
import com.vedra.components 1.0

// What the window shows while no medium does: how to open one, or why the last would not open.
Rectangle {
    id: root

    property string errorString
    readonly property bool failed: errorString !== ""
    readonly property bool fileDialogVisible: fileDialog.item !== null && fileDialog.item.visible

    signal changeBackend()

    color: "#222222"

    Rectangle {
        objectName: "band"
        // From the middle of the button down.
        y: choices.y + choices.height - 30
        width: parent.width
        height: parent.height - y
        color: "#1b1b1b"
    }

    Image {
        id: logo
        anchors { top: parent.top; topMargin: 20; horizontalCenter: parent.horizontalCenter }
        source: "qrc:/images/newui/LogoWhite.png"
        width: Math.min(360, parent.width - 40)
        fillMode: Image.PreserveAspectFit
    }

    Label {
        id: version
        anchors { top: logo.bottom; topMargin: 6; horizontalCenter: parent.horizontalCenter }
        text: qsTr("Version ") + kView.version()
        color: "#999999"
    }

    Column {
        id: choices
        anchors.horizontalCenter: parent.horizontalCenter
        y: Math.max(version.y + version.height + 20, (parent.height - height) / 2)
        width: parent.width - 40
        spacing: 20

        Label {
            width: parent.width
            visible: !root.failed
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: qsTr("Drag & Drop your spherical videos here")
            textFormat: Text.PlainText
        }

        Label {
            width: parent.width
            visible: !root.failed
            horizontalAlignment: Text.AlignHCenter
            text: qsTr("- or -")
        }

        Label {
            objectName: "errorLabel"
            width: parent.width
            visible: root.failed
            horizontalAlignment: Text.AlignHCenter
            wrapMode: Text.Wrap
            text: root.errorString
            textFormat: Text.PlainText
            color: "#ff5050"
        }

        Button {
            objectName: "selectFilesButton"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: !root.failed
            width: 300
            height: 60
            text: qsTr("Select files")
            backgroundColor: "#00A3DA"
            backgroundColorHovered: "#33b8e4"
            onClicked: {
                fileDialog.active = true
                fileDialog.item.show()
            }
        }

        Button {
            objectName: "changeBackendButton"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.failed && kVideoPlugin.pluginsList().length > 1
            width: 300
            height: 60
            text: qsTr("change video backend")
            backgroundColor: "#666666"
            onClicked: root.changeBackend()
        }

        Button {
            objectName: "nextMediaButton"
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.failed && kGlobalObject.playListIndex > -1
            width: 300
            height: 60
            text: qsTr("load next media")
            backgroundColor: "#00A3DA"
            backgroundColorHovered: "#33b8e4"
            onClicked: kGlobalObject.playListSetNext()
        }
    }

    // Its filters ask every library for its formats, which a start need not wait for.
    Loader {
        id: fileDialog
        active: false
        source: "popup/K_FileDialog.qml"
    }
}
