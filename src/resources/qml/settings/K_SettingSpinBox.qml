import QtQuick 2.15
import "../widgets"

K_SettingRow {
    id: root

    property var store: kSettings
    property string key
    property int from
    property int to

    readonly property K_SettingValue setting: K_SettingValue {
        id: setting
        store: root.store
        key: root.key
    }

    K_SpinBox {
        objectName: "spinBox"
        name: root.label
        minimumValue: root.from
        maximumValue: root.to
        value: setting.value === undefined ? 0 : setting.value
        onEdited: setting.set(value)
    }
}
