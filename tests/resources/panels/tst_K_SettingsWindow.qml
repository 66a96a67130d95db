import QtQuick 2.15
import QtTest 1.2
import com.vedra.kontrols 1.0
import QtQuick.Window 2.2
import "qrc:/qml"

Item {
    id: root
    width: 1000
    height: 600

    K_SettingsWindow {
        id: settings
        anchors.fill: parent
        onChangeRootState: asked.push(newState)
        onRestartPlayback: asked.push("playback")
        property var asked: []
    }
    FakeDevice { id: device }

    TestCase {
        id: test
        name: "K_SettingsWindow"
        when: windowShown

        readonly property string prefix: "application/"

        function initTestCase() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            ThemeManager.loadThemes(":/", "Orvex LND")
        }

        function init() {
            settings.state = "On"
            settings.asked = []
            kGlobalObject.calls = []
            findChild(settings, "categoriesList").forceActiveFocus()
        }

        // --- Reaching things --------------------------------------------------------------------

        function show(category) {
            var list = findChild(settings, "categoriesList")
            for (var i = 0; i < settings.categories.length; ++i) {
                if (settings.categories[i].id === category)
                    list.currentIndex = i
            }
            waitForRendering(settings)
            return findChild(settings, "page").item
        }
        function row(name) {
            var item = findChild(findChild(settings, "page"), name)
            verify(item, name)
            settings.reveal(item)
            return item
        }
        function restarts(key) {
            for (var i = 0; i < settings.settingsNeedRestartList.count; ++i) {
                if (settings.settingsNeedRestartList.get(i).key === key)
                    return true
            }
            return false
        }
        function type(field, text) {
            field.forceActiveFocus()
            field.selectAll()
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
        }

        // --- Every row ----------------------------------------------------------------------------

        // key: of kSettings, or "." and a property of kVideoPlugin. values: what the choices stand
        // for, in order; from and to: the ends of a number; neither: a mark.
        function test_row_data() {
            var onOff = [true, false]
            var communication = "communication/"
            return [
                { category: "general", tag: "inputType", key: "input/projection", values: [4, 0, 2, 1],
                  preset: 0, hint: "Projection used to encode the input media" },
                { category: "general", tag: "inputStereoscopy", key: "input/stereoscopy",
                  values: [5, 0, 2, 1, 4, 3], preset: 5, images: ["auto", "none", "SideBySide",
                    "OverUnder", "SideBySide_inverted", "OverUnder_inverted"],
                  hint: "Stereoscopy format used to encode the input media" },
                { category: "general", tag: "outputProjection", key: "output/projection",
                  values: [0, 1, 2, 3], preset: 0, hint: "Projection applied to reproject the media" },
                { category: "general", tag: "outputDisplay", key: "output/display",
                  values: ["standard", "3d", "split"], preset: "standard",
                  hint: "Adjust the rendering to fit a specific display" },
                { category: "general", tag: "touchMode", key: "general/touchMode", values: onOff,
                  preset: true, hint: "View navigation same as Mobile version" },
                { category: "general", tag: "loopMode", key: "general/loopMode", values: [0, 1, 2],
                  preset: 1, hint: "Choose loop mode behavior" },
                { category: "general", tag: "imageDisplayDuration", from: 10, to: 3600, preset: 30,
                  key: "playlist/imageDisplayDuration",
                  hint: "Display duration of one image when playing a playlist of images" },
                { category: "general", tag: "imageDisplayDuration", preset: false,
                  key: "playlist/imageDisplayDurationNone",
                  hint: "Display duration of one image when playing a playlist of images" },
                { category: "general", tag: "cameraInertia", key: "general/cameraInertia",
                  values: [400, 0], preset: 400, hint: "Add some inertia on camera moves." },
                { category: "general", tag: "cameraMoveSteps", key: "general/cameraMoveSteps",
                  from: 1, to: 180, preset: 90,
                  hint: "Steps, in degrees, when moving camera with keyboard arrows." },
                { category: "general", tag: "enableAnalytics", key: "general/enableAnalytics",
                  preset: true, restart: true },
                { category: "video", tag: "hardwareDecoding", key: ".vlcHwDecoding", values: onOff,
                  preset: false, hint: "Activate hardware decoding, this is the most efficient but "
                    + "it is not guarantee to work everywhere" },
                { category: "video", tag: "shaderColorConversion", key: ".vlcShaderColorConversion",
                  values: onOff, preset: true, hint: "Use OpenGL shaders to make color conversion, "
                    + "this is the most efficient but colors can be slightly different" },
                { category: "audio", tag: "audioDelay", key: ".vlcAudioDelay", from: -3000, to: 3000,
                  preset: 0, hint: "Set audio delay. Only available for VLC backend (see Video "
                    + "decoding settings)." },
                { category: "masterSlave", tag: "state", key: communication + "state", preset: "off",
                  values: ["off", "master", "slave"], restart: true,
                  hint: "Stream UDP messages with camera and playback informations" },
                { category: "masterSlave", tag: "ip", key: communication + "ipMode", role: "master",
                  values: ["broadcast", "localhost", "custom"], preset: "localhost", restart: true,
                  hint: "IP address where UDP messages are sent" },
                { category: "masterSlave", tag: "port", key: communication + "port", role: "slave",
                  from: 0, to: 999999, preset: 7755, restart: true, hint: "Port number to listen" },
                { category: "masterSlave", tag: "rate", key: communication + "rate", role: "master",
                  from: 0, to: 1000, preset: 20, restart: true,
                  hint: "Number of milliseconds before sending a new UDP message" },
                { category: "masterSlave", tag: "urlMode", key: communication + "urlMode",
                  role: "slave", values: [0, 1, 2, 3], preset: 0, restart: true,
                  hint: "Defines how the video URL is processed by slave" },
                { category: "masterSlave", tag: "orientationMode", role: "slave", restart: true,
                  key: communication + "orientationMode", values: [0, 1, 2], preset: 0,
                  hint: "Defines how the camera orientation (yaw, pitch, roll) is processed by slave" },
                { category: "masterSlave", tag: "format", key: communication + "format",
                  role: "master", values: [0, 1], preset: 0, restart: true,
                  hint: "Defines the interal format of encoded UDP messages" },
                { category: "controllers", tag: "hmdSdk", key: "hmd/sdk", preset: "auto",
                  values: ["auto", "oculus", "openvr"], restart: true, platform: "Q_OS_WIN64",
                  starts: "Select the SDK to detect and manage HMD. 'Auto' will try to use first "
                    + "the Oculus SDK to detect" },
                { category: "controllers", tag: "gazeUI", key: "hmd/gazeUI", values: [false, true],
                  preset: false, restart: true, hint: "Use Gaze UI if you don't have any remote control." },
                { category: "controllers", tag: "feedbackScreen", key: "realsense/feedbackScreen",
                  values: onOff, preset: true, hint: "Display the depth feedback from the camera" },
                { category: "controllers", tag: "ghostHands", key: "leapmotion/ghostHands",
                  values: onOff, preset: true,
                  hint: "Display the virtual representation of user hands" },
                { category: "advanced", tag: "forceopengl", key: "advanced/forceopengl", values: onOff,
                  preset: false, restart: true,
                  hint: "Force to run the software with OpenGL graphics" },
                { category: "advanced", tag: "sharedmemory", key: "advanced/sharedmemory",
                  values: onOff, preset: false, restart: true,
                  hint: "Activate the shared memory mechanism to use the software as a client" }
            ]
        }

        function read(row) {
            return row.key[0] === "." ? kVideoPlugin[row.key.slice(1)]
                                      : kSettings.getTyped(prefix + row.key)
        }
        function write(row, value) {
            if (row.key[0] === ".")
                kVideoPlugin[row.key.slice(1)] = value
            else
                kSettings.set(prefix + row.key, value)
        }
        function prepare(data) {
            kGlobalObject.platform = data.platform || "Q_OS_LINUX"
            if (data.role)
                kSettings.set(prefix + "communication/state", data.role)
            var page = show(data.category)
            if (data.category === "controllers")
                page.headset = page.realSense = page.leap = device
            waitForRendering(settings, 200)
            return row(data.tag)
        }
        function checkRestart(data, value) {
            compare(restarts(prefix + data.key), data.restart === true && value !== data.preset)
            compare(findChild(settings, "backButton").text,
                    settings.settingsNeedRestartList.count > 0 ? "Restart to apply" : "Back to Player")
        }

        function test_row(data) {
            var item = prepare(data)
            compare(read(data), data.preset)
            verify(item.visible)
            mouseMove(item, 30, 12)
            tryVerify(function() { return findChild(settings, "hintLine").text === item.hint })
            if (data.hint)
                compare(item.hint, data.hint)
            verify(item.hint !== "" && item.hint.indexOf(data.starts || "") === 0, item.hint)

            if (data.images)
                checkImages(data, item)
            else if (data.values)
                checkChoice(data, item)
            else if (data.to !== undefined)
                checkNumber(data, item)
            else
                checkMark(data, item)

            mouseClick(findChild(settings, "restoreButton"))
            compare(read(data), data.preset)
            checkRestart(data, data.preset)
            compare(settings.category, data.category)
            kGlobalObject.platform = "Q_OS_LINUX"
        }

        function checkChoice(data, item) {
            var choice = findChild(item, "choice")
            for (var i = data.values.length - 1; i >= 0; --i) {
                write(data, data.values[i])
                compare(choice.currentIndex, i)
            }
            for (i = data.values.length - 1; i >= 0; --i) {
                mouseClick(findChild(choice, "choice_" + i))
                compare(read(data), data.values[i])
                waitForRendering(settings, 200) // rows that come or go have their place then
                checkRestart(data, data.values[i])
            }
            keyClick(Qt.Key_Left)
            compare(read(data), data.values[0])
            keyClick(Qt.Key_Right)
            compare(read(data), data.values[1])
            checkRestart(data, data.values[1])
        }

        function checkImages(data, item) {
            for (var i = data.values.length - 1; i >= 0; --i) {
                var button = findChild(item, "stereo_" + data.images[i])
                mouseClick(button)
                compare(read(data), data.values[i])
                for (var other = 0; other < data.values.length; ++other)
                    compare(findChild(item, "stereo_" + data.images[other]).checked, other === i)
            }
        }

        function checkNumber(data, item) {
            var box = findChild(item, "spinBox")
            var input = findChild(box, "input")
            write(data, data.to)
            compare(input.text, String(data.to))
            var rows = [[String(data.from + 5), data.from + 5], [String(data.to * 10), data.to],
                        ["-99999999", data.from], ["x7e", data.from], ["", data.from],
                        [String(data.from + 7), data.from + 7]]
            for (var i = 0; i < rows.length; ++i) {
                type(input, rows[i][0])
                if (rows[i][0] === "")
                    keyClick(Qt.Key_Delete)
                keyClick(Qt.Key_Return)
                compare(read(data), rows[i][1])
                compare(input.text, String(rows[i][1]))
                checkRestart(data, rows[i][1])
            }
            mouseClick(findChild(box, "increase"))
            compare(read(data), data.from + 8)
        }

        function checkMark(data, item) {
            var mark = findChild(item, "checkBox")
            mouseClick(mark, 8, mark.height / 2)
            compare(read(data), !data.preset)
            compare(mark.checked, !data.preset)
            checkRestart(data, !data.preset)
            keyClick(Qt.Key_Space)
            compare(read(data), data.preset)
            write(data, !data.preset)
            compare(mark.checked, !data.preset)
        }

        // --- What shows when ----------------------------------------------------------------------

        function test_rowsShowUnderTheirCondition_data() {
            return [
                { tag: "standard", category: "general", keys: { "input/projection": 1 },
                  hidden: ["outputProjection"], shown: ["inputType"] },
                { tag: "off", category: "masterSlave", shown: ["state"],
                  hidden: ["ip", "port", "rate", "urlMode", "orientationMode", "format"] },
                { tag: "master", category: "masterSlave", keys: { "communication/state": "master" },
                  shown: ["ip", "port", "rate", "format"], hidden: ["urlMode", "orientationMode"] },
                { tag: "slave", category: "masterSlave", keys: { "communication/state": "slave" },
                  shown: ["port", "urlMode", "orientationMode", "format"], hidden: ["ip", "rate"] },
                { tag: "no device", category: "controllers", shown: ["noControllers"],
                  hidden: ["hmdSdk", "gazeUI", "feedbackScreen", "ghostHands"] },
                { tag: "no device, Windows", category: "controllers", platform: "Q_OS_WIN32",
                  shown: ["noControllers", "hmdSdk"], hidden: ["gazeUI"] },
                { tag: "32 bits", category: "video", platform: "Q_OS_WIN32",
                  shown: ["backend", "shaderColorConversion"],
                  hidden: ["hardwareDecoding", "instanceArguments", "mediaOptions"] },
                { tag: "custom", category: "video", custom: true,
                  shown: ["shaderColorConversion", "instanceArguments", "mediaOptions"],
                  hidden: ["backend", "hardwareDecoding"] },
                { tag: "other backend", category: "video", plugin: "qt", shown: ["backend"],
                  hidden: ["hardwareDecoding", "shaderColorConversion"] },
                { tag: "other backend's sound", category: "audio", plugin: "qt",
                  shown: ["audioNote"], hidden: ["audioDelay"] }
            ]
        }
        function test_rowsShowUnderTheirCondition(data) {
            kGlobalObject.platform = data.platform || "Q_OS_LINUX"
            kGlobalObject.custom = data.custom === true
            kVideoPlugin.currentPlugin = data.plugin || "vlc"
            for (var key in data.keys || {})
                kSettings.set(prefix + key, data.keys[key])
            show(data.category)
            for (var i = 0; i < data.shown.length; ++i)
                verify(row(data.shown[i]).visible, data.shown[i])
            for (i = 0; i < data.hidden.length; ++i)
                verify(!row(data.hidden[i]).visible, data.hidden[i])
            kGlobalObject.platform = "Q_OS_LINUX"
            kGlobalObject.custom = false
            kVideoPlugin.currentPlugin = "vlc"
            settings.restoreDefaultValues("general")
            settings.restoreDefaultValues("masterSlave")
        }

        function test_aDrivenProgramLocksPages() {
            kGlobalObject.adobePlugin = true
            for (var i = 0; i < settings.categories.length; ++i) {
                var locked = i !== 0 && settings.categories[i].id !== "controllers"
                show(settings.categories[i].id)
                compare(findChild(settings, "page").enabled, !locked)
                fuzzyCompare(findChild(settings, "page").opacity, locked ? 0.2 : 1, 0.001)
            }
            kGlobalObject.adobePlugin = false
        }

        // --- Rows of their own kind ---------------------------------------------------------------

        function test_backend() {
            show("video")
            mouseClick(findChild(row("backend"), "backend_qt"), 8, 13)
            compare(kVideoPlugin.currentPlugin, "qt")
            verify(restarts("application/videoPlugin"))
            verify(!findChild(row("backend"), "backend_vlc").checked)
            mouseClick(findChild(settings, "restoreButton"))
            compare(kVideoPlugin.currentPlugin, "vlc")
            verify(!restarts("application/videoPlugin"))
        }

        function test_customTextsOfVlc() {
            kGlobalObject.custom = true
            show("video")
            var area = findChild(row("instanceArguments"), "custom")
            compare(findChild(row("instanceArguments"), "default").text, "--default-instance,--second")
            type(area, "--verbose=2")
            verify(!restarts("vlc/customInstanceArguments"))
            keyClick(Qt.Key_Tab)
            compare(kGlobalObject.calls, ["vlc instance --verbose=2"])
            verify(restarts("vlc/customInstanceArguments"))

            type(findChild(row("mediaOptions"), "custom"), ":no-audio")
            findChild(settings, "backButton").forceActiveFocus()
            compare(kGlobalObject.texts["media"], ":no-audio")
            compare(settings.asked, ["playback"])

            mouseClick(findChild(settings, "restoreButton"))
            compare(kGlobalObject.texts["instance"], "--default-instance,--second")
            compare(kGlobalObject.texts["media"], "--default-media,--second")
            compare(findChild(row("instanceArguments"), "custom").text, "--default-instance,--second")
            settings.onInstanceArgumentsChanged("")
            verify(!restarts("vlc/customInstanceArguments"))
            kGlobalObject.custom = false
        }

        function test_customAddress_data() {
            return [{ tag: "four", typed: ["10", "0", "255", "7"], address: "10.0.255.7" },
                    { tag: "empty counts as 0", typed: ["1", "", "", "4"], address: "1.0.0.4" },
                    { tag: "damaged store", stored: "999.x", typed: ["1", "2", "3", "4"],
                      shown: "255.0.0.0", address: "1.2.3.4" },
                    { tag: "too large", typed: ["256", "999", "300", "1"], address: "25.99.30.1" },
                    { tag: "no number", typed: ["a1", "-2", "3.", " 4"], address: "1.2.3.4" }]
        }
        function test_customAddress(data) {
            kSettings.set(prefix + "communication/state", "master")
            kSettings.set(prefix + "communication/ipMode", "custom")
            if (data.stored)
                kSettings.set(prefix + "communication/ipCustom", data.stored)
            show("masterSlave")
            for (var i = 0; i < 4; ++i) {
                var field = findChild(row("ip"), "ip_" + i)
                if (data.shown)
                    compare(field.text, data.shown.split(".")[i])
                type(field, data.typed[i])
                if (data.typed[i] === "")
                    keyClick(Qt.Key_Delete)
                keyClick(Qt.Key_Tab)
            }
            compare(kSettings.get(prefix + "communication/ipCustom"), data.address)
            verify(restarts(prefix + "communication/ipCustom"))
            mouseClick(findChild(settings, "restoreButton"))
            compare(kSettings.get(prefix + "communication/ipCustom"), "192.168.1.1")
        }

        function test_folderOfScreenshots() {
            show("general")
            var folder = "file:///tmp/" + "long/".repeat(60) + "with%20space"
            kSettings.set(prefix + "general/printSavePath", folder)
            compare(findChild(row("printSavePath"), "folder").path,
                    "/tmp/" + "long/".repeat(60) + "with space")
            verify(!findChild(row("printSavePath"), "folderWarning").visible)
            kGlobalObject.writable = false
            kSettings.set(prefix + "general/printSavePath", "file:///proc")
            verify(findChild(row("printSavePath"), "folderWarning").visible)
            kGlobalObject.writable = true

            kSettings.set(prefix + "general/fileDialogLastFolder", "file:///films")
            mouseClick(findChild(settings, "restoreButton"))
            compare(kSettings.get(prefix + "general/printSavePath"), "toBeDefine")
            compare(kSettings.get(prefix + "general/fileDialogLastFolder"), "file:///films")
            verify(findChild(row("printSavePath"), "folder").path.length > 1)
        }

        function test_theHintFollowsThePointerFromRowToRow() {
            show("masterSlave")
            mouseClick(findChild(row("state"), "choice_2"))
            waitForRendering(settings, 200)
            mouseMove(findChild(row("urlMode"), "choice_1"), 10, 10)
            tryCompare(findChild(settings, "hintLine"), "text", row("urlMode").hint)
            verify(!row("state").pointed)
            settings.restoreDefaultValues("masterSlave")
        }

        // --- Leaving ------------------------------------------------------------------------------

        function test_leaving_data() {
            return [{ tag: "escape", restart: false, key: Qt.Key_Escape, asked: ["Video"] },
                    { tag: "escape keeps the list", restart: true, key: Qt.Key_Escape, asked: ["Video"] },
                    { tag: "back", restart: false, asked: ["Video"] },
                    { tag: "back by key", restart: false, key: Qt.Key_Return, asked: ["Video"] },
                    { tag: "restart", restart: true, calls: ["restart"] },
                    { tag: "restart by key", restart: true, key: Qt.Key_Return, calls: ["restart"] }]
        }
        function test_leaving(data) {
            kSettings.set(prefix + "communication/port", data.restart ? 80 : 7755)
            var button = findChild(settings, "backButton")
            compare(button.text, data.restart ? "Restart to apply" : "Back to Player")
            if (data.key === Qt.Key_Return)
                button.forceActiveFocus()
            if (data.key)
                keyClick(data.key)
            else
                mouseClick(button)
            compare(settings.asked, data.asked || [])
            compare(kGlobalObject.calls, data.calls || [])
            compare(settings.settingsNeedRestartList.count, data.restart ? 1 : 0)
            kSettings.set(prefix + "communication/port", "7755") // as a store gives it back
            compare(settings.settingsNeedRestartList.count, 0)
        }

        function test_escapeLeavesATextBeingEdited() {
            show("audio")
            findChild(row("audioDelay"), "input").forceActiveFocus()
            keyClick(Qt.Key_Escape)
            compare(settings.asked, ["Video"])
        }

        function test_onlyAnOpenWindowHoldsAPage() {
            verify(show("general"))
            settings.state = "Off"
            compare(findChild(settings, "page").item, null)
            verify(!settings.visible)
            settings.gotoVideoCategory()
            compare(settings.category, "video")
            compare(settings.asked, ["Settings"])
        }

        function test_eachVisitBeginsAtTheCategories() {
            show("general")
            row("enableAnalytics")
            findChild(row("printSavePath"), "folder").forceActiveFocus()
            settings.state = "Off"
            settings.state = "On"
            compare(root.Window.activeFocusItem.objectName, "category_general")
            compare(findChild(settings, "scroll").flickableItem.contentY, 0)
        }

        function test_arrowsGoThroughTheCategories() {
            show("general")
            for (var i = 1; i < settings.categories.length; ++i) {
                keyClick(Qt.Key_Down)
                compare(settings.category, settings.categories[i].id)
            }
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Up)
            compare(settings.category, "controllers")
        }

        // Tab goes through the whole window and shows where it is.
        function test_tabReachesEveryControl() {
            show("advanced")
            findChild(settings, "backButton").forceActiveFocus()
            var expected = ["category_advanced", "choice", "choice", "restoreButton", "backButton"]
            for (var i = 0; i < expected.length; ++i) {
                keyClick(Qt.Key_Tab)
                compare(root.Window.activeFocusItem.objectName, expected[i])
            }
            keyClick(Qt.Key_Backtab)
            compare(root.Window.activeFocusItem.objectName, "restoreButton")
        }

        function test_focusScrollsIntoSight() {
            show("general")
            row("inputType")
            var folder = findChild(findChild(settings, "page"), "folder")
            folder.forceActiveFocus()
            var y = folder.mapToItem(findChild(settings, "scroll"), 0, 0).y
            verify(y >= 0 && y + folder.height <= findChild(settings, "scroll").height, y)
        }
    }
}
