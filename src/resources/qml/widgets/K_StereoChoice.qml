import QtQuick 2.15
import Orbilens 1.0
import com.vedra.kontrols 1.0
import com.vedra.components 1.0

// The six layouts of a stereoscopic picture as images to choose from.
Row {
    id: root

    property int value: -1

    readonly property var layouts: [
        { text: qsTr("Auto"), image: "auto", value: KShaderCodeBuilder.STEREO_AUTO },
        { text: qsTr("None"), image: "none", value: KShaderCodeBuilder.STEREO_2D },
        { text: qsTr("Side by side"), image: "SideBySide",
          value: KShaderCodeBuilder.STEREO_3D_SIDEBYSIDE },
        { text: qsTr("Over under"), image: "OverUnder",
          value: KShaderCodeBuilder.STEREO_3D_OVERUNDER },
        { text: qsTr("Side by side, inverted"), image: "SideBySide_inverted",
          value: KShaderCodeBuilder.STEREO_3D_SIDEBYSIDE_INVERTED },
        { text: qsTr("Over under, inverted"), image: "OverUnder_inverted",
          value: KShaderCodeBuilder.STEREO_3D_OVERUNDER_INVERTED }
    ]

    signal chosen(int value)

    function focusCurrent() {
        for (var i = 0; i < layouts.length; ++i) {
            if (layouts[i].value === value)
                return buttons.itemAt(i).forceActiveFocus()
        }
        buttons.itemAt(0).forceActiveFocus()
    }

    spacing: 4

    Repeater {
        id: buttons
        model: root.layouts

        RadioButtonImage {
            objectName: "stereo_" + modelData.image
            implicitWidth: 56
            implicitHeight: 56
            tooltip: modelData.text
            iconSource: "qrc:/images/newui/Stereo_" + modelData.image + ".svg"
            activeFocusOnPress: true
            checked: root.value === modelData.value
            onClicked: {
                // A click flips the button's own mark; the value alone decides which is on.
                checked = Qt.binding(function() { return root.value === modelData.value })
                root.chosen(modelData.value)
            }
            Keys.onReturnPressed: clicked()
            Keys.onEnterPressed: clicked()
        }
    }
}
