import QtQuick 2.15
import com.vedra.kontrols 1.0

// The list of shortcuts, in a vocabulary of its own; the menus name the keys that are in force.
Rectangle {
    id: root

    property var devices

    readonly property string controlKey: kGlobalObject.platformOS() === "Q_OS_MAC" ? "Cmd" : "Ctrl"
    readonly property string text: {
        var lines = ["F : fullscreen on/off "]
        if (devices.sensorAvailable)
            lines.push("G : gyro on/off ")
        lines.push("H : show/hide shortcuts ", "D : show/hide debug info ")
        if (devices.headsetAvailable)
            lines.push("O : hmd on/off ")
        if (devices.leapAvailable)
            lines.push("L : leap motion on/off ")
        lines.push("P : change projection ", "Z : reset camera orientation to zero ",
                   "Escape : exit fullscreen ", "Space : play/pause ",
                   "Left/Right : move camera horizontally ", "Up/Down : move camera vertically ",
                   controlKey + " + Left/Right : slow seek rewind/forward ",
                   controlKey + " + Down/Up : fast seek rewind/forward ",
                   "Alt + Left/Right : previous/next media in playlist ",
                   "Alt + Down/Up : volume down/up ",
                   controlKey + " + N : open file/stream ", controlKey + " + Q : quit ",
                   controlKey + " + P : print screen (file saved on Desktop) ",
                   "+/- : change zoom factor ", "Wheel : change zoom factor ",
                   "Click & Drag : move camera ")
        return lines.join("\n")
    }

    width: label.width + 20
    height: label.height + 20
    color: Qt.rgba(0, 0, 0, 0.7)
    visible: false

    Loader {
        id: label
        anchors.centerIn: parent
        active: root.visible
        sourceComponent: Text {
            text: root.text
            textFormat: Text.PlainText
            color: "white"
            font: Qt.font({ family: root.Theme.fonts.mainFont.family, pixelSize: 14 })
        }
    }
}
