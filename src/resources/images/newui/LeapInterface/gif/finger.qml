import QtQuick 2.15

// A finger points, pushes and pulls the picture aside.
Stage {
    id: stage

    property real depth: 0

    Rectangle {
        x: hand.x + 46 - width / 2
        y: hand.y + 18 - height / 2
        width: 60 * (1 - stage.depth)
        height: width
        radius: width / 2
        color: Qt.rgba(0, 0.64, 0.85, 0.25)
        border { width: 2; color: "#00A3DA" }
    }
    HandPicture {
        id: hand
        x: 30
        y: 40
        shape: "pointing"
        scale: 1 - 0.15 * stage.depth
    }
    SequentialAnimation {
        running: true
        loops: Animation.Infinite
        PauseAnimation { duration: 400 }
        NumberAnimation { target: stage; property: "depth"; from: 0; to: 0.85; duration: 500; easing.type: Easing.InOutSine }
        NumberAnimation { target: hand; property: "x"; from: 30; to: 90; duration: 900; easing.type: Easing.InOutSine }
        NumberAnimation { target: stage; property: "depth"; to: 0; duration: 400; easing.type: Easing.InOutSine }
        NumberAnimation { target: hand; property: "x"; to: 30; duration: 700; easing.type: Easing.InOutSine }
    }
}
