import QtQuick 2.9
import QtTest 1.2
import "qrc:/qml"

TestCase {
    id: root
    name: "K_PointerNavigation"

    // The drag is a pure sequence of calls here; real events reach it in the scene's own test.
    QtObject {
        id: fakeCamera
        property real yaw
        property real pitch
        property real yawInterpolate
        property real pitchInterpolate
        property real fov: 100
        property bool touchMode: true
        property bool touchTable: false
        property string platform: "Q_OS_LINUX"
        property var calls: []
        function platformOS() { return platform }
        function stopCameraAnimation() { calls.push("stop") }
        function setFov(value, reset) { fov = value }
        function interpolateValue(name, value, duration) {
            calls.push(name + " " + value.toFixed(3) + " " + duration)
        }
    }
    QtObject {
        id: fakeSettings
        property int inertia
        function getTyped(key) { return inertia }
    }
    QtObject {
        id: fakeHeadset
        property bool activated: true
        property real shiftYaw: 0
    }
    Component {
        id: component
        K_PointerNavigation { camera: fakeCamera; settings: fakeSettings; headset: null; view: null }
    }

    function make(properties) {
        var item = createTemporaryObject(component, root, properties)
        fakeCamera.yaw = fakeCamera.pitch = fakeCamera.yawInterpolate = fakeCamera.pitchInterpolate = 0
        fakeCamera.calls = []
        return item
    }

    function test_headset_turnsByYawAlone_data() {
        return [{ touch: true, expected: 0.1 }, { touch: false, expected: -0.1 }]
    }
    function test_headset_turnsByYawAlone(row) {
        var item = make({ headset: fakeHeadset })
        fakeHeadset.shiftYaw = 0
        fakeCamera.touchMode = row.touch
        item.press(0, 0)
        item.pointerMoved(20, 30)
        fuzzyCompare(fakeHeadset.shiftYaw, row.expected, 1e-9)
        compare(fakeCamera.yaw, 0)
    }

    // Dense events: on one platform only every third starts an animation, and the ones left out
    // are not lost.
    function test_inertia_data() {
        return [{ platform: "Q_OS_LINUX", calls: ["yawInterpolate -0.500 400",
                                                  "pitchInterpolate 0.000 400"] },
                { platform: "Q_OS_WIN64", calls: [] }]
    }
    function test_inertia(row) {
        fakeCamera.touchMode = true
        fakeCamera.platform = row.platform
        fakeSettings.inertia = 400
        var item = make()
        item.press(0, 0)
        item.pointerMoved(10, 0)
        compare(fakeCamera.calls, ["stop"].concat(row.calls))
        item.pointerMoved(20, 0)
        item.pointerMoved(30, 0)
        compare(fakeCamera.calls.slice(-2)[0], row.calls.length > 0 ? "yawInterpolate -0.500 400"
                                                                : "yawInterpolate -1.500 400")
        item.release()
        fakeCamera.calls = []
        item.press(0, 0)
        item.pointerMoved(10, 0)
        compare(fakeCamera.calls, ["stop", "yawInterpolate -0.500 400", "pitchInterpolate 0.000 400"])
        fakeSettings.inertia = 0
        fakeCamera.platform = "Q_OS_LINUX"
    }

    function test_pinchingMovesNothing() {
        var item = make()
        item.press(0, 0)
        item.pinching = true
        item.pointerMoved(100, 100)
        item.pinching = false
        item.pointerMoved(107, 100)
        fuzzyCompare(fakeCamera.yaw, -7 * 0.005, 1e-9)
    }
}
