import QtQuick 2.15

// The depth camera's interface, there while the camera is switched on.
Loader {
    property var realSense: kRealSense
    property var mediaPlayer
    property var mediaLoader

    active: realSense !== null && realSense.activated
    source: "K_RealSenseUi.qml"
}
