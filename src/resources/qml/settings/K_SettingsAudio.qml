import QtQuick 2.15
import "../widgets"

K_SettingsPage {
    id: root

    readonly property bool vlc: kVideoPlugin.currentPlugin === "vlc"
    readonly property string delayHint: qsTr("Set audio delay. Only available for VLC backend "
                                             + "(see Video decoding settings).")

    K_SettingRow {
        objectName: "audioDelay"
        visible: root.vlc
        label: qsTr("Audio delay (milliseconds)")
        hint: root.delayHint

        K_SpinBox {
            objectName: "spinBox"
            name: qsTr("Audio delay (milliseconds)")
            minimumValue: -3000
            maximumValue: 3000
            value: kVideoPlugin.vlcAudioDelay
            onEdited: kVideoPlugin.vlcAudioDelay = value
        }
    }

    K_PlainText {
        objectName: "audioNote"
        x: 10
        width: root.width - 20
        visible: !root.vlc
        text: root.delayHint
    }
}
