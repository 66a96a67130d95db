import QtQuick 2.15

// Turns pointer, wheel and touch into moves of the camera.
Item {
    id: root

    property var camera: kGlobalObject
    property var settings: kSettings
    property var headset: kHmdDevice
    property var view: kView

    readonly property real moveSpeed: 0.005 // radians a pixel
    readonly property int dragThreshold: 6  // pixels on either axis
    readonly property int wheelPixelStep: 2 // degrees of field of view
    readonly property int wheelAngleStep: 5
    // On Windows moves come so densely that an animation started for each would never get going.
    readonly property int inertiaHackNbEventsToSkip:
        camera.platformOS().indexOf("Q_OS_WIN") === 0 ? 2 : 0

    property int skippedEvents: 0
    property bool dragging: false
    property bool pinching: false
    property point pressPosition
    property point lastPosition

    signal clicked()

    function press(x, y) {
        camera.stopCameraAnimation()
        if (pinching)
            return
        pressPosition = Qt.point(x, y)
        lastPosition = pressPosition
    }

    function pointerMoved(x, y) {
        if (pinching) {
            lastPosition = Qt.point(x, y)
            return
        }
        if (!dragging) {
            dragging = Math.abs(x - pressPosition.x) > dragThreshold
                    || Math.abs(y - pressPosition.y) > dragThreshold
        }
        if (dragging)
            move(x, y)
    }

    function move(x, y) {
        var deltaX = x - lastPosition.x
        var deltaY = y - lastPosition.y
        // A touched picture follows the finger; otherwise the pointer steers the camera.
        var sign = camera.touchMode ? -1 : 1
        var inertia = settings.getTyped("application/general/cameraInertia")
        if (headset && headset.activated) {
            headset.shiftYaw -= sign * deltaX * moveSpeed
        } else if (inertia > 0) {
            if (skippedEvents < inertiaHackNbEventsToSkip) {
                ++skippedEvents
                return
            }
            skippedEvents = 0
            var speed = sign * 10 * moveSpeed
            camera.interpolateValue("yawInterpolate", camera.yawInterpolate + deltaX * speed,
                                    inertia)
            camera.interpolateValue("pitchInterpolate", camera.pitchInterpolate + deltaY * speed,
                                    inertia)
        } else {
            camera.yaw += sign * deltaX * moveSpeed
            camera.pitch += sign * deltaY * moveSpeed
        }
        lastPosition = Qt.point(x, y)
    }

    function release() {
        dragging = false
        skippedEvents = inertiaHackNbEventsToSkip
    }

    function zoom(direction, factor) {
        camera.setFov(camera.fov + (direction < 0 ? factor : -factor), false)
    }

    function wheel(pixelDelta, angleDelta) {
        if (pixelDelta !== 0)
            zoom(pixelDelta, wheelPixelStep)
        else if (angleDelta !== 0)
            zoom(angleDelta, wheelAngleStep)
    }

    PinchArea {
        property real startFov

        anchors.fill: parent
        enabled: root.camera.platformOS() !== "Q_OS_MAC"
        onPinchStarted: {
            startFov = root.camera.fov
            root.pinching = true
            root.dragging = false
        }
        onPinchUpdated: {
            if (pinch.scale > 0)
                root.camera.setFov(startFov / pinch.scale, false)
        }
        onPinchFinished: root.pinching = false

        MouseArea {
            anchors.fill: parent
            onPressed: root.press(mouse.x, mouse.y)
            onPositionChanged: root.pointerMoved(mouse.x, mouse.y)
            onReleased: root.release()
            onCanceled: root.release()
            onExited: root.dragging = false
            onClicked: root.clicked()
            onDoubleClicked: {
                if (!root.camera.touchTable)
                    fullscreenTimer.restart()
            }
            onWheel: root.wheel(wheel.pixelDelta.y, wheel.angleDelta.y)
        }
    }

    Timer {
        id: fullscreenTimer
        interval: 500
        onTriggered: root.view.fullScreenMode(!root.view.fullScreen)
    }
}
