import Orbilens 1.0
import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Output")

    Menu {
        title: qsTr("Projection")

        MenuItem {
            text: qsTr("Next projection")
            shortcut: "P"
            enabled: !commands.flatSource
            onTriggered: kShaderCodeBuilder.setNextProjection()
        }
        K_MenuChoice {
            text: qsTr("Orvex VR")
            shortcut: commands.macKeys ? "Meta+1" : "Ctrl+1"
            enabled: !commands.flatSource
            chosen: kShaderCodeBuilder.projection === KShaderCodeBuilder.ORVEX
            onChoose: kSettings.set("instance/output/projection", KShaderCodeBuilder.ORVEX)
        }
        K_MenuChoice {
            text: qsTr("Rectilinear")
            shortcut: commands.macKeys ? "Meta+2" : "Ctrl+2"
            enabled: !commands.flatSource
            chosen: kShaderCodeBuilder.projection === KShaderCodeBuilder.RECTILINEAR
            onChoose: kSettings.set("instance/output/projection", KShaderCodeBuilder.RECTILINEAR)
        }
        K_MenuChoice {
            text: qsTr("Little Planet")
            shortcut: commands.macKeys ? "Meta+3" : "Ctrl+3"
            enabled: !commands.flatSource
            chosen: kShaderCodeBuilder.projection === KShaderCodeBuilder.LITTLE_PLANET
            onChoose: kSettings.set("instance/output/projection", KShaderCodeBuilder.LITTLE_PLANET)
        }
        K_MenuChoice {
            text: qsTr("Fisheye")
            shortcut: commands.macKeys ? "Meta+4" : "Ctrl+4"
            enabled: !commands.flatSource
            chosen: kShaderCodeBuilder.projection === KShaderCodeBuilder.FISHEYE
            onChoose: kSettings.set("instance/output/projection", KShaderCodeBuilder.FISHEYE)
        }
    }
    Menu {
        title: qsTr("Display")

        K_MenuChoice {
            text: qsTr("Standard")
            chosen: kGlobalObject.outputDisplay === 0
            onChoose: kSettings.set("instance/output/display", "standard")
        }
        K_MenuChoice {
            text: qsTr("3D TV")
            chosen: kGlobalObject.outputDisplay === 1
            onChoose: kSettings.set("instance/output/display", "3d")
        }
        K_MenuChoice {
            text: qsTr("Split screen")
            chosen: kGlobalObject.outputDisplay === 2
            onChoose: kSettings.set("instance/output/display", "split")
        }
    }
}
