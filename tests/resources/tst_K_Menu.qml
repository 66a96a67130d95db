import QtQuick 2.15
import QtMultimedia 5.8
import QtTest 1.2
import Orbilens 1.0
import com.vedra.kontrols 1.0
import "qrc:/qml"

// Every row of the menus: its place, its key, when it can be used, what it asks for, when it is
// checked; and the keys that no menu lists. The peers are stand-ins that write down what is asked.
Item {
    id: root

    width: 640
    height: 460

    property var asked: []
    function note(text) { asked.push(text) }
    function taken() {
        var all = asked
        asked = []
        return all
    }

    // Each condition of the table can be taken away by its name.
    property string missing: ""
    function given(condition) { return missing !== condition }

    QtObject {
        id: kGlobalObject
        property int playListIndex: root.given("playlist") ? 0 : -1
        property int projectionSourceSetting: -1
        property int outputDisplay: -1
        property int loopMode: -1
        property bool touchMode: false
        property real fov: 100
        property string documentationUrl: root.given("documentation") ? "about:blank" : ""
        function platformOS() { return "Q_OS_LINUX" }
        function quit() { root.note("quit") }
        function playListSetNext() { root.note("next") }
        function playListSetPrevious() { root.note("previous") }
        function resetYawPitchRollFov() { root.note("reset") }
        function interpolateValue(name, value, duration, cumul) {
            root.note([name, value.toFixed(3), duration, cumul === true].join(" "))
        }
    }
    QtObject {
        id: kShaderCodeBuilder
        property int projectionSource: root.given("round") ? KShaderCodeBuilder.CUBEMAP
                                                           : KShaderCodeBuilder.STANDARD
        property int projection: -1
        property int stereoMode: root.given("stereo") ? KShaderCodeBuilder.STEREO_3D_OVERUNDER
                                                      : KShaderCodeBuilder.STEREO_2D
        function setNextProjection() { root.note("next projection") }
        function switchEyeStereoscopy() { root.note("switch eye") }
    }
    QtObject {
        id: kVideoPlugin
        property string currentPlugin: root.given("vlc") ? "vlc" : "qt"
    }
    QtObject {
        id: kView
        property bool fullScreen: false
        property bool checkUpdatePossible: root.given("updates")
        function checkUpdate() { root.note("check update") }
        function fullScreenMode(on) { root.note("full screen " + on) }
        function displayCrashManager() { root.note("crash manager") }
    }
    QtObject {
        id: fakePlayer
        property int playerStatus: root.given("media") ? MediaPlayer.Buffered : MediaPlayer.NoMedia
        property int playbackState: MediaPlayer.PlayingState
        property int position: 61000
        property int duration: 100000
        function seekJump(delta) { root.note("jump " + delta) }
    }
    QtObject {
        id: fakeLoader
        property var mediaPlayer: fakePlayer
        property real volume: 0.5
        function playPause() { root.note("play or pause") }
        function stop() { root.note("stop") }
        function volumeUp() { root.note("louder") }
        function volumeDown() { root.note("softer") }
    }
    QtObject {
        id: fakeBar
        function toggleMute() { root.note("mute") }
        function hmdOnOff() { root.note("hmd") }
        function leapOnOff() { root.note("leap") }
        function gyroOnOff() { root.note("gyro") }
        function realSenseOnOff() { root.note("realsense") }
    }
    QtObject {
        id: fakeView
        function zoom(direction, factor) { root.note("zoom " + direction + " " + factor) }
        function printScreen(kind) { root.note("print " + kind) }
    }
    QtObject {
        id: fakeDevices
        property bool headsetAvailable: root.given("hmd")
        property bool headsetActivated: false
        property bool leapAvailable: root.given("leap")
        property bool leapActivated: false
        property bool sensorAvailable: root.given("gyro")
        property bool sensorActivated: false
        property bool realSenseAvailable: root.given("realsense")
        property bool realSenseActivated: false
        property var headset: QtObject { property real shiftYaw: 0 }
    }
    QtObject {
        id: fakeDebugInfo
        property bool visible: false
        onVisibleChanged: root.note("debug " + visible)
    }
    QtObject {
        id: fakePlayerImage
        function onShowPlayerText(text) { root.note("show " + text) }
    }
    Connections {
        target: kSettings
        function onSettingsChanged(key) {
            if (key.indexOf("instance/") === 0)
                root.note(key + " " + kSettings.getTyped(key))
        }
    }

    K_Commands {
        id: commands
        loader: fakeLoader
        bar: fakeBar
        videoArea: fakeView
        debugInfo: fakeDebugInfo
        playerImage: fakePlayerImage
        devices: fakeDevices
        enableCameraArrowMove: root.given("arrows")
        onPopupRequested: root.note("popup " + qmlFile.split("/").pop())
        onStateRequested: root.note("state " + state)
    }
    K_Menu {
        id: menu
        width: root.width
        commands: commands
    }

    TestCase {
        name: "K_Menu"
        when: windowShown

        // Place, key, the condition without which it cannot be used, what it asks for; and what makes
        // it checked: an object, its property, the value.
        readonly property var rows: tables.read("menu")
        readonly property var objects: ({ kGlobalObject: kGlobalObject, fakeLoader: fakeLoader,
            kShaderCodeBuilder: kShaderCodeBuilder, fakeDevices: fakeDevices,
            fakeDebugInfo: fakeDebugInfo })

        function entries(items, path) {
            var all = []
            for (var i = 0; i < items.length; ++i) {
                var title = path + (items[i].title || items[i].text)
                all = all.concat(items[i].items ? entries(items[i].items, title + "/")
                                                : [{ path: title, item: items[i] }])
            }
            return all
        }
        function all() { return entries(findChild(menu, "menuBar").menus, "") }

        function initTestCase() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            ThemeManager.loadThemes(":/", "Orvex LND")
        }
        function init() {
            root.missing = ""
            kSettings.set("instance/general/loopMode", 9)
            kSettings.set("instance/input/projection", 9)
            kSettings.set("instance/output/projection", 9)
            kSettings.set("instance/output/display", "none")
            kSettings.set("instance/general/touchMode", false)
            kSettings.set("instance/general/cameraMoveSteps", 45)
            kSettings.set("instance/general/cameraInertia", 300)
            root.taken()
        }

        function test_everyRow() {
            var found = all()
            compare(found.map(function(e) { return e.path }), rows.map(function(r) { return r[0] }))
            for (var i = 0; i < rows.length; ++i) {
                var row = rows[i]
                var item = found[i].item
                compare(item.shortcut ? item.shortcut.toString() : "", row[1], row[0])
                verify(item.enabled, row[0])
                if (row[3] !== null) {
                    item.trigger()
                    compare(root.taken(), row[3], row[0])
                }
                if (row[4] === undefined)
                    continue
                // Whatever a click made of the item's own mark, the state alone decides.
                var object = objects[row[4]]
                compare(item.checked, object[row[5]] === row[6], row[0])
                object[row[5]] = row[6]
                compare(item.checked, true, row[0])
                object[row[5]] = row[6] === true ? false : 77
                compare(item.checked, false, row[0])
                root.taken()
            }
        }

        function test_conditions() {
            var found = all()
            var conditions = {}
            rows.forEach(function(row) { conditions[row[2]] = true })
            for (var condition in conditions) {
                root.missing = condition
                for (var i = 0; i < rows.length; ++i) {
                    compare(found[i].item.enabled, condition === "" || rows[i][2] !== condition,
                            rows[i][0] + " without " + condition)
                }
            }
        }

        function test_aHeadsetTurnsByQuartersAndOnlySideways() {
            fakeDevices.headsetActivated = true
            var enabled = {}
            all().forEach(function(e) { enabled[e.path.split(" ").pop()] = e.item.enabled })
            compare([enabled.left, enabled.right, enabled.up, enabled.down],
                    [true, true, false, false])
            commands.moveSideways(-1)
            fuzzyCompare(fakeDevices.headset.shiftYaw, Math.PI / 2, 1e-9)
            commands.moveSideways(1)
            commands.moveUpDown(1)
            compare([fakeDevices.headset.shiftYaw, root.taken()], [0, []])
            fakeDevices.headsetActivated = false
        }

        function test_keysOutsideTheMenus_data() {
            var both = Qt.ControlModifier | Qt.ShiftModifier
            var planet = ["fov 250.000 1000 false", "pitch 1.571 1000 false"]
            return [{ tag: "escape", keys: [[Qt.Key_Escape, 0]], calls: ["full screen false"] },
                    { tag: "planet", keys: [[Qt.Key_Return, 0]], fov: 179, output: 0, calls: planet },
                    { tag: "enter", keys: [[Qt.Key_Enter, 0]], fov: 90, output: 0, calls: planet },
                    { tag: "back", keys: [[Qt.Key_Return, 0]], fov: 180, output: 0,
                      calls: ["fov 90.000 1000 false", "pitch 0.000 1000 false"] },
                    { tag: "other output", keys: [[Qt.Key_Return, 0]], fov: 90, output: 1, calls: [] },
                    { tag: "chord", keys: [[Qt.Key_C, both], [Qt.Key_H, both]],
                      calls: ["crash manager"] },
                    { tag: "one of two", keys: [[Qt.Key_C, both]], calls: [] },
                    { tag: "let go", keys: [[Qt.Key_H, both], null, [Qt.Key_C, both]], calls: [] },
                    { tag: "no shift", keys: [[Qt.Key_C, Qt.ControlModifier],
                                              [Qt.Key_H, Qt.ControlModifier]], calls: [] }]
        }
        function test_keysOutsideTheMenus(row) {
            kGlobalObject.fov = row.fov || 100
            if (row.output !== undefined)
                kSettings.set("instance/output/projection", row.output)
            root.taken()
            row.keys.forEach(function(key) {
                if (key)
                    menu.onKeyPressed({ key: key[0], modifiers: key[1] })
                else
                    menu.onKeyReleased({})
            })
            menu.onKeyReleased({})
            compare(root.taken(), row.calls)
        }

        function test_theBarFitsAndLeavesInFullScreen() {
            var widths = [640, 1000, 3840]
            for (var i = 0; i < widths.length; ++i) {
                root.width = widths[i]
                var titles = findChild(menu, "menuBar").__contentItem
                verify(titles.implicitWidth <= root.width, widths[i] + ": " + titles.implicitWidth)
            }
            verify(menu.height > 0)
            kView.fullScreen = true
            compare([menu.height, menu.visible], [0, false])
            kView.fullScreen = false
        }
    }
}
