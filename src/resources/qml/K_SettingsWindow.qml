import QtQuick 2.15
import QtQuick.Window 2.2
import "settings/settingsDefaults.js" as Defaults

// The preferences: categories left, the chosen one's settings right. A change holds at once; what
// needs a restart turns the way back into the restart.
FocusScope {
    id: root

    readonly property alias settingsNeedRestartList: restartList
    property string initialCurrentPlugin
    property string initialVlcCustomInstanceArguments

    property int categoryIndex: 0
    readonly property string category: categories[categoryIndex].id
    readonly property string hint: panel.item && panel.item.page.item ? panel.item.page.item.hint : ""
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
                categoryIndex = i
        }
        changeRootState("Settings")
    }

    function getCategoryComponent(categoryId) {
        return panel.item ? panel.item.pages[categoryId] || null : null
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
    onCategoryIndexChanged: if (panel.item) panel.item.categoriesList.currentIndex = categoryIndex
    onVisibleChanged: {
        if (visible) {
            if (!panel.item)
                panel.setSource("settings/K_SettingsPanel.qml", { "owner": root })
            panel.item.categoriesList.forceActiveFocus()
        }
    }

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
            folderDialog().folder = folderDialog().desktop
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
        panel.item.restoreButton.forceActiveFocus()
        restoreDefaultValues(category)
        var index = categoryIndex
        categoryIndex = (index + 1) % categories.length
        categoryIndex = index
    }

    // Brings what has the focus into sight.
    function reveal(item) {
        if (!panel.item)
            return
        var page = panel.item.page
        var flickable = panel.item.scroll.flickableItem
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
        var folders = { "application/general/printSavePath": "desktop",
                        "application/general/fileDialogLastFolder": "movies" }
        for (var key in folders) {
            if (kSettings.getTyped(key) === "toBeDefine")
                kSettings.set(key, folderDialog()[folders[key]])
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

    // Made when it is first asked for, which most runs never do.
    function folderDialog() {
        folderDialogLoader.active = true
        return folderDialogLoader.item
    }

    Loader {
        id: folderDialogLoader
        active: false
        source: "settings/K_FolderDialog.qml"
    }

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

    // Made with the first visit.
    Loader {
        id: panel
        anchors { top: parent.top; bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        width: Math.min(930, parent.width)
        focus: true
    }
}
