K_SettingChoice {
    property var on: true
    property var off: false

    choices: [{ text: qsTr("On"), value: on }, { text: qsTr("Off"), value: off }]
}
