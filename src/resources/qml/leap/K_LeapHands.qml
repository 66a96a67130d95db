import QtQuick 2.15
import Orbilens 1.0

// The user's hands over the picture: over the window, or once before each eye of a headset.
Item {
    id: root

    property var leap
    property bool headsetActivated: false

    function connectTo(painter, fingers) {
        fingers.connect(painter.drawFingersSlot)
        root.leap.setGlobalObject.connect(painter.setKGlobalObjectSlot)
    }

    KLeapFingerOGL {
        id: window
        anchors.fill: parent
        visible: !root.headsetActivated
        hmdMode: root.leap.cameraMode === 2 ? 1 : 0
        Component.onCompleted: {
            root.connectTo(window, root.leap.drawFingersSignal)
            window.setKGlobalObjectSlot(kGlobalObject)
        }
    }

    Repeater {
        model: root.headsetActivated ? [1, 2] : []

        KLeapFingerOGL {
            id: eye
            x: modelData === 1 ? 0 : root.width / 2
            width: root.width / 2
            height: root.height
            cameraId: modelData
            hmdMode: root.leap.cameraMode === 2 ? 1 : 0
            lensLimit: 0.95
            Component.onCompleted: root.connectTo(eye, root.leap.drawFingersSignalHmd)
        }
    }
}
