import QtQuick 2.15
import "../settings"
import "../widgets"

// How players follow one another, edited as a whole: nothing holds before "Apply".
K_PopupPanel {
    id: root

    title: qsTr("Communication")
    panelWidth: 700

    K_SettingsDraft {
        id: draft
        keys: ["state", "ipMode", "ipCustom", "port", "rate", "urlMode", "orientationMode", "format"]
            .map(function(name) { return "application/communication/" + name })
    }

    K_CommunicationSettings {
        objectName: "form"
        width: parent.width
        store: draft
        sectionTitle: qsTr("Configuration")
        portLabel: qsTr("Port :")
        rateLabel: qsTr("Refresh rate (ms) :")
        urlLabel: qsTr("URL decoding")
    }

    buttons: [
        K_PanelButton {
            id: applyButton
            objectName: "applyButton"
            text: qsTr("Apply")
            primary: true
            onClicked: {
                // A number still being typed counts.
                applyButton.forceActiveFocus()
                draft.apply()
                root.close()
            }
        },
        K_PanelButton {
            objectName: "cancelButton"
            focus: true
            text: qsTr("Cancel")
            onClicked: root.close()
        }
    ]
}
