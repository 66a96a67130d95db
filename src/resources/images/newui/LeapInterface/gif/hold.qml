import QtQuick 2.15

// A hand comes up before the screen and stays.
Stage {
    HandPicture {
        id: hand
        x: 50

        SequentialAnimation {
            running: true
            loops: Animation.Infinite
            ParallelAnimation {
                NumberAnimation { target: hand; property: "y"; from: 75; to: 35; duration: 500; easing.type: Easing.OutQuad }
                NumberAnimation { target: hand; property: "opacity"; from: 0; to: 1; duration: 300 }
            }
            NumberAnimation { target: fill; property: "width"; from: 0; to: 100; duration: 700 }
            PauseAnimation { duration: 600 }
            NumberAnimation { target: hand; property: "opacity"; to: 0; duration: 300 }
            PropertyAction { target: fill; property: "width"; value: 0 }
        }
    }
    Rectangle {
        x: 50
        y: 15
        width: 100
        height: 4
        color: "#3a3536"

        Rectangle {
            id: fill
            height: parent.height
            color: "#00A3DA"
        }
    }
}
