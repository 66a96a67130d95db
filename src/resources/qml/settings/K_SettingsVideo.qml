import QtQuick 2.15
import "../widgets"

K_SettingsPage {
    id: root

    readonly property bool vlc: kVideoPlugin.currentPlugin === "vlc"
    readonly property bool custom: kGlobalObject.isVlcCustom()

    signal instanceArgumentsChanged(string text)
    signal restartPlayback()

    K_SettingRow {
        objectName: "backend"
        visible: !root.custom
        label: qsTr("Backend")
        hint: qsTr("Video backend used to decode video")

        Column {
            width: parent.width
            spacing: 10

            Repeater {
                model: kVideoPlugin.pluginsList()

                Column {
                    // One entry: identifier, label and description.
                    width: parent.width
                    spacing: 2

                    K_CheckBox {
                        objectName: "backend_" + modelData[0]
                        height: 26
                        text: modelData[1]
                        value: kVideoPlugin.currentPlugin === modelData[0]
                        onEdited: kVideoPlugin.currentPlugin = modelData[0]
                    }
                    K_PlainText {
                        x: 28
                        width: parent.width - x
                        text: modelData[2]
                        font.pixelSize: 13
                        color: Qt.rgba(1, 1, 1, 0.6)
                    }
                }
            }
        }
    }

    K_SettingRow {
        objectName: "hardwareDecoding"
        visible: root.vlc && !root.custom && kGlobalObject.platformOS() !== "Q_OS_WIN32"
        label: qsTr("Hardware decoding")
        hint: qsTr("Activate hardware decoding, this is the most efficient but it is not guarantee "
                   + "to work everywhere")

        K_Choice {
            objectName: "choice"
            width: parent.width
            name: qsTr("Hardware decoding")
            choices: [{ text: qsTr("On"), value: true }, { text: qsTr("Off"), value: false }]
            value: kVideoPlugin.vlcHwDecoding
            onChosen: kVideoPlugin.vlcHwDecoding = value
        }
    }

    K_SettingRow {
        objectName: "shaderColorConversion"
        visible: root.vlc
        label: qsTr("Shaders color conversion")
        hint: qsTr("Use OpenGL shaders to make color conversion, this is the most efficient but "
                   + "colors can be slightly different")

        K_Choice {
            objectName: "choice"
            width: parent.width
            name: qsTr("Shaders color conversion")
            choices: [{ text: qsTr("On"), value: true }, { text: qsTr("Off"), value: false }]
            value: kVideoPlugin.vlcShaderColorConversion
            onChosen: kVideoPlugin.vlcShaderColorConversion = value
        }
    }

    K_SettingVlcText {
        objectName: "instanceArguments"
        visible: root.custom
        label: qsTr("VLC instance arguments")
        hint: qsTr("Set custom arguments for VLC instance. Arguments are set at software startup, "
                   + "with the function 'libvlc_new()'.")
        kind: "instance"
        onEdited: root.instanceArgumentsChanged(text)
    }

    K_SettingVlcText {
        objectName: "mediaOptions"
        visible: root.custom
        label: qsTr("VLC media options")
        hint: qsTr("Set custom options for VLC media. Options are set when opening a media, with "
                   + "the function 'libvlc_media_add_option()'.")
        kind: "media"
        onEdited: root.restartPlayback()
    }
}
