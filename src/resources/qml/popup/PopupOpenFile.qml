import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

K_PopupPanel {
    id: root

    title: qsTr("Open Media...")
    panelWidth: 560
    onFocusGiven: field.forceActiveFocus()

    function open() {
        var text = field.text.trim()
        if (text === "")
            return
        close()
        kGlobalObject.openFile(text)
    }

    Label { text: qsTr("Open file/stream :") }

    TextField {
        id: field
        objectName: "field"
        width: parent.width
        font: Qt.font({ family: Theme.fonts.mainFont.family, pixelSize: 15 })
        maximumLength: 8192
        Accessible.name: qsTr("Open file/stream :")
        Keys.onReturnPressed: root.open()
        Keys.onEnterPressed: root.open()
    }

    buttons: [
        K_PanelButton {
            objectName: "browseButton"
            text: qsTr("Browse...")
            onClicked: fileDialog.show()
        },
        K_PanelButton {
            objectName: "openButton"
            text: qsTr("Open")
            primary: true
            enabled: field.text.trim() !== ""
            onClicked: root.open()
        },
        K_PanelButton {
            objectName: "cancelButton"
            text: qsTr("Cancel")
            onClicked: root.close()
        }
    ]

    K_FileDialog {
        id: fileDialog
        onAccepted: root.close()
    }
}
