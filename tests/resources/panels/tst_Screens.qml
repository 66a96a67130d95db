import QtQuick 2.15
import QtTest 1.2
import com.vedra.kontrols 1.0
import "qrc:/qml"
import "qrc:/qml/popup"

// Every page and popup in small and large windows: nothing is cut off, and whatever the Tab key
// reaches has a name for those who hear the interface. The pictures stay in the build folder, to be
// looked at.
Item {
    id: root

    readonly property var sizes: [[640, 430], [1000, 570], [1920, 1050]]

    Rectangle {
        anchors.fill: parent
        color: "#4a5a66"
    }
    K_SettingsWindow {
        id: settings
        anchors.fill: parent
    }
    K_Popup {
        id: popup
        anchors.fill: parent
        visible: state === "On"
        onChangeRootState: state = newState === "Popup" ? "On" : "Off"
    }
    Component {
        id: leapOptions
        PopupLeapOptions {
            leap: FakeDevice {}
            builder: leap
            x: (root.width - width) / 2
        }
    }

    TestCase {
        name: "Screens"
        when: windowShown

        function initTestCase() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            ThemeManager.loadThemes(":/", "Orvex LND")
        }

        // Texts that end in dots, and items that reach out of their window to a side. A path may be
        // shortened.
        function checkInside(item, name) {
            if (!item.visible || item.opacity === 0 || item.objectName === "folder")
                return
            if (item.truncated === true)
                fail(name + ": cut off: " + item.text)
            if (item.text !== undefined && item.width > 0 && item.text !== "") {
                var left = item.mapToItem(root, 0, 0).x
                verify(left >= 0 && left + item.width <= root.width + 0.5, name + ": " + item.text)
                verify(!(item.paintedWidth > item.width + 1), name + ": too wide: " + item.text)
            }
            for (var i = 0; i < item.children.length; ++i)
                checkInside(item.children[i], name)
        }
        // How many the Tab key reaches below an item; each must have a name.
        function reached(item) {
            if (!item.visible || !item.enabled)
                return 0
            var count = item.activeFocusOnTab ? 1 : 0
            verify(count === 0 || item.Accessible.name, item + " " + item.objectName)
            for (var i = 0; i < item.children.length; ++i)
                count += reached(item.children[i])
            return count
        }
        // For each size of the window, with the item that show() gives.
        function check(name, controls, show, hide) {
            for (var s = 0; s < root.sizes.length; ++s) {
                root.width = root.sizes[s][0]
                root.height = root.sizes[s][1]
                var item = show()
                wait(250) // animations
                grabImage(root).save(screenshotFolder + "/" + name + "_" + root.width + ".png")
                checkInside(item, name)
                verify(reached(item) >= controls, name)
                hide()
            }
        }

        function test_pages_data() {
            return [{ tag: "general" }, { tag: "video" }, { tag: "video", custom: true },
                    { tag: "audio" }, { tag: "masterSlave", role: "master" },
                    { tag: "masterSlave", role: "slave" }, { tag: "controllers" }, { tag: "advanced" }]
        }
        function test_pages(data) {
            kGlobalObject.custom = data.custom === true
            kSettings.set("application/communication/state", data.role || "off")
            kSettings.set("application/communication/ipMode", "custom")
            check(data.tag + (data.role || "") + (data.custom ? "Custom" : ""), 3, function() {
                settings.state = "On"
                var list = findChild(settings, "categoriesList")
                for (var i = 0; i < settings.categories.length; ++i) {
                    if (settings.categories[i].id === data.tag)
                        settings.categoryIndex = i
                }
                list.forceActiveFocus()
                return settings
            }, function() { settings.state = "Off" })
            kGlobalObject.custom = false
        }

        function test_popups_data() {
            return [{ tag: "PopupOpenFile", controls: 2 }, { tag: "PopupAbout", controls: 1 },
                    { tag: "PopupAboutThirdParty", controls: 1 },
                    { tag: "PopupStereoConfig", controls: 6 },
                    { tag: "PopupAudioSync", controls: 1 }, { tag: "PopupSoftwareLog", controls: 0 },
                    { tag: "PopupSoftwareCommunication", controls: 2 },
                    { tag: "PopupUpdateAvailable", controls: 1 }]
        }
        function test_popups(data) {
            kSettings.set("application/communication/state", "master")
            check(data.tag, data.controls, function() {
                popup.load("qrc:/qml/popup/" + data.tag + ".qml")
                tryVerify(function() { return findChild(popup, "popupLoader").item !== null })
                return popup
            }, popup.onClose)
        }

        function test_leapOptions() {
            check("PopupLeapOptions", 2,
                  function() { return createTemporaryObject(leapOptions, root) }, function() {})
        }
    }
}
