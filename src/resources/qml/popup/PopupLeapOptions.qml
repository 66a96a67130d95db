import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../settings"
import "../widgets"

// The options of the hand tracker. They hold at once; "Cancel" brings back those of the opening.
K_PopupPanel {
    id: root

    property var leap: kLeap
    property var builder: kShaderCodeBuilder

    readonly property bool headsetMode: builder.hmdMode
    readonly property bool tutorialRuns: leap !== null && leap.tutoState !== -1
    readonly property var optionNames: ["sensitivityYawPitch", "sensitivitySeekJump", "pitchInv",
        "yawInv", "cameraMode", "pointerInterpolation", "rollMode", "fovMode", "playPauseGesture",
        "seekGesture", "drawHand"]
    readonly property var yesNo: [{ text: qsTr("Yes"), value: true },
                                  { text: qsTr("No"), value: false }]
    property var kept: ({})

    title: qsTr("Leap Motion")
    panelWidth: 700
    dismiss: cancel

    function option(name) { return leap ? leap[name] : undefined }

    function cancel() {
        for (var name in kept)
            leap[name] = kept[name]
        close()
    }

    Component.onCompleted: {
        var options = {}
        for (var i = 0; leap && i < optionNames.length; ++i)
            options[optionNames[i]] = leap[optionNames[i]]
        kept = options
    }

    component YesNo: K_SettingRow {
        id: yesNoRow

        property string option
        property var choices: root.yesNo

        objectName: option

        K_Choice {
            objectName: "choice"
            width: parent.width
            name: yesNoRow.label
            choices: yesNoRow.choices
            value: root.option(yesNoRow.option)
            onChosen: root.leap[yesNoRow.option] = value
        }
    }

    component SliderRow: K_SettingRow {
        id: sliderRow

        property string option
        property real from
        property real to
        property real step: 0
        property real defaultValue

        objectName: option

        Row {
            width: parent.width
            spacing: 12

            K_ValueSlider {
                objectName: "slider"
                width: parent.width - defaultButton.width - parent.spacing
                height: 34
                name: sliderRow.label
                from: sliderRow.from
                to: sliderRow.to
                stepSize: sliderRow.step
                value: root.option(sliderRow.option) || sliderRow.from
                onReleased: root.leap[sliderRow.option] = value
            }
            K_PanelButton {
                id: defaultButton
                objectName: "default"
                text: qsTr("Default")
                onClicked: root.leap[sliderRow.option] = sliderRow.defaultValue
            }
        }
    }

    K_SectionTitle { text: qsTr("Documentation") }
    K_RichText {
        objectName: "documentation"
        x: 10
        width: parent.width - 20
        markup: root.option("logLink") || qsTr("Hold a hand above the tracker: moving it turns the view.")
    }
    K_PanelButton {
        objectName: "tutorialButton"
        x: 10
        text: qsTr("Start tutorial")
        enabled: root.leap !== null && !root.tutorialRuns
        onClicked: {
            root.leap.tutoState = -2
            root.close()
        }
    }

    K_SectionTitle {
        objectName: "cameraTitle"
        text: root.headsetMode ? qsTr("Virtual Reality mode") : qsTr("Camera Control")
    }
    YesNo {
        option: "cameraMode"
        label: root.headsetMode ? qsTr("Tracker") : qsTr("Camera Control")
        choices: root.headsetMode
            ? [{ text: qsTr("Leap Motion head-mounted"), value: 2 },
               { text: qsTr("Leap Motion on desk"), value: 1 }]
            : [{ text: qsTr("Hands"), value: 3 }, { text: qsTr("Finger"), value: 1 }]
    }
    SliderRow {
        option: "sensitivityYawPitch"
        label: qsTr("Camera Sensitivity")
        from: 0.01
        to: 0.8
        defaultValue: 0.2
    }
    SliderRow {
        option: "sensitivitySeekJump"
        label: qsTr("Seek Jump Step")
        from: 1000
        to: 10000
        step: 1
        defaultValue: 5000
    }
    YesNo { option: "pitchInv"; label: qsTr("Invert Vertical Camera") }
    YesNo { option: "yawInv"; label: qsTr("Invert Horizontal Camera") }
    YesNo { option: "rollMode"; label: qsTr("Roll Mode") }
    YesNo { option: "fovMode"; label: qsTr("Zoom Mode") }
    YesNo { option: "seekGesture"; label: qsTr("Seek Gesture") }
    YesNo {
        option: "drawHand"
        label: qsTr("Display Hands")
        enabled: !root.headsetMode && root.option("cameraMode") !== 1 && !root.tutorialRuns
    }

    buttons: [
        K_PanelButton {
            objectName: "okButton"
            focus: true
            text: qsTr("OK")
            primary: true
            onClicked: root.close()
        },
        K_PanelButton {
            objectName: "cancelButton"
            text: qsTr("Cancel")
            onClicked: root.cancel()
        }
    ]
}
