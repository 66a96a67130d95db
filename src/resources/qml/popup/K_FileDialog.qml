import QtQuick 2.15
import QtQuick.Dialogs 1.2
import "fileFilters.js" as Filters

// The system's dialog for opening media; starts where the last one ended.
FileDialog {
    id: root

    readonly property string lastFolderKey: "application/general/fileDialogLastFolder"

    title: qsTr("Open Media...")
    selectMultiple: true
    nameFilters: Filters.nameFilters(kGlobalObject.getSupportedVideoFormats(),
                                     kGlobalObject.getSupportedImageFormats())

    function show() {
        var last = kSettings.getTyped(lastFolderKey)
        folder = last === "toBeDefine" ? shortcuts.movies : last
        open()
    }

    onAccepted: {
        kGlobalObject.openFiles(fileUrls, false)
        kSettings.set(lastFolderKey, folder)
    }
}
