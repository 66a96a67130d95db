import QtQuick 2.15
import QtTest 1.2
import "qrc:/qml"

// What is typed into the debug panel reaches the camera in its own unit, and comes back as the
// camera took it.
Item {
    id: root

    width: 640
    height: 460

    QtObject {
        id: kGlobalObject
        property real yaw
        property real pitch
        property real roll
        property real fov: 90
        property real fovLimitMin: 80
        property real fovLimitMax: 300
        property int resets: 0
        function setFov(value, reset) { fov = value }
        function resetYawPitchRollFov() { ++resets }
    }
    QtObject {
        id: player
        property int fps: 25
    }

    K_DebugInfo {
        id: panel
        mediaPlayer: player
        fps: 60
        visible: true
    }

    TestCase {
        name: "K_DebugInfo"
        when: windowShown

        function box(name) { return findChild(panel, "spinBox" + name) }
        function type(name, text) {
            var field = box(name)
            field.forceActiveFocus()
            findChild(field, "input").selectAll()
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
            keyClick(Qt.Key_Return)
        }
        function init() {
            panel.visible = true
            kGlobalObject.yaw = kGlobalObject.pitch = kGlobalObject.roll = 0
            kGlobalObject.fov = 90
            kSettings.set("application/general/yprRadUnit", false)
        }

        function test_typedValuesReachTheCamera_data() {
            return [{ tag: "yaw", field: "Yaw", text: "45", yaw: Math.PI / 4, shown: "45.00" },
                    { tag: "small", field: "Yaw", text: "0.01", yaw: 0.01 * Math.PI / 180,
                      shown: "0.01" },
                    { tag: "far", field: "Pitch", text: "10000", pitch: 10000 * Math.PI / 180,
                      shown: "10000.00" },
                    { tag: "beyond", field: "Roll", text: "200", roll: Math.PI, shown: "180.00" },
                    { tag: "fov", field: "Fov", text: "120", fov: 120, shown: "120.00" },
                    { tag: "too wide", field: "Fov", text: "400", fov: 300, shown: "300.00" },
                    { tag: "radians", field: "Yaw", rad: true, text: "1.5", yaw: 1.5,
                      shown: "1.500" },
                    { tag: "far radians", field: "Yaw", rad: true, text: "200", yaw: 180,
                      shown: "180.000" },
                    { tag: "fov radians", field: "Fov", rad: true, text: "2", fov: 360 / Math.PI,
                      shown: "2.000" },
                    { tag: "no number", field: "Yaw", text: "-", from: 1, yaw: 0, shown: "0.00" }]
        }
        function test_typedValuesReachTheCamera(row) {
            // By its buttons, and back.
            mouseClick(findChild(panel, row.rad ? "radButton" : "degButton"))
            compare(box("Yaw").suffix, row.rad ? "rd" : "°")
            kGlobalObject.yaw = row.from || 0
            type(row.field, row.text)
            fuzzyCompare(kGlobalObject.yaw, row.yaw || 0, 1e-6)
            fuzzyCompare(kGlobalObject.pitch, row.pitch || 0, 1e-6)
            fuzzyCompare(kGlobalObject.roll, row.roll || 0, 1e-3)
            fuzzyCompare(kGlobalObject.fov, row.fov || 90, 1e-3)
            compare(findChild(box(row.field), "input").text, row.shown)
        }

        function test_followsTheCameraAndResets() {
            kGlobalObject.yaw = 1
            compare(box("Yaw").numericValue, 57.3)
            kSettings.set("application/general/yprRadUnit", true)
            compare(box("Yaw").numericValue, 1)
            mouseClick(findChild(panel, "resetButton"))
            compare(kGlobalObject.resets, 1)
        }

        function test_keys() {
            box("Yaw").forceActiveFocus()
            var order = ["Pitch", "Roll", "Fov", "Yaw"]
            for (var i = 0; i < order.length; ++i) {
                keyClick(Qt.Key_Tab)
                verify(box(order[i]).textFocus, order[i])
            }
            keyClick(Qt.Key_Backtab)
            verify(box("Fov").textFocus && panel.spinBoxHasFocus)
            keyClick(Qt.Key_H)
            verify(!panel.visible)
        }
    }
}
