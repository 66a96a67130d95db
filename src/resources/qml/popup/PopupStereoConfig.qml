import QtQuick 2.15
import "../settings"
import "../widgets"

// The stereoscopic layout of this run; the preferences keep theirs.
K_PopupPanel {
    id: root

    title: qsTr("Stereoscopy")
    panelWidth: 420
    closesOnReturn: true
    onFocusGiven: stereo.focusCurrent()

    K_StereoChoice {
        id: stereo
        objectName: "stereo"
        anchors.horizontalCenter: parent.horizontalCenter
        value: layout.value === undefined ? -1 : layout.value
        onChosen: layout.set(value)
    }

    readonly property K_SettingValue layout: K_SettingValue {
        id: layout
        store: kSettings
        key: "instance/input/stereoscopy"
    }
}
