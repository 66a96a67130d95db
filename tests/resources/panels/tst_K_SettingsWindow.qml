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

        // Page, row, key ("." for a property of kVideoPlugin), preset; the values that its choices
        // stand for, the ends of a number, or neither for a mark.
        function test_row_data() {
            return tables.read("settings").map(function(r) {
                return { category: r[0], tag: r[1], key: r[2], preset: r[3], to: r[5],
                         from: r[5] === undefined ? undefined : r[4],
                         values: r[5] === undefined ? r[4] : undefined,
                         restart: r[0] === "masterSlave" || r[0] === "advanced" || r[1] === "hmdSdk"
                                  || r[1] === "gazeUI" || r[1] === "enableAnalytics" }
            })
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
            kGlobalObject.platform = "Q_OS_WIN64" // where every row is there
            if (data.tag === "ip" || data.tag === "rate")
                kSettings.set(prefix + "communication/state", "master")
            else if (data.category === "masterSlave" && data.tag !== "state")
                kSettings.set(prefix + "communication/state", "slave")
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
            verify(item.hint)
            if (data.tag === "inputStereoscopy")
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
            var images = ["auto", "none", "SideBySide", "OverUnder", "SideBySide_inverted",
                          "OverUnder_inverted"]
            for (var i = images.length - 1; i >= 0; --i) {
                mouseClick(findChild(item, "stereo_" + images[i]))
                compare(read(data), data.values[i])
                for (var other = 0; other < images.length; ++other)
                    compare(findChild(item, "stereo_" + images[other]).checked, other === i)
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
            return tables.read("settings-conditions")
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

        // --- Leaving ------------------------------------------------------------------------------

        function test_leaving_data() {
            return [{ tag: "escape", restart: false, key: Qt.Key_Escape, asked: ["Video"] },
                    { tag: "escape while editing", restart: false, editing: true,
                      key: Qt.Key_Escape, asked: ["Video"] },
                    { tag: "escape keeps the list", restart: true, key: Qt.Key_Escape, asked: ["Video"] },
                    { tag: "back", restart: false, asked: ["Video"] },
                    { tag: "back by key", restart: false, key: Qt.Key_Return, asked: ["Video"] },
                    { tag: "restart", restart: true, calls: ["restart"] },
                    { tag: "restart by key", restart: true, key: Qt.Key_Return, calls: ["restart"] }]
        }
        function test_leaving(data) {
            show("audio")
            kSettings.set(prefix + "communication/port", data.restart ? 80 : 7755)
            var button = findChild(settings, "backButton")
            compare(button.text, data.restart ? "Restart to apply" : "Back to Player")
            if (data.key === Qt.Key_Return)
                button.forceActiveFocus()
            if (data.editing)
                findChild(row("audioDelay"), "input").forceActiveFocus()
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

        function test_onlyAnOpenWindowHoldsAPageAndEachVisitBeginsAtTheCategories() {
            show("general")
            row("enableAnalytics")
            findChild(row("printSavePath"), "folder").forceActiveFocus()
            settings.state = "Off"
            compare(findChild(settings, "page").item, null)
            verify(!settings.visible)
            settings.state = "On"
            compare(root.Window.activeFocusItem.objectName, "category_general")
            compare(findChild(settings, "scroll").flickableItem.contentY, 0)
            settings.gotoVideoCategory()
            compare(settings.category, "video")
            compare(settings.asked, ["Settings"])
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

        function test_tabReachesEveryControlAndScrollsItIntoSight() {
            show("advanced")
            findChild(settings, "backButton").forceActiveFocus()
            var expected = ["category_advanced", "choice", "choice", "restoreButton", "backButton"]
            for (var i = 0; i < expected.length; ++i) {
                keyClick(Qt.Key_Tab)
                compare(root.Window.activeFocusItem.objectName, expected[i])
            }
            keyClick(Qt.Key_Backtab)
            compare(root.Window.activeFocusItem.objectName, "restoreButton")

            show("general")
            row("inputType")
            var folder = findChild(findChild(settings, "page"), "folder")
            folder.forceActiveFocus()
            var y = folder.mapToItem(findChild(settings, "scroll"), 0, 0).y
            verify(y >= 0 && y + folder.height <= findChild(settings, "scroll").height, y)
        }
    }
}
