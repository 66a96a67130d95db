import QtQuick 2.15
import "../widgets"

K_SettingRow {
    id: root

    property var store: kSettings
    property string key
    property var choices: []
    // What a key holds, for pages that show only when it is so.
    readonly property alias value: setting.value

    readonly property K_SettingValue setting: K_SettingValue {
        id: setting
        store: root.store
        key: root.key
    }

    K_Choice {
        objectName: "choice"
        width: parent.width
        name: root.label
        choices: root.choices
        value: setting.value
        onChosen: setting.set(value)
    }
}
