import Orbilens 1.0
import com.vedra.kontrols 1.0

Menu {
    property var commands

    title: qsTr("Input")

    Menu {
        title: qsTr("Projection")

        K_MenuChoice {
            text: qsTr("Auto")
            shortcut: commands.macKeys ? "Meta+Alt+1" : "Alt+1"
            chosen: kGlobalObject.projectionSourceSetting === KShaderCodeBuilder.AUTO
            onChoose: kSettings.set("instance/input/projection", KShaderCodeBuilder.AUTO)
        }
        K_MenuChoice {
            text: qsTr("Equirectangular")
            shortcut: commands.macKeys ? "Meta+Alt+2" : "Alt+2"
            chosen: kGlobalObject.projectionSourceSetting === KShaderCodeBuilder.EQUIRECTANGULAR
            onChoose: kSettings.set("instance/input/projection", KShaderCodeBuilder.EQUIRECTANGULAR)
        }
        K_MenuChoice {
            text: qsTr("Cubemap")
            shortcut: commands.macKeys ? "Meta+Alt+3" : "Alt+3"
            chosen: kGlobalObject.projectionSourceSetting === KShaderCodeBuilder.CUBEMAP
            onChoose: kSettings.set("instance/input/projection", KShaderCodeBuilder.CUBEMAP)
        }
        K_MenuChoice {
            text: qsTr("Standard")
            shortcut: commands.macKeys ? "Meta+Alt+4" : "Alt+4"
            chosen: kGlobalObject.projectionSourceSetting === KShaderCodeBuilder.STANDARD
            onChoose: kSettings.set("instance/input/projection", KShaderCodeBuilder.STANDARD)
        }
    }
    MenuItem {
        text: qsTr("Stereoscopy...")
        shortcut: "S"
        onTriggered: commands.openPopup("PopupStereoConfig")
    }
}
