import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Controllers")

    K_MenuChoice {
        text: qsTr("HMD")
        shortcut: "O"
        enabled: commands.devices.headsetAvailable
        chosen: commands.devices.headsetActivated
        onChoose: commands.bar.hmdOnOff()
    }
    K_MenuChoice {
        text: qsTr("Leap Motion")
        shortcut: "M"
        enabled: commands.devices.leapAvailable
        chosen: commands.devices.leapActivated
        onChoose: commands.bar.leapOnOff()
    }
    K_MenuChoice {
        text: qsTr("Gyroscope")
        shortcut: "G"
        enabled: commands.devices.sensorAvailable
        chosen: commands.devices.sensorActivated
        onChoose: commands.bar.gyroOnOff()
    }
    K_MenuChoice {
        text: qsTr("Real Sense")
        shortcut: "R"
        enabled: commands.devices.realSenseAvailable
        chosen: commands.devices.realSenseActivated
        onChoose: commands.bar.realSenseOnOff()
    }
}
