import QtQuick 2.15

// A level hand turns like the wings of a plane, and the horizon with it.
Stage {
    id: stage

    property real angle: 0

    SequentialAnimation on angle {
        loops: Animation.Infinite
        NumberAnimation { from: 0; to: 35; duration: 800; easing.type: Easing.InOutSine }
        NumberAnimation { from: 35; to: -35; duration: 1400; easing.type: Easing.InOutSine }
        NumberAnimation { from: -35; to: 0; duration: 800; easing.type: Easing.InOutSine }
    }

    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 30
        width: 120
        height: 2
        color: "#00A3DA"
        rotation: stage.angle
        antialiasing: true
    }
    HandPicture { x: 50; y: 55; shape: "level"; rotation: stage.angle }
}
