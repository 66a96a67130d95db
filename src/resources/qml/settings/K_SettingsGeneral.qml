import QtQuick 2.15
import Orbilens 1.0
import "../widgets"

K_SettingsPage {
    id: root

    // Opens the dialog for the folder of the screenshots.
    signal chooseFolder()

    // A folder of the file system as its path; other addresses as they are.
    function pathOf(folder) {
        var text = folder.toString()
        return text.indexOf("file://") === 0 ? decodeURIComponent(text.slice(7)) : text
    }

    property url desktopFolder

    K_SettingChoice {
        id: inputType
        objectName: "inputType"
        label: qsTr("Input type")
        hint: qsTr("Projection used to encode the input media")
        key: "application/input/projection"
        choices: [{ text: qsTr("Auto"), value: KShaderCodeBuilder.AUTO },
                  { text: qsTr("Equirectangular"), value: KShaderCodeBuilder.EQUIRECTANGULAR },
                  { text: qsTr("Cubemap"), value: KShaderCodeBuilder.CUBEMAP },
                  { text: qsTr("Standard"), value: KShaderCodeBuilder.STANDARD }]
    }

    K_SettingRow {
        objectName: "inputStereoscopy"
        label: qsTr("Input Stereoscopy")
        hint: qsTr("Stereoscopy format used to encode the input media")

        K_StereoChoice {
            objectName: "stereo"
            value: stereoscopy.value === undefined ? -1 : stereoscopy.value
            onChosen: stereoscopy.set(value)
        }
    }

    K_SettingChoice {
        objectName: "outputProjection"
        visible: inputType.value !== KShaderCodeBuilder.STANDARD
        label: qsTr("Output projection")
        hint: qsTr("Projection applied to reproject the media")
        key: "application/output/projection"
        choices: [{ text: qsTr("Orvex VR"), value: KShaderCodeBuilder.ORVEX },
                  { text: qsTr("Rectilinear"), value: KShaderCodeBuilder.RECTILINEAR },
                  { text: qsTr("Little Planet"), value: KShaderCodeBuilder.LITTLE_PLANET },
                  { text: qsTr("Fisheye"), value: KShaderCodeBuilder.FISHEYE }]
    }

    K_SettingChoice {
        objectName: "outputDisplay"
        label: qsTr("Output display")
        hint: qsTr("Adjust the rendering to fit a specific display")
        key: "application/output/display"
        choices: [{ text: qsTr("Standard"), value: "standard" },
                  { text: qsTr("3D TV"), value: "3d" },
                  { text: qsTr("Split screen"), value: "split" }]
    }

    K_SettingOnOff {
        objectName: "touchMode"
        label: qsTr("Touch mode")
        hint: qsTr("View navigation same as Mobile version")
        key: "application/general/touchMode"
    }

    K_SettingChoice {
        objectName: "loopMode"
        label: qsTr("Loop mode")
        hint: qsTr("Choose loop mode behavior")
        key: "application/general/loopMode"
        choices: [{ text: qsTr("None"), value: 0 },
                  { text: qsTr("Playlist"), value: 1 },
                  { text: qsTr("File"), value: 2 }]
    }

    K_SettingRow {
        objectName: "imageDisplayDuration"
        label: qsTr("Image display duration (seconds)")
        hint: qsTr("Display duration of one image when playing a playlist of images")

        Flow {
            width: parent.width
            spacing: 20

            K_SpinBox {
                objectName: "spinBox"
                name: qsTr("Image display duration (seconds)")
                enabled: noDuration.value !== true
                minimumValue: 10
                maximumValue: 3600
                value: duration.value === undefined ? 10 : duration.value
                onEdited: duration.set(value)
            }
            K_CheckBox {
                objectName: "checkBox"
                height: 30
                text: qsTr("No duration")
                value: noDuration.value === true
                onEdited: noDuration.set(value)
            }
        }
    }

    K_SettingOnOff {
        objectName: "cameraInertia"
        label: qsTr("Camera inertia")
        hint: qsTr("Add some inertia on camera moves.")
        key: "application/general/cameraInertia"
        on: 400
        off: 0
    }

    K_SettingSpinBox {
        objectName: "cameraMoveSteps"
        label: qsTr("Camera move steps (degrees)")
        hint: qsTr("Steps, in degrees, when moving camera with keyboard arrows.")
        key: "application/general/cameraMoveSteps"
        from: 1
        to: 180
    }

    K_SettingRow {
        objectName: "printSavePath"
        label: qsTr("Screenshot save location")
        hint: qsTr("Where to save screenshots")

        Column {
            width: parent.width
            spacing: 4

            K_FolderField {
                objectName: "folder"
                width: Math.min(parent.width, 460)
                path: root.pathOf(folder.chosen)
                name: qsTr("Screenshot save location")
                onClicked: root.chooseFolder()
            }
            K_PlainText {
                objectName: "folderWarning"
                width: parent.width
                visible: !kGlobalObject.isWritableFolder(folder.chosen)
                text: qsTr("Nothing can be saved in this folder.")
                color: "#ff7a6b"
            }
        }
    }

    K_SettingRow {
        objectName: "enableAnalytics"
        visible: kAnalyticsManager !== null
        label: qsTr("Usage statistics")
        hint: qsTr("Send anonymous usage statistics, to help us improve this product.")

        Column {
            width: parent.width
            spacing: 4

            K_CheckBox {
                objectName: "checkBox"
                height: 30
                text: qsTr("Enable")
                value: analytics.value === true
                onEdited: analytics.set(value)
            }
            K_RichText {
                readonly property string address: kGlobalObject.privacyUrl || ""

                objectName: "consent"
                width: parent.width
                markup: qsTr("Send anonymous usage statistics, to help us improve this product.")
                      + (address === "" ? "" : " <a href=\"" + address + "\">"
                                               + qsTr("Privacy policy") + "</a>")
            }
        }
    }

    readonly property list<QtObject> settings: [
        K_SettingValue {
            id: stereoscopy
            store: kSettings
            key: "application/input/stereoscopy"
        },
        K_SettingValue {
            id: duration
            store: kSettings
            key: "application/playlist/imageDisplayDuration"
        },
        K_SettingValue {
            id: noDuration
            store: kSettings
            key: "application/playlist/imageDisplayDurationNone"
        },
        K_SettingValue {
            id: folder
            // Where no folder was chosen yet, pictures go to the desktop.
            readonly property url chosen: value === "toBeDefine" ? root.desktopFolder : value || ""
            store: kSettings
            key: "application/general/printSavePath"
        },
        K_SettingValue {
            id: analytics
            store: kSettings
            key: "application/general/enableAnalytics"
        }
    ]
}
