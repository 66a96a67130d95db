import QtQuick 2.15
import QtQuick.Dialogs 1.2
import QtQuick.Window 2.2
import com.vedra.kontrols 1.0
import "settings"
import "settings/settingsDefaults.js" as Defaults
import "widgets"

// The preferences: categories left, the chosen one's settings right. A change holds at once; what
// needs a restart turns the way back into the restart.
FocusScope {
    id: root

    readonly property alias settingsNeedRestartList: restartList
    property string initialCurrentPlugin
    property string initialVlcCustomInstanceArguments

    readonly property string category: categories[categoriesList.currentIndex].id
    readonly property string hint: page.item ? page.item.hint : ""
    readonly property bool restartNeeded: restartList.count > 0
    readonly property var categories: [
        { name: qsTr("General Settings"), id: "general" },
        { name: qsTr("Video Decoding"), id: "video" },
        { name: qsTr("Audio"), id: "audio" },
        { name: qsTr("Master / Slave"), id: "masterSlave" },
        { name: qsTr("Controllers"), id: "controllers" },
        { name: qsTr("Advanced"), id: "advanced" }
    ]

    signal changeRootState(string newState)
    signal restartPlayback()

    visible: false
    state: "Off"
    states: [
        State { name: "On"; PropertyChanges { target: root; visible: true; focus: true } },
        State { name: "Off"; PropertyChanges { target: root; visible: false; focus: false } }
    ]

    function gotoVideoCategory() {
        for (var i = 0; i < categories.length; ++i) {
            if (categories[i].id === "video")
                categoriesList.currentIndex = i
        }
        changeRootState("Settings")
    }

    function getCategoryComponent(categoryId) {
        return {
            "general": generalPage, "video": videoPage, "audio": audioPage,
            "masterSlave": masterSlavePage, "controllers": controllersPage,
            "advanced": advancedPage
        }[categoryId] || null
    }

    // A program driven by another has no say in these.
    function isLocked(categoryId) {
        return kGlobalObject.adobePlugin
            && ["video", "masterSlave", "advanced", "audio"].indexOf(categoryId) >= 0
    }

    // The store may have given a number as a text, so the comparison converts.
    function onSettingsNeedRestart(key, value, initialValue) {
        var index = -1
        for (var i = 0; i < restartList.count; ++i) {
            if (restartList.get(i).key === key)
                index = i
        }
        if (value != initialValue && index < 0)
            restartList.append({ key: key })
        else if (value == initialValue && index >= 0)
            restartList.remove(index)
    }

    function onCurrentPluginChanged() {
        onSettingsNeedRestart("application/videoPlugin", kVideoPlugin.currentPlugin,
                              initialCurrentPlugin)
    }

    function onInstanceArgumentsChanged(text) {
        onSettingsNeedRestart("vlc/customInstanceArguments", text,
                              initialVlcCustomInstanceArguments)
    }

    // The page that had the focus at the last visit is gone.
    onVisibleChanged: if (visible) categoriesList.forceActiveFocus()

    function goBack() {
        if (restartNeeded)
            kGlobalObject.restart()
        else
            changeRootState("Video")
    }

    function restoreDefaultValues(categoryId) {
        var keys = Defaults.keys[categoryId] || []
        for (var i = 0; i < keys.length; ++i)
            kSettings.resetDefaultValue(keys[i])
        if (categoryId === "general")
            folderDialog.folder = folderDialog.desktop
        else if (categoryId === "video" && kGlobalObject.isVlcCustom())
            restoreVlcTexts()
        else if (categoryId === "video" || categoryId === "audio")
            kVideoPlugin.resetDefaultValues(categoryId)
    }

    function restoreVlcTexts() {
        var kinds = ["instance", "media"]
        for (var i = 0; i < kinds.length; ++i)
            kGlobalObject.setVlcCustomCmd(kinds[i], kGlobalObject.getVlcCmdInfos(false, kinds[i]))
        onInstanceArgumentsChanged(kGlobalObject.getVlcCmdInfos(true, "instance"))
    }

    function restoreCurrentCategory() {
        // An edit under way ends before it is overruled.
        restoreButton.forceActiveFocus()
        restoreDefaultValues(category)
        var index = categoriesList.currentIndex
        categoriesList.currentIndex = (index + 1) % categories.length
        categoriesList.currentIndex = index
    }

    // Brings what has the focus into sight.
    function reveal(item) {
        var flickable = scroll.flickableItem
        for (var parent = item && item.parent; parent && parent !== page; parent = parent.parent) {}
        if (!parent || !flickable)
            return
        var top = item.mapToItem(page, 0, 0).y
        var bottom = top + item.height
        if (top < flickable.contentY)
            flickable.contentY = Math.max(0, top - 40)
        else if (bottom > flickable.contentY + flickable.height)
            flickable.contentY = bottom - flickable.height + 10
    }

    Component.onCompleted: {
        kSettings.settingsNeedRestartChanged.connect(onSettingsNeedRestart)
        kVideoPlugin.currentPluginChanged.connect(onCurrentPluginChanged)
        initialCurrentPlugin = kVideoPlugin.currentPlugin
        initialVlcCustomInstanceArguments = kGlobalObject.getVlcCmdInfos(true, "instance")
        var folders = { "application/general/printSavePath": folderDialog.desktop,
                        "application/general/fileDialogLastFolder": folderDialog.movies }
        for (var key in folders) {
            if (kSettings.getTyped(key) === "toBeDefine")
                kSettings.set(key, folders[key])
        }
    }

    // Also while a text is being edited; whatever else the fields leave of the keys ends here.
    Shortcut {
        sequence: "Escape"
        enabled: root.state === "On"
        onActivated: root.changeRootState("Video")
    }
    Keys.onPressed: event.accepted = true

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() { root.reveal(root.Window.window.activeFocusItem) }
    }

    ListModel { id: restartList }

    FileDialog {
        id: folderDialog

        readonly property url desktop: shortcuts.desktop || shortcuts.home
        readonly property url movies: shortcuts.movies || shortcuts.home

        title: qsTr("Choose screenshot save location")
        selectFolder: true
        folder: desktop
        onAccepted: kSettings.set("application/general/printSavePath", fileUrl)
    }

    Component {
        id: generalPage
        K_SettingsGeneral {
            desktopFolder: folderDialog.desktop
            onChooseFolder: {
                var last = kSettings.getTyped("application/general/printSavePath")
                folderDialog.folder = last === "toBeDefine" ? folderDialog.desktop : last
                folderDialog.open()
            }
        }
    }
    Component {
        id: videoPage
        K_SettingsVideo {
            onInstanceArgumentsChanged: root.onInstanceArgumentsChanged(text)
            onRestartPlayback: root.restartPlayback()
        }
    }
    Component { id: audioPage; K_SettingsAudio {} }
    Component { id: masterSlavePage; K_CommunicationSettings {} }
    Component { id: controllersPage; K_SettingsControllers {} }
    Component { id: advancedPage; K_SettingsAdvanced {} }

    Rectangle {
        anchors.fill: parent
        color: "#222222"

        // Nothing below is meant by a click or the wheel here.
        MouseArea {
            anchors.fill: parent
            hoverEnabled: true
            onWheel: wheel.accepted = true
        }
    }

    Item {
        id: area
        anchors { top: parent.top; bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        width: Math.min(930, parent.width)

        K_BackButton {
            id: backButton
            objectName: "backButton"
            anchors { left: parent.left; top: parent.top; margins: 20 }
            text: root.restartNeeded ? qsTr("Restart to apply") : qsTr("Back to Player")
            highlighted: root.restartNeeded
            onClicked: root.goBack()
        }

        K_CategoryList {
            id: categoriesList
            objectName: "categoriesList"
            anchors {
                left: parent.left
                top: backButton.bottom
                bottom: footer.top
                margins: 20
            }
            width: area.width < 800 ? 160 : 190
            focus: true
            model: root.categories
            isLocked: root.isLocked
        }

        Rectangle {
            id: divider
            anchors {
                left: categoriesList.right
                leftMargin: 10
                top: categoriesList.top
                bottom: categoriesList.bottom
            }
            width: 1
            color: Qt.rgba(1, 1, 1, 0.12)
        }

        ScrollView {
            id: scroll
            objectName: "scroll"
            anchors {
                left: divider.right
                leftMargin: 10
                right: parent.right
                rightMargin: 6
                top: categoriesList.top
                bottom: categoriesList.bottom
            }
            horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff

            Loader {
                id: page
                objectName: "page"
                width: scroll.viewport.width - 4
                active: root.state === "On"
                sourceComponent: root.getCategoryComponent(root.category)
                enabled: !root.isLocked(root.category)
                opacity: enabled ? 1 : 0.2
                onItemChanged: if (scroll.flickableItem) scroll.flickableItem.contentY = 0
            }
        }

        Item {
            id: footer
            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.bottom
                margins: 20
            }
            height: 44

            Rectangle {
                anchors { left: parent.left; right: parent.right; bottom: parent.top; bottomMargin: 8 }
                height: 1
                color: Qt.rgba(1, 1, 1, 0.12)
            }
            K_PlainText {
                objectName: "hintLine"
                anchors {
                    left: parent.left
                    right: restoreButton.left
                    rightMargin: 20
                    verticalCenter: parent.verticalCenter
                }
                text: root.hint
                font.pixelSize: 13
                maximumLineCount: 3
                elide: Text.ElideRight
            }
            K_PanelButton {
                id: restoreButton
                objectName: "restoreButton"
                anchors { right: parent.right; verticalCenter: parent.verticalCenter }
                text: qsTr("Restore Default values")
                enabled: page.enabled
                onClicked: root.restoreCurrentCategory()
            }
        }
    }
}
