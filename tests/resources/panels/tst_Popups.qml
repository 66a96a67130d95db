import QtQuick 2.15
import QtQuick.Window 2.2
import QtTest 1.2
import com.vedra.kontrols 1.0
import "qrc:/qml"
import "qrc:/qml/popup"

Item {
    id: root
    width: 1000
    height: 600

    K_Popup {
        id: popup
        property var asked: []
        anchors.fill: parent
        onChangeRootState: {
            asked.push(newState)
            state = newState === "Popup" || newState === "Other" ? "On" : "Off"
        }
    }
    FakeDevice { id: device }
    QtObject {
        id: player
        property int textureTransfer: 0
        property string texturePixelFormat
    }
    Component {
        id: leapOptions
        PopupLeapOptions { leap: device; builder: device }
    }
    Component {
        id: softwareLog
        PopupSoftwareLog { leap: device; headset: device; realSense: device; sensor: device }
    }
    SignalSpy { id: changes; target: kSettings; signalName: "settingsChanged" }
    SignalSpy { id: closed; signalName: "close" }

    TestCase {
        id: test
        name: "Popups"
        when: windowShown

        readonly property Item loader: findChild(popup, "popupLoader")
        readonly property string communication: "application/communication/"

        function initTestCase() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            ThemeManager.loadThemes(":/", "Orvex LND")
        }
        function init() {
            popup.asked = []
            kGlobalObject.calls = []
        }
        function cleanup() {
            if (popup.state === "On")
                popup.onClose()
        }
        function open(name) {
            popup.load("qrc:/qml/popup/" + name + ".qml")
            tryVerify(function() { return loader.item !== null && loader.anchors.topMargin === 0 })
            return loader.item
        }
        function type(text) {
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
        }

        // --- The frame ----------------------------------------------------------------------------

        function test_theSameCommandTwiceClosesAndAnotherReplacesTheFirst() {
            open("PopupAudioSync")
            compare(popup.asked, ["Popup"])
            popup.load("qrc:/qml/popup/PopupAudioSync.qml")
            compare(popup.asked, ["Popup", "Video"])
            compare(loader.item, null)
            compare(popup.opacity, 0)
            verify(!popup.enabled)
            open("PopupAudioSync")
            popup.load("qrc:/qml/popup/PopupOpenFile.qml", "Other")
            tryVerify(function() { return loader.item && findChild(loader.item, "openButton") })
            compare(popup.asked, ["Popup", "Video", "Popup", "Other"])
            popup.state = "Off" // as when the preferences are called
            compare(loader.item, null)
            verify(open("PopupAudioSync"))
        }

        function test_aClickOnTheDimCloses_data() {
            return [{ tag: "dim", x: 10, y: 590, open: false }, { tag: "panel", x: 500, y: 30, open: true }]
        }
        function test_aClickOnTheDimCloses(data) {
            open("PopupAudioSync")
            mouseClick(root, data.x, data.y)
            compare(loader.item !== null, data.open)
        }

        function test_aFileThatDoesNotLoadClosesThePopup() {
            ignoreWarning(/No such file or directory/)
            popup.load("qrc:/qml/popup/Missing.qml")
            tryCompare(popup, "asked", ["Popup", "Video"])
            compare(popup.state, "Off")
            verify(open("PopupAudioSync"))
        }

        // Each popup: Escape closes it, Return where it should, no key gets past it.
        function test_keys_data() {
            return [{ tag: "PopupOpenFile", returns: false },
                    { tag: "PopupAbout", returns: true }, { tag: "PopupAboutThirdParty", returns: true },
                    { tag: "PopupStereoConfig", returns: false }, { tag: "PopupAudioSync", returns: false },
                    { tag: "PopupSoftwareLog", returns: true },
                    { tag: "PopupSoftwareCommunication", returns: true },
                    { tag: "PopupUpdateAvailable", returns: true }]
        }
        function test_keys(data) {
            open(data.tag)
            verify(popup.activeFocus)
            outer.seen = 0
            keyClick(Qt.Key_F9)
            keyClick(Qt.Key_Left)
            verify(loader.item)
            keyClick(Qt.Key_Return)
            compare(loader.item === null, data.returns)
            if (!data.returns)
                keyClick(Qt.Key_Escape)
            compare(loader.item, null)
            compare(popup.asked, ["Popup", "Video"])
            open(data.tag)
            keyClick(Qt.Key_Escape)
            compare(loader.item, null)
            compare(outer.seen, 0)
        }

        // --- Open file or stream ------------------------------------------------------------------

        function test_openFile_data() {
            var longText = "http://example.org/" + "a".repeat(4000)
            return [{ tag: "empty", text: "", opens: false }, { tag: "blanks", text: "   ", opens: false },
                    { tag: "file", text: "/films/a.mp4", opens: true },
                    { tag: "stream with spaces", text: "rtsp://host/a b c", opens: true },
                    { tag: "spaces around", text: "  http://host/a ", sent: "http://host/a", opens: true },
                    { tag: "very long", text: longText, opens: true }]
        }
        function test_openFile(data) {
            for (var byKey = 0; byKey < 2; ++byKey) {
                var item = open("PopupOpenFile")
                kGlobalObject.calls = []
                type(data.tag === "file" ? data.text : "") // the first keys go there
                findChild(item, "field").text = findChild(item, "field").text || data.text
                compare(findChild(item, "openButton").enabled, data.opens)
                if (byKey)
                    keyClick(Qt.Key_Return)
                else
                    mouseClick(findChild(item, "openButton"))
                compare(kGlobalObject.calls, data.opens ? ["open " + (data.sent || data.text)] : [])
                compare(loader.item === null, data.opens)
                cleanup()
            }
        }

        // --- About ------------------------------------------------------------------------------

        function test_about() {
            var item = open("PopupAbout")
            compare(item.height, 290)
            compare(findChild(item, "version").text, "Version 2.3 (32bits)")
            compare(findChild(item, "notices"), null)
            mouseClick(findChild(item, "expander"))
            tryCompare(item, "height", 500)
            verify(findChild(item, "notices").text.indexOf("Component 19") > 0)
            var page = findChild(item, "popupScroll").flickableItem
            for (var i = 0; i < 20; ++i)
                keyClick(Qt.Key_PageDown)
            compare(page.contentY, page.contentHeight - page.height)
            keyClick(Qt.Key_Up)
            compare(page.contentY, page.contentHeight - page.height - 40)
            for (i = 0; i < 20; ++i)
                keyClick(Qt.Key_PageUp)
            compare(page.contentY, 0)
            mouseClick(findChild(item, "expander"))
            tryCompare(item, "height", 290)
        }

        // --- Stereo and sound -----------------------------------------------------------------------

        function test_stereoChangesTheRunAlone() {
            kSettings.set("application/input/stereoscopy", 5)
            var item = open("PopupStereoConfig")
            mouseClick(findChild(item, "stereo_OverUnder"))
            compare(kSettings.get("instance/input/stereoscopy"), 1)
            compare(kSettings.get("application/input/stereoscopy"), 5)
            verify(findChild(item, "stereo_OverUnder").checked)
            verify(!findChild(item, "stereo_auto").checked)
            kSettings.set("instance/input/stereoscopy", 0)
            verify(findChild(item, "stereo_none").checked)
        }

        function test_audioDelay() {
            kVideoPlugin.vlcAudioDelay = 20
            var input = findChild(open("PopupAudioSync"), "input")
            compare(input.text, "20")
            verify(input.activeFocus)
            var rows = [["-250", -250], ["999999", 100000], ["-999999", -100000], ["1e", -100000]]
            for (var i = 0; i < rows.length; ++i) {
                input.selectAll()
                type(rows[i][0])
                keyClick(Qt.Key_Return)
                compare(kVideoPlugin.vlcAudioDelay, rows[i][1])
            }
            keyClick(Qt.Key_Up)
            compare(kVideoPlugin.vlcAudioDelay, -99999)
            kVideoPlugin.resetDefaultValues("audio")
        }

        // --- Software log ---------------------------------------------------------------------------

        function test_softwareLog_data() {
            return [{ tag: "no devices", supported: false, transfer: 0, format: "", gpu: 3 },
                    { tag: "devices", supported: true, transfer: 2, format: "I420", gpu: 5 }]
        }
        function test_softwareLog(data) {
            device.supported = data.supported
            player.textureTransfer = data.transfer
            player.texturePixelFormat = data.format
            kGlobalObject.player = player
            var log = createTemporaryObject(softwareLog, root)
            var sections = { gpu: true, headset: data.supported, realSense: data.supported,
                             sensor: true, leap: data.supported, metadata: true }
            for (var name in sections)
                compare(findChild(log, name).visible, sections[name], name)
            var gpu = findChild(log, "gpu").text
            compare(gpu.split("\n").length, data.gpu)
            compare(gpu.indexOf("Texture transfer mode : 2") > 0, data.supported)
            compare(gpu.indexOf("Texture pixel format : I420") > 0, data.supported)
            compare(findChild(log, "metadata").text, kGlobalObject.videoLogMessage)
            verify(findChild(findChild(log, "leap"), "link").text.indexOf("example.org/driver") > 0)
            kGlobalObject.player = null
            device.supported = true
        }

        // --- Communication --------------------------------------------------------------------------

        readonly property var defaults: ({ state: "off", ipMode: "localhost",
            ipCustom: "192.168.1.1", port: 7755, rate: 20, urlMode: 0, orientationMode: 0, format: 0 })

        function editCommunication() {
            for (var name in defaults)
                kSettings.set(communication + name, defaults[name])
            var item = open("PopupSoftwareCommunication")
            mouseClick(findChild(findChild(item, "state"), "choice_1"))
            waitForRendering(item, 500)
            mouseClick(findChild(findChild(item, "ip"), "choice_2"))
            waitForRendering(item, 500)
            var port = findChild(findChild(item, "port"), "input")
            port.forceActiveFocus()
            port.selectAll()
            type("1234")
            compare(findChild(item, "port").label, "Port :")
            compare(findChild(item, "rate").label, "Refresh rate (ms) :")
            return item
        }
        function test_communicationHoldsAfterApplyAlone_data() {
            return [{ tag: "apply", button: "applyButton",
                      expected: { state: "master", ipMode: "custom", port: 1234 } },
                    { tag: "cancel", button: "cancelButton", expected: {} },
                    { tag: "escape", expected: {} }]
        }
        function test_communicationHoldsAfterApplyAlone(data) {
            var item = editCommunication()
            changes.clear()
            if (data.button)
                mouseClick(findChild(item, data.button))
            else
                keyClick(Qt.Key_Escape)
            compare(loader.item, null)
            for (var name in defaults) {
                var expected = name in data.expected ? data.expected[name] : defaults[name]
                compare(kSettings.get(communication + name), expected, name)
            }
            var keys = []
            for (var i = 0; i < changes.count; ++i) {
                if (changes.signalArguments[i][0].indexOf(communication) === 0)
                    keys.push(changes.signalArguments[i][0].slice(communication.length))
            }
            compare(keys, data.button === "applyButton"
                ? ["state", "ipMode", "ipCustom", "port", "rate", "urlMode", "orientationMode", "format"]
                : [])
            for (name in defaults)
                kSettings.set(communication + name, defaults[name])
        }

        // --- Leap Motion ------------------------------------------------------------------------------

        function makeLeapOptions() {
            var item = createTemporaryObject(leapOptions, root)
            closed.target = item
            closed.clear()
            item.forceActiveFocus()
            waitForRendering(item, 500)
            return item
        }
        function options() {
            var values = {}
            for (var name in { sensitivityYawPitch: 0, sensitivitySeekJump: 0, pitchInv: 0, yawInv: 0,
                    cameraMode: 0, pointerInterpolation: 0, rollMode: 0, fovMode: 0,
                    playPauseGesture: 0, seekGesture: 0, drawHand: 0 })
                values[name] = device[name]
            return values
        }

        function test_leapOptions_data() {
            return [{ tag: "ok", button: "okButton", kept: true },
                    { tag: "cancel", button: "cancelButton", kept: false },
                    { tag: "escape", kept: false }]
        }
        function test_leapOptions(data) {
            var before = options()
            var item = makeLeapOptions()
            var clicks = [["cameraMode", 1, 1], ["pitchInv", 0, true], ["yawInv", 1, false],
                          ["rollMode", 0, true], ["fovMode", 1, false], ["seekGesture", 1, false]]
            for (var i = 0; i < clicks.length; ++i) {
                var choice = findChild(findChild(item, clicks[i][0]), "choice")
                item.reveal(choice)
                mouseClick(findChild(choice, "choice_" + clicks[i][1]))
                compare(device[clicks[i][0]], clicks[i][2], clicks[i][0])
            }
            device.pointerInterpolation = 9
            var changed = options()
            if (data.button)
                mouseClick(findChild(item, data.button))
            else
                keyClick(Qt.Key_Escape)
            compare(closed.count, 1)
            compare(options(), data.kept ? changed : before)
            for (var name in before)
                device[name] = before[name]
        }

        function test_leapSliders_data() {
            return [{ tag: "sensitivityYawPitch", from: 0.01, to: 0.8, preset: 0.2 },
                    { tag: "sensitivitySeekJump", from: 1000, to: 10000, preset: 5000 }]
        }
        function test_leapSliders(data) {
            var item = makeLeapOptions()
            var before = device[data.tag]
            var slider = findChild(findChild(item, data.tag), "slider")
            item.reveal(slider)
            mousePress(slider, 2, 10)
            mouseMove(slider, slider.width, 10)
            compare(device[data.tag], before)
            mouseRelease(slider, slider.width + 50, 10)
            fuzzyCompare(device[data.tag], data.to, 1e-6)
            mouseClick(slider, 0, 10)
            keyClick(Qt.Key_Right)
            fuzzyCompare(device[data.tag], data.from + (data.to - data.from) / 20, 1e-6)
            mouseClick(findChild(findChild(item, data.tag), "default"))
            fuzzyCompare(device[data.tag], data.preset, 1e-6)
            device[data.tag] = before
        }

        function test_leapHands_data() {
            return [{ tag: "hands", enabled: true },
                    { tag: "headset", headset: true, enabled: false },
                    { tag: "finger", mode: 1, enabled: false },
                    { tag: "tutorial", tutorial: 3, enabled: false }]
        }
        function test_leapHands(data) {
            device.hmdMode = data.headset === true
            device.cameraMode = data.mode || 3
            device.tutoState = data.tutorial === undefined ? -1 : data.tutorial
            var item = makeLeapOptions()
            compare(findChild(item, "drawHand").enabled, data.enabled)
            compare(findChild(item, "cameraTitle").text,
                    data.headset ? "Virtual Reality mode" : "Camera Control")
            compare(findChild(findChild(item, "cameraMode"), "choice").choices[0].text,
                    data.headset ? "Leap Motion head-mounted" : "Hands")
            device.hmdMode = false
            device.cameraMode = 3
            device.tutoState = -1
        }

        // --- Update -----------------------------------------------------------------------------------

        function test_update() {
            var item = open("PopupUpdateAvailable")
            compare(item.title, "New version available 2.4.0.400")
            verify(findChild(item, "released").text.indexOf("2017") > 0)
            var log = findChild(item, "changeLog")
            compare(log.textFormat, Text.RichText)
            verify(log.text.indexOf("<li>One") > 0)
            verify(findChild(item, "websiteButton").enabled)
            verify(!findChild(item, "installerButton").enabled)
            mouseClick(findChild(item, "closeButton"))
            compare(loader.item, null)
        }
    }

    // What a popup let through of the keys.
    Item {
        id: outer
        property int seen: 0
    }
    Keys.onPressed: ++outer.seen
}
