import QtQuick 2.15
import Orbilens 1.0
import "../widgets"

// How this player and others follow one another, in a store with the face of KSettings.
K_SettingsPage {
    id: root

    property var store: kSettings
    property string portLabel: qsTr("Port")
    property string rateLabel: qsTr("REFRESH RATE (ms)")
    property string urlLabel: qsTr("URL Decoding")
    property string orientationLabel: qsTr("Camera orientation")
    property string formatLabel: qsTr("Packet format")
    // Stands above what belongs to a role, once there is one.
    property string sectionTitle

    readonly property string prefix: "application/communication/"
    readonly property bool master: role.value === "master"
    readonly property bool slave: role.value === "slave"

    K_SettingChoice {
        id: role
        objectName: "state"
        label: qsTr("Communication Mode")
        hint: qsTr("Stream UDP messages with camera and playback informations")
        store: root.store
        key: root.prefix + "state"
        choices: [{ text: qsTr("Off"), value: "off" },
                  { text: qsTr("Master"), value: "master" },
                  { text: qsTr("Slave"), value: "slave" }]
    }

    K_SectionTitle {
        visible: text !== "" && (root.master || root.slave)
        text: root.sectionTitle
    }

    K_SettingRow {
        objectName: "ip"
        visible: root.master
        label: qsTr("IP Address")
        hint: qsTr("IP address where UDP messages are sent")

        Column {
            width: parent.width
            spacing: 8

            K_Choice {
                objectName: "choice"
                width: parent.width
                name: qsTr("IP Address")
                choices: [{ text: qsTr("Broadcast"), value: "broadcast" },
                          { text: qsTr("LocalHost"), value: "localhost" },
                          { text: qsTr("Custom"), value: "custom" }]
                value: ipMode.value
                onChosen: ipMode.set(value)
            }
            K_IpFields {
                objectName: "fields"
                visible: ipMode.value === "custom"
                address: ipCustom.value || ""
                onEdited: ipCustom.set(address)
            }
        }
    }

    K_SettingSpinBox {
        objectName: "port"
        visible: root.master || root.slave
        label: root.portLabel
        hint: qsTr("Port number to listen")
        store: root.store
        key: root.prefix + "port"
        from: 0
        to: 999999
    }

    K_SettingSpinBox {
        objectName: "rate"
        visible: root.master
        label: root.rateLabel
        hint: qsTr("Number of milliseconds before sending a new UDP message")
        store: root.store
        key: root.prefix + "rate"
        from: 0
        to: 1000
    }

    K_SettingChoice {
        objectName: "urlMode"
        visible: root.slave
        label: root.urlLabel
        hint: qsTr("Defines how the video URL is processed by slave")
        store: root.store
        key: root.prefix + "urlMode"
        choices: [{ text: qsTr("Absolute"), value: KUdpSocket.Absolute },
                  { text: qsTr("Movies"), value: KUdpSocket.Movies },
                  { text: qsTr("Desktop"), value: KUdpSocket.Desktop },
                  { text: qsTr("Off"), value: KUdpSocket.Off }]
    }

    K_SettingChoice {
        objectName: "orientationMode"
        visible: root.slave
        label: root.orientationLabel
        hint: qsTr("Defines how the camera orientation (yaw, pitch, roll) is processed by slave")
        store: root.store
        key: root.prefix + "orientationMode"
        choices: [{ text: qsTr("Absolute"), value: KUdpSocket.AbsoluteOrientation },
                  { text: qsTr("Offset"), value: KUdpSocket.OffsetOrientation },
                  { text: qsTr("Off"), value: KUdpSocket.OffOrientation }]
    }

    K_SettingChoice {
        objectName: "format"
        visible: root.master || root.slave
        label: root.formatLabel
        hint: qsTr("Defines the interal format of encoded UDP messages")
        store: root.store
        key: root.prefix + "format"
        choices: [{ text: qsTr("JSON"), value: KUdpSocket.JSON },
                  { text: qsTr("Qt"), value: KUdpSocket.QtBinary }]
    }

    readonly property list<QtObject> settings: [
        K_SettingValue {
            id: ipMode
            store: root.store
            key: root.prefix + "ipMode"
        },
        K_SettingValue {
            id: ipCustom
            store: root.store
            key: root.prefix + "ipCustom"
        }
    ]
}
