import QtQuick 2.15
import "../widgets"

// What the program and its devices say about themselves.
K_PopupPanel {
    id: root

    property var headset: kHmdDevice
    property var realSense: kRealSense
    property var sensor: kSensor
    property var leap: kLeap

    readonly property var player: kGlobalObject.mediaPlayer()
    readonly property string textureTransfer: textOf(player, "textureTransfer")
    readonly property string pixelFormat: textOf(player, "texturePixelFormat")

    title: qsTr("Software Log")
    panelWidth: 640
    closesOnReturn: true

    function textOf(object, name) { return object && object[name] ? String(object[name]).trim() : "" }

    function supported(device) { return device !== null && device.isSupported() }

    SoftwareLogItem {
        objectName: "gpu"
        title: qsTr("GPU")
        text: {
            var lines = [kView.gpuInfo.trim()]
            if (root.textureTransfer !== "")
                lines.push(qsTr("Texture transfer mode : ") + root.textureTransfer)
            if (root.pixelFormat !== "")
                lines.push(qsTr("Texture pixel format : ") + root.pixelFormat)
            return lines.join("\n")
        }
    }
    SoftwareLogItem {
        objectName: "headset"
        visible: root.supported(root.headset)
        title: qsTr("Head-Mounted Display")
        text: root.textOf(root.headset, "logMessage")
    }
    SoftwareLogItem {
        objectName: "realSense"
        visible: root.supported(root.realSense)
        title: qsTr("Intel Real Sense")
        text: root.textOf(root.realSense, "logMessage")
        link: root.textOf(root.realSense, "logLink")
    }
    SoftwareLogItem {
        objectName: "sensor"
        title: qsTr("Sensor")
        text: root.textOf(root.sensor, "logMessage")
    }
    SoftwareLogItem {
        objectName: "leap"
        visible: root.supported(root.leap)
        title: qsTr("Leap Motion")
        text: root.textOf(root.leap, "logMessage")
        link: root.textOf(root.leap, "logLink")
    }
    SoftwareLogItem {
        objectName: "metadata"
        title: qsTr("Metadata")
        text: kGlobalObject.videoLogMessage
    }

    buttons: K_PanelButton {
        objectName: "closeButton"
        focus: true
        text: qsTr("Close")
        onClicked: root.close()
    }
}
