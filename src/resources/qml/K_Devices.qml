import QtQuick 2.15

// Which devices steer the camera: switching one on switches its rivals off, in a fixed order.
// A device that this machine cannot have is null.
QtObject {
    id: root

    property var sensor: kSensor
    property var headset: kHmdDevice
    property var leap: kLeap
    property var realSense: kRealSense
    property var builder: kShaderCodeBuilder

    readonly property bool headsetAvailable: headset !== null && headset.available
    readonly property bool headsetActivated: headset !== null && headset.activated
    readonly property bool leapAvailable: leap !== null && leap.available
    readonly property bool leapActivated: leap !== null && leap.activated
    readonly property bool sensorAvailable: sensor !== null && sensor.available
    readonly property bool sensorActivated: sensor !== null && sensor.activated
    readonly property bool realSenseAvailable: realSense !== null && realSense.available
    readonly property bool realSenseActivated: realSense !== null && realSense.activated

    function switchOff(device) {
        if (device)
            device.activated = false
    }

    function toggle(device) {
        if (device)
            device.activated = !device.activated
    }

    function hmdOnOff() {
        if (!headsetAvailable)
            return
        switchOff(sensor)
        toggle(headset)
        if (leap)
            leap.cameraMode = leap.cameraMode === 2 ? 1 : 2
        builder.hmdMode = headset.activated
        switchOff(realSense)
    }

    function leapOnOff() {
        switchOff(sensor)
        toggle(leap)
        switchOff(realSense)
    }

    function gyroOnOff() {
        toggle(sensor)
        switchOff(headset)
        switchOff(leap)
        builder.hmdMode = false
        switchOff(realSense)
    }

    function realSenseOnOff() {
        switchOff(sensor)
        switchOff(headset)
        switchOff(leap)
        builder.hmdMode = false
        toggle(realSense)
    }
}
