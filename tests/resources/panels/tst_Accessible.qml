import QtQuick 2.15
import QtMultimedia 5.8
import QtTest 1.2
import com.vedra.kontrols 1.0
import "qrc:/qml"

// Whatever the Tab key reaches has a name for those who hear the interface.
Item {
    id: root
    width: 1000
    height: 600

    K_SettingsWindow {
        id: settings
        anchors.fill: parent
        state: "On"
    }
    K_Popup {
        id: popup
        anchors.fill: parent
        onChangeRootState: state = newState === "Popup" ? "On" : "Off"
    }
    K_Bar {
        id: bar
        mediaPlayer: player
        mediaLoader: player
        devices: device
    }
    QtObject {
        id: player
        property int playbackState: MediaPlayer.PlayingState
        property int position: 1000
        property int duration: 60000
        property real volume: 0.5
        function seek(ms) {}
    }
    QtObject {
        id: device
        property bool sensorAvailable: true
        property bool sensorActivated: false
        property bool realSenseAvailable: true
        property bool realSenseActivated: false
        property bool leapAvailable: true
        property bool leapActivated: false
        property bool headsetAvailable: true
        property bool headsetActivated: false
        property var headset: null
    }

    TestCase {
        name: "Accessible"
        when: windowShown

        function initTestCase() {
            ThemeManager.loadThemes(":/QmlLib/themes/orvex", "Orvex Dark")
            ThemeManager.loadThemes(":/", "Orvex LND")
        }

        // Those that the Tab key reaches below an item: how many, and which have no name.
        function reached(item) {
            var found = { count: 0, unnamed: [] }
            if (!item.visible || !item.enabled)
                return found
            if (item.activeFocusOnTab) {
                ++found.count
                if (!item.Accessible.name)
                    found.unnamed.push(String(item) + " " + item.objectName)
            }
            for (var i = 0; i < item.children.length; ++i) {
                var below = reached(item.children[i])
                found.count += below.count
                found.unnamed = found.unnamed.concat(below.unnamed)
            }
            return found
        }

        function check(item, atLeast) {
            var found = reached(item)
            compare(found.unnamed, [])
            verify(found.count >= atLeast, found.count)
        }

        function test_bar() { check(bar, 9) }

        function test_settings() {
            var list = findChild(settings, "categoriesList")
            for (var i = 0; i < settings.categories.length; ++i) {
                list.currentIndex = i
                waitForRendering(settings)
                check(settings, 3)
            }
        }

        function test_popups_data() {
            return [{ tag: "PopupOpenFile", atLeast: 2 }, { tag: "PopupAbout", atLeast: 1 },
                    { tag: "PopupAboutThirdParty", atLeast: 1 }, { tag: "PopupAudioSync", atLeast: 1 },
                    { tag: "PopupStereoConfig", atLeast: 6 }]
        }
        function test_popups(row) {
            popup.load("qrc:/qml/popup/" + row.tag + ".qml")
            tryVerify(function() { return findChild(popup, "popupLoader").item !== null })
            waitForRendering(popup)
            check(popup, row.atLeast)
            popup.onClose()
        }

        function test_theTimelineFollowsTheArrows() {
            settings.state = "Off" // whose Escape it would be otherwise
            var timeline = findChild(bar, "timeline")
            var moves = createTemporaryObject(spy, root, { target: timeline })
            timeline.forceActiveFocus()
            compare(bar.state, "On")
            keyClick(Qt.Key_Right)
            compare(moves.count, 1)
            fuzzyCompare(moves.signalArguments[0][0], 1 / 60 + 0.05, 1e-6)
            keyClick(Qt.Key_Left)
            fuzzyCompare(moves.signalArguments[1][0], 0, 1e-6)
            keyClick(Qt.Key_Escape)
            verify(!bar.activeFocus)
        }
    }
    Component { id: spy; SignalSpy { signalName: "moved" } }
}
