import QtQuick 2.15

// A hand closes, goes back and opens again: meanwhile nothing turns.
Stage {
    HandPicture {
        id: hand
        y: 40

        SequentialAnimation {
            running: true
            loops: Animation.Infinite
            PropertyAction { target: hand; property: "shape"; value: "open" }
            NumberAnimation { target: hand; property: "x"; from: 10; to: 90; duration: 1000; easing.type: Easing.InOutSine }
            PropertyAction { target: hand; property: "shape"; value: "fist" }
            PauseAnimation { duration: 300 }
            NumberAnimation { target: hand; property: "x"; to: 10; duration: 1000; easing.type: Easing.InOutSine }
            PauseAnimation { duration: 300 }
        }
    }
}
