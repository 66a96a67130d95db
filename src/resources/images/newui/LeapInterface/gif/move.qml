import QtQuick 2.15

// An open hand goes from side to side, then tilts.
Stage {
    HandPicture {
        id: hand
        y: 40
        shape: "flat"

        SequentialAnimation {
            running: true
            loops: Animation.Infinite
            NumberAnimation { target: hand; property: "x"; from: 50; to: 100; duration: 700; easing.type: Easing.InOutSine }
            NumberAnimation { target: hand; property: "x"; to: 0; duration: 1200; easing.type: Easing.InOutSine }
            NumberAnimation { target: hand; property: "x"; to: 50; duration: 700; easing.type: Easing.InOutSine }
            NumberAnimation { target: hand; property: "rotation"; from: 0; to: 25; duration: 600; easing.type: Easing.InOutSine }
            NumberAnimation { target: hand; property: "rotation"; to: -25; duration: 1000; easing.type: Easing.InOutSine }
            NumberAnimation { target: hand; property: "rotation"; to: 0; duration: 600; easing.type: Easing.InOutSine }
        }
    }
}
