import QtQuick 2.15
import QtQuick.Dialogs 1.2

// The one dialog that says something; in the way of everything until it is closed.
MessageDialog {
    objectName: "messageDialog"
    title: kView.title()
    modality: Qt.ApplicationModal

    // An information unless told otherwise.
    function show(message, messageIcon) {
        icon = messageIcon === undefined ? StandardIcon.Information : messageIcon
        text = message
        open()
    }
}
