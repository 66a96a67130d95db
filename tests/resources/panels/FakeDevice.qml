import QtQuick 2.15

// A hand tracker, depth camera or headset: what the panels see of any of them.
QtObject {
    property bool available: true
    property bool supported: true
    property string logMessage: "Device found.\n"
    property string logLink: "<a href=\"https://example.org/driver\">Driver</a>"
    property real sensitivityYawPitch: 0.3
    property int sensitivitySeekJump: 4000
    property bool pitchInv: false
    property bool yawInv: true
    property int cameraMode: 3
    property int pointerInterpolation: 2
    property bool rollMode: false
    property bool fovMode: true
    property bool playPauseGesture: true
    property bool seekGesture: true
    property bool drawHand: true
    property int tutoState: -1
    property bool hmdMode: false

    function isSupported() { return supported }
}
