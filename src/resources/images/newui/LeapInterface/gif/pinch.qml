import QtQuick 2.15

// A hand takes hold of the picture and pulls it aside.
Stage {
    Rectangle {
        x: hand.x - 20
        y: 20
        width: 90
        height: 60
        color: "transparent"
        border { width: 2; color: "#00A3DA" }
        opacity: hand.shape === "pinch" ? 0.9 : 0.4
    }
    HandPicture {
        id: hand
        y: 50

        SequentialAnimation {
            running: true
            loops: Animation.Infinite
            PropertyAction { target: hand; property: "shape"; value: "open" }
            PropertyAction { target: hand; property: "x"; value: 30 }
            PauseAnimation { duration: 500 }
            PropertyAction { target: hand; property: "shape"; value: "pinch" }
            PauseAnimation { duration: 300 }
            NumberAnimation { target: hand; property: "x"; to: 95; duration: 1100; easing.type: Easing.InOutSine }
            PropertyAction { target: hand; property: "shape"; value: "open" }
            PauseAnimation { duration: 700 }
        }
    }
}
