import QtQuick 2.15
import QtMultimedia 5.8
import QtTest 1.2
import "qrc:/qml"

// The control bar over a stand-in player: where it stands, what its controls ask for and show, and
// which device gives way to which.
Item {
    id: root

    width: 800
    height: 460

    property var asked: []
    function note(text) { asked.push(text) }
    function taken() {
        var all = asked
        asked = []
        return all
    }

    QtObject {
        id: kGlobalObject
        property int playListIndex: -1
        property int loopMode: 0
        property bool touchTable: false
        property bool adobePlugin: false
        function playListSetNext() { root.note("next") }
        function playListSetPrevious() { root.note("previous") }
    }
    QtObject {
        id: kView
        property bool fullScreen: false
        property int height: root.height + 28 // the menu's
        signal mouseMoved(int x, int y)
        function fullScreenMode(on) { root.note("full screen " + on) }
    }
    QtObject {
        id: player
        property int playbackState: MediaPlayer.PlayingState
        property int position: 59500
        property int duration: 3600000
        function seek(ms) { root.note("seek " + ms) }
    }
    QtObject {
        id: loader
        property real volume: 0.4
        function playPause() { root.note("play or pause") }
        function applyVolume(value) { volume = value }
        function setVolume(value) {
            volume = value
            root.note("kept " + value.toFixed(2))
        }
    }
    component Device: QtObject {
        property string name
        property bool available: true
        property bool activated: false
        property int cameraMode: 1
        property bool hmdMode: false
        function sdkType() { return "oculus" }
        onActivatedChanged: root.note(name + " " + activated)
        onCameraModeChanged: root.note("camera mode " + cameraMode)
        onHmdModeChanged: root.note("mode " + hmdMode)
    }
    Device { id: sensor; name: "sensor" }
    Device { id: headset; name: "headset" }
    Device { id: leap; name: "leap" }
    Device { id: realSense; name: "realsense" }
    Device { id: builder }
    K_Devices {
        id: devices
        sensor: sensor
        headset: headset
        leap: leap
        realSense: realSense
        builder: builder
    }

    K_Bar {
        id: bar
        mediaPlayer: player
        mediaLoader: loader
        devices: devices
    }

    TestCase {
        name: "K_Bar"
        when: windowShown

        function child(name) {
            var found = findChild(bar, name)
            verify(found, name)
            return found
        }
        function init() {
            kGlobalObject.touchTable = kGlobalObject.adobePlugin = false
            kView.mouseMoved(0, 0)
            player.playbackState = MediaPlayer.PlayingState
            bar.mouseIsInTriggerArea = false
            root.taken()
        }

        function test_risesWhereThePointerIsLowOrTheMediumRests_data() {
            return [{ tag: "high", y: 0.799, state: "Off" }, { tag: "low", y: 0.81, state: "On" },
                    { tag: "paused", y: 0, paused: true, state: "On" },
                    { tag: "touch table", y: 0.9, touchTable: true, state: "Off" }]
        }
        function test_risesWhereThePointerIsLowOrTheMediumRests(row) {
            kGlobalObject.touchTable = row.touchTable === true
            if (row.paused)
                player.playbackState = MediaPlayer.PausedState
            kView.mouseMoved(5, Math.ceil(kView.height * row.y))
            compare(bar.state, row.state)
            tryCompare(bar.anchors, "bottomMargin", row.state === "On" ? 0 : -60)
        }

        function test_timeline() {
            var timeline = child("timeline")
            fuzzyCompare(timeline.progression, 59500 / 3600000, 1e-9)
            mouseMove(timeline, 400, 5)
            compare(timeline.toolTipText(0.5), "30:00")
            mouseClick(timeline, 200, 5)
            compare(root.taken(), ["seek 900000"])
            compare(child("positionText").text, "01:00 / 1:00:00")
            player.playbackState = MediaPlayer.StoppedState
            mouseClick(timeline, 200, 5)
            compare(root.taken(), [])
            var positions = [[-5, 0], [7200000, 1]]
            for (var i = 0; i < positions.length; ++i) {
                player.position = positions[i][0]
                compare(timeline.shown, positions[i][1])
            }
            player.position = 59500
        }

        // Each has a name for those who hear the interface.
        function reached(item) {
            if (!item.visible || !item.enabled)
                return 0
            var count = item.activeFocusOnTab ? 1 : 0
            verify(count === 0 || item.Accessible.name, item + " " + item.objectName)
            for (var i = 0; i < item.children.length; ++i)
                count += reached(item.children[i])
            return count
        }
        function test_keys() {
            kGlobalObject.adobePlugin = false
            compare(reached(bar), 11)
            var timeline = child("timeline")
            timeline.forceActiveFocus()
            compare(bar.state, "On")
            player.position = 1800000
            keyClick(Qt.Key_Right)
            keyClick(Qt.Key_Left)
            compare(root.taken(), ["seek 1980000", "seek 1620000"])
            keyClick(Qt.Key_Escape)
            verify(!bar.activeFocus)
            player.position = 59500
        }

        function test_volumeAndMute() {
            bar.mouseIsInTriggerArea = true
            tryCompare(bar.anchors, "bottomMargin", 0)
            var icons = [[0, "null"], [0.49, "min"], [0.5, "med"], [0.99, "med"], [1, "Max"]]
            for (var i = 0; i < icons.length; ++i) {
                loader.volume = icons[i][0]
                verify(child("soundButton").icon.toString().indexOf("Volume_" + icons[i][1]) > 0,
                       icons[i][0])
            }
            var slider = child("volumeSlider")
            compare(slider.width, 0)
            mouseMove(child("soundButton"), 15, 15)
            tryCompare(slider, "width", 100)
            mouseMove(slider, 25, 5)
            wait(400) // longer than it would take to close
            compare(slider.width, 100)
            mouseClick(slider, 25, 5)
            compare(root.taken(), ["kept 0.25"])

            // By keys alone: next after the button by Tab, and gone once the focus is elsewhere.
            mouseMove(root, 5, 5)
            tryCompare(slider, "width", 0)
            child("soundButton").forceActiveFocus()
            keyClick(Qt.Key_Tab)
            verify(slider.activeFocus)
            keyClick(Qt.Key_Right)
            compare(root.taken(), ["kept 0.30"])
            keyClick(Qt.Key_Left)
            compare(root.taken(), ["kept 0.25"])
            tryCompare(slider, "width", 100)
            child("playButton").forceActiveFocus()
            tryCompare(slider, "width", 0)

            // Muting is of the moment: nothing is kept for the next run.
            mouseClick(child("soundButton"))
            compare(loader.volume, 0)
            mouseClick(child("soundButton"))
            fuzzyCompare(loader.volume, 0.25, 1e-6)
            compare(root.taken(), [])
            bar.volumeBeforeMute = 0
            loader.volume = 0
            bar.toggleMute()
            compare(loader.volume, 0)
        }

        function test_buttons() {
            bar.mouseIsInTriggerArea = true
            tryCompare(bar.anchors, "bottomMargin", 0)
            var lists = [-1, 0]
            for (var i = 0; i < lists.length; ++i) {
                kGlobalObject.playListIndex = lists[i]
                compare([child("previousButton").visible, child("nextButton").visible],
                        [i === 1, i === 1])
            }
            waitForRendering(bar)
            mouseClick(child("playButton"))
            mouseClick(child("previousButton"))
            mouseClick(child("nextButton"))
            mouseClick(child("fullscreenButton"))
            compare(root.taken(), ["play or pause", "previous", "next", "full screen true"])

            var loops = [["Loop", "#666666"], ["Loop", "#00a3da"], ["LoopOne", "#ffffff"]]
            for (i = 0; i < loops.length; ++i) {
                kGlobalObject.loopMode = i
                kSettings.set("instance/general/loopMode", 9)
                mouseClick(child("loopButton"))
                compare(kSettings.getTyped("instance/general/loopMode"), i + 1)
                verify(child("loopButton").icon.toString().indexOf("/" + loops[i][0] + ".svg") > 0)
                compare(child("loopButton").overlay.toString(), loops[i][1])
            }
            kGlobalObject.adobePlugin = true
            compare([child("timeline").visible, child("leftRow").visible], [false, false])
        }

        // Rivals give way in a fixed order; all were on before.
        function test_devices_data() {
            return [{ tag: "hmdOnOff", calls: ["sensor false", "headset false", "camera mode 2",
                                               "mode false", "realsense false"] },
                    { tag: "leapOnOff", calls: ["sensor false", "leap false", "realsense false"] },
                    { tag: "gyroOnOff", calls: ["sensor false", "headset false", "leap false",
                                                "mode false", "realsense false"] },
                    { tag: "realSenseOnOff", calls: ["sensor false", "headset false", "leap false",
                                                     "mode false", "realsense false"] }]
        }
        function test_devices(row) {
            var all = [sensor, headset, leap, realSense]
            all.forEach(function(device) { device.activated = true })
            builder.hmdMode = true
            leap.cameraMode = 1
            root.taken()
            bar[row.tag]()
            compare(root.taken(), row.calls)
            // A headset and hands go together; what else was asked for comes back alone.
            bar[row.tag]()
            compare(all.filter(function(device) { return device.activated }).length,
                    row.tag === "leapOnOff" || row.tag === "hmdOnOff" ? 2 : 1)
        }
        function test_noHeadsetChangesNothing() {
            headset.available = false
            sensor.activated = true
            root.taken()
            bar.hmdOnOff()
            headset.available = true
            compare(root.taken(), [])
        }
    }
}
