import QtQuick 2.15

// The interface inside the headset as part of the scene: its two files lie to the right of the
// window, where only their textures are taken from.
Item {
    id: root

    property var headset: kHmdDevice
    // There from the first headset that works on; never while another program gives the frames.
    readonly property var manager: typeof kHmdUIManager === "undefined" ? null : kHmdUIManager
    readonly property bool opened: manager !== null && manager.activated

    readonly property int sceneWidth: 4000
    readonly property int sceneHeight: 2000

    // The 1 by 1 item that keeps a scene drawn and takes it out of sight.
    component Layer: ShaderEffectSource {
        x: -1
        width: 1
        height: 1
        hideSource: true
    }

    Loader {
        active: root.headset !== null && root.headset.available
                && root.manager !== null && root.manager.renderInQtSG
        sourceComponent: Item {
            Loader {
                id: panel
                x: root.width + 1
                width: root.sceneWidth
                height: root.sceneHeight
                source: "hmd/main.qml"
                onLoaded: root.manager.setHmdUI(item)
            }

            Loader {
                id: foreground
                x: panel.x + panel.width
                width: root.sceneWidth
                height: root.sceneHeight
                source: "hmd/mainForeground.qml"
                onLoaded: root.manager.setHmdUIForeground(item)
            }

            Layer {
                sourceItem: panel
                Component.onCompleted: textureProviderMain.setShaderEffectSource(this)
            }

            Layer {
                sourceItem: foreground
                Component.onCompleted: textureProviderForeground.setShaderEffectSource(this)
            }
        }
    }

    // A headset that is taken off leaves nothing open behind.
    Connections {
        target: root.headset
        function onActivatedChanged() {
            if (!root.headset.activated && root.opened)
                root.manager.activated = false
        }
    }

    // The window's pointer would fight the gaze; a click gives the window back.
    MouseArea {
        objectName: "windowGuard"
        anchors.fill: parent
        enabled: root.opened
        hoverEnabled: root.opened // a disabled one would still keep the hover from all below it
        acceptedButtons: Qt.AllButtons
        onClicked: root.manager.activated = false
        onWheel: wheel.accepted = true
    }
}
