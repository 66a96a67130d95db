import QtQuick 2.15
import QtTest 1.2
import com.vedra.kontrols 1.0
import "qrc:/qml"
import "qrc:/qml/popup"

// Every page and popup in small and large windows: nothing is cut off. The pictures stay in the
// build folder, to be looked at.
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
        function check(item, name) {
            wait(250) // animations
            grabImage(root).save(screenshotFolder + "/" + name + "_" + root.width + ".png")
            checkInside(item, name)
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
            var list = findChild(settings, "categoriesList")
            for (var s = 0; s < root.sizes.length; ++s) {
                root.width = root.sizes[s][0]
                root.height = root.sizes[s][1]
                settings.state = "Off"
                settings.state = "On"
                for (var i = 0; i < settings.categories.length; ++i) {
                    if (settings.categories[i].id === data.tag)
                        list.currentIndex = i
                }
                list.forceActiveFocus()
                check(settings, data.tag + (data.role || "") + (data.custom ? "Custom" : ""))
            }
            settings.state = "Off"
            kGlobalObject.custom = false
        }

        function test_popups_data() {
            return [{ tag: "PopupOpenFile" }, { tag: "PopupAbout" }, { tag: "PopupAboutThirdParty" },
                    { tag: "PopupStereoConfig" }, { tag: "PopupAudioSync" }, { tag: "PopupSoftwareLog" },
                    { tag: "PopupSoftwareCommunication" }, { tag: "PopupUpdateAvailable" }]
        }
        function test_popups(data) {
            kSettings.set("application/communication/state", "master")
            for (var s = 0; s < root.sizes.length; ++s) {
                root.width = root.sizes[s][0]
                root.height = root.sizes[s][1]
                popup.load("qrc:/qml/popup/" + data.tag + ".qml")
                tryVerify(function() { return findChild(popup, "popupLoader").item !== null })
                check(popup, data.tag)
                popup.onClose()
            }
        }

        function test_leapOptions() {
            for (var s = 0; s < root.sizes.length; ++s) {
                root.width = root.sizes[s][0]
                root.height = root.sizes[s][1]
                check(createTemporaryObject(leapOptions, root), "PopupLeapOptions")
            }
        }
    }
}
