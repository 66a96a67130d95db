import Orbilens 1.0
import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Camera")

    MenuItem {
        text: qsTr("Reset camera orientation")
        shortcut: "Z"
        onTriggered: kGlobalObject.resetYawPitchRollFov()
    }
    K_MenuChoice {
        text: qsTr("Inverted axes")
        chosen: kGlobalObject.touchMode
        onChoose: kSettings.toggle("instance/general/touchMode")
    }
    MenuItem {
        text: qsTr("Move camera left")
        shortcut: "left"
        enabled: commands.enableCameraArrowMove
        onTriggered: commands.moveSideways(-1)
    }
    MenuItem {
        text: qsTr("Move camera right")
        shortcut: "right"
        enabled: commands.enableCameraArrowMove
        onTriggered: commands.moveSideways(1)
    }
    MenuItem {
        text: qsTr("Move camera up")
        shortcut: "up"
        enabled: commands.enableCameraArrowMove && !commands.devices.headsetActivated
        onTriggered: commands.moveUpDown(-1)
    }
    MenuItem {
        text: qsTr("Move camera down")
        shortcut: "down"
        enabled: commands.enableCameraArrowMove && !commands.devices.headsetActivated
        onTriggered: commands.moveUpDown(1)
    }
    MenuItem {
        text: qsTr("Zoom in")
        shortcut: "+"
        onTriggered: commands.videoArea.zoom(1, 3)
    }
    MenuItem {
        text: qsTr("Zoom out")
        shortcut: "-"
        onTriggered: commands.videoArea.zoom(-1, 3)
    }
    MenuItem {
        text: qsTr("Switch stereo eye")
        shortcut: "E"
        enabled: kShaderCodeBuilder.stereoMode !== KShaderCodeBuilder.STEREO_2D
        onTriggered: kShaderCodeBuilder.switchEyeStereoscopy()
    }
}
