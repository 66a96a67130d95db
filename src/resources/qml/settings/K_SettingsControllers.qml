import QtQuick 2.15
import "../widgets"

K_SettingsPage {
    id: root

    property var headset: kHmdDevice
    property var realSense: kRealSense
    property var leap: kLeap

    readonly property bool headsetAvailable: headset !== null && headset.available
    readonly property bool realSenseAvailable: realSense !== null && realSense.available
    readonly property bool leapAvailable: leap !== null && leap.available

    K_SettingChoice {
        objectName: "hmdSdk"
        visible: kGlobalObject.platformOS().indexOf("Q_OS_WIN") === 0
        label: qsTr("Head-Mounted Display SDK")
        hint: qsTr("Select the SDK to detect and manage HMD. 'Auto' will try to use first the "
                   + "Oculus SDK to detect the device, then the OpenVR SDK.")
        key: "application/hmd/sdk"
        choices: [{ text: qsTr("Auto"), value: "auto" },
                  { text: qsTr("Oculus"), value: "oculus" },
                  { text: qsTr("OpenVR"), value: "openvr" }]
    }

    K_SettingChoice {
        objectName: "gazeUI"
        visible: root.headsetAvailable
        label: qsTr("User interaction")
        hint: qsTr("Use Gaze UI if you don't have any remote control.")
        key: "application/hmd/gazeUI"
        choices: [{ text: qsTr("Remote control"), value: false },
                  { text: qsTr("Gaze UI"), value: true }]
    }

    K_SectionTitle {
        visible: root.realSenseAvailable
        text: qsTr("Intel RealSense")
    }
    K_SettingOnOff {
        objectName: "feedbackScreen"
        visible: root.realSenseAvailable
        label: qsTr("Feedback screen")
        hint: qsTr("Display the depth feedback from the camera")
        key: "application/realsense/feedbackScreen"
    }

    K_SectionTitle {
        visible: root.leapAvailable
        text: qsTr("Leap Motion")
    }
    K_SettingOnOff {
        objectName: "ghostHands"
        visible: root.leapAvailable
        label: qsTr("Ghost Hands")
        hint: qsTr("Display the virtual representation of user hands")
        key: "application/leapmotion/ghostHands"
    }

    K_PlainText {
        objectName: "noControllers"
        x: 10
        width: root.width - 20
        topPadding: 10
        visible: !root.headsetAvailable && !root.realSenseAvailable && !root.leapAvailable
        text: qsTr("No controllers found")
    }
}
