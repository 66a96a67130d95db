import QtQuick 2.15
import QtQuick.Layouts 1.3
import com.vedra.kontrols 1.0
import com.vedra.components 1.0
import "lib.js" as Lib

// The camera in numbers that one can type over, and the frame rates.
FocusScope {
    id: root

    property int fps: 0
    property var mediaPlayer
    property var headset: kHmdDevice
    property var realSense: kRealSense

    readonly property bool radians: unitTick >= 0 && kSettings.getTyped(unitKey)
    readonly property string unitKey: "application/general/yprRadUnit"
    readonly property string unit: radians ? "rd" : "°"
    readonly property real toShown: radians ? 1 : 180 / Math.PI
    readonly property real fovToShown: radians ? Math.PI / 180 : 1
    readonly property int shownDecimals: radians ? 3 : 2
    readonly property real shownStep: radians ? 0.1 : 1
    readonly property int precision: radians ? 10000 : 100
    readonly property bool spinBoxHasFocus: content.item !== null && content.item.textFocus
    // Bumped when the unit changes, since a setting is read by a call and not by a binding.
    property int unitTick: 0

    width: 300
    height: content.height + 20
    visible: false
    // Most runs never show it.
    onVisibleChanged: if (visible) content.active = true
    Component.onCompleted: if (visible) content.active = true

    // What is no number becomes 0.
    function number(value) { return isNaN(value) ? 0 : value }

    Connections {
        target: kSettings
        function onSettingsChanged(key) {
            if (key === root.unitKey)
                ++root.unitTick
        }
    }

    component Field: RowLayout {
        id: field

        property alias spinBox: box
        property string label
        property real shownValue
        property real minimum
        property real maximum
        property bool wraps: false
        property Item nextField
        property Item previousField
        readonly property bool textFocus: box.textFocus

        signal entered(real value)

        function takeFocus() { box.forceActiveFocus() }

        Layout.fillWidth: true

        Label {
            text: field.label
            Layout.preferredWidth: 60
        }

        HorizontalSpinBox {
            id: box
            objectName: "spinBox" + field.label
            Accessible.name: field.label
            Layout.fillWidth: true
            minimumValue: field.minimum
            maximumValue: field.maximum
            loopMinMax: field.wraps
            decimals: root.shownDecimals
            stepSize: root.shownStep
            suffix: root.unit
            onValueEdited: {
                field.entered(root.number(value))
                // The camera may have taken another, or the same by another name.
                numericValue = field.shownValue
            }
            onKeyPressed: {
                if (event.key === Qt.Key_H) {
                    root.visible = false
                    event.accepted = true
                } else if (event.key === Qt.Key_Tab) {
                    field.nextField.takeFocus()
                    event.accepted = true
                } else if (event.key === Qt.Key_Backtab) {
                    field.previousField.takeFocus()
                    event.accepted = true
                }
            }
        }

        Binding {
            target: box
            property: "numericValue"
            value: field.shownValue
        }
    }

    Rectangle {
        anchors.fill: parent
        color: Qt.rgba(0, 0, 0, 0.7)
    }

    Loader {
        id: content
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 10 }
        active: false
        sourceComponent: ColumnLayout {
            readonly property bool textFocus: yaw.textFocus || pitch.textFocus || roll.textFocus
                || fov.textFocus

            spacing: 6

            RowLayout {
                Layout.fillWidth: true
                spacing: 6

                Button {
                    objectName: "resetButton"
                    text: qsTr("Reset")
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    onClicked: kGlobalObject.resetYawPitchRollFov()
                }
                Button {
                    objectName: "radButton"
                    text: qsTr("Rad")
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    enabled: !root.radians
                    onClicked: kSettings.set(root.unitKey, true)
                }
                Button {
                    objectName: "degButton"
                    text: qsTr("Deg")
                    Layout.fillWidth: true
                    Layout.preferredWidth: 1
                    enabled: root.radians
                    onClicked: kSettings.set(root.unitKey, false)
                }
            }

            // The limits of yaw and pitch are far wider than a turn, so that one can type any angle.
            Field {
                id: yaw
                label: qsTr("Yaw")
                shownValue: Lib.trimNumber(kGlobalObject.yaw * root.toShown, root.precision)
                minimum: -180 * root.toShown
                maximum: 180 * root.toShown
                wraps: true
                nextField: pitch
                previousField: fov
                onEntered: kGlobalObject.yaw = value / root.toShown
            }
            Field {
                id: pitch
                label: qsTr("Pitch")
                shownValue: Lib.trimNumber(kGlobalObject.pitch * root.toShown, root.precision)
                minimum: -180 * root.toShown
                maximum: 180 * root.toShown
                nextField: roll
                previousField: yaw
                onEntered: kGlobalObject.pitch = value / root.toShown
            }
            Field {
                id: roll
                label: qsTr("Roll")
                shownValue: Lib.trimNumber(kGlobalObject.roll * root.toShown, root.precision)
                minimum: -Math.PI * root.toShown
                maximum: Math.PI * root.toShown
                wraps: true
                nextField: fov
                previousField: pitch
                onEntered: kGlobalObject.roll = value / root.toShown
            }
            Field {
                id: fov
                label: qsTr("Fov")
                shownValue: Lib.trimNumber(kGlobalObject.fov * root.fovToShown, root.precision)
                minimum: kGlobalObject.fovLimitMin * root.fovToShown
                maximum: kGlobalObject.fovLimitMax * root.fovToShown
                nextField: yaw
                previousField: roll
                onEntered: kGlobalObject.setFov(value / root.fovToShown, false)
            }

            Label {
                text: qsTr("window fps : ") + root.fps
            }
            Label {
                text: root.headset && root.headset.available
                    ? qsTr("hmd fps : ") + root.headset.fps : ""
                visible: text !== ""
            }
            Label {
                text: root.realSense && root.realSense.available
                    ? qsTr("real sense fps : ") + root.realSense.fps : ""
                visible: text !== ""
            }
            Label {
                text: qsTr("video decoding fps : ") + root.mediaPlayer.fps
            }
        }
    }
}
