import QtQuick 2.15

// A hand on edge sweeps aside.
Stage {
    HandPicture {
        id: hand
        y: 40
        shape: "edge"

        SequentialAnimation {
            running: true
            loops: Animation.Infinite
            PropertyAction { target: hand; property: "opacity"; value: 1 }
            PropertyAction { target: hand; property: "x"; value: 0 }
            PauseAnimation { duration: 500 }
            NumberAnimation { target: hand; property: "x"; to: 100; duration: 260; easing.type: Easing.InOutQuad }
            NumberAnimation { target: hand; property: "opacity"; to: 0; duration: 500 }
            PauseAnimation { duration: 400 }
        }
    }
    Rectangle {
        x: 40
        y: 90
        width: Math.max(0, hand.x)
        height: 2
        color: "#00A3DA"
        opacity: hand.opacity
    }
}
