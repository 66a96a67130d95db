import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

K_PopupPanel {
    title: qsTr("Synchronization")
    panelWidth: 420
    closesOnReturn: true
    onFocusGiven: delay.forceActiveFocus()

    Label {
        width: parent.width
        text: qsTr("Audio delay (milliseconds)")
        wrapMode: Text.Wrap
    }

    K_SpinBox {
        id: delay
        objectName: "delay"
        width: 220
        name: qsTr("Audio delay (milliseconds)")
        stepSize: 1
        minimumValue: -100000
        maximumValue: 100000
        value: kVideoPlugin.vlcAudioDelay
        onEdited: kVideoPlugin.vlcAudioDelay = value
    }
}
