import QtQuick 2.15
import QtQuick.Dialogs 1.2

// The folder for screenshots; knows the places that the settings begin with.
FileDialog {
    readonly property url desktop: shortcuts.desktop || shortcuts.home
    readonly property url movies: shortcuts.movies || shortcuts.home

    title: qsTr("Choose screenshot save location")
    selectFolder: true
    folder: desktop
    onAccepted: kSettings.set("application/general/printSavePath", fileUrl)
}
