import QtQuick 2.15

// A finger draws a circle, clockwise.
Stage {
    id: stage

    property real angle: 0

    NumberAnimation on angle { from: 0; to: 2 * Math.PI; duration: 1600; loops: Animation.Infinite }

    Rectangle {
        x: 65
        y: 5
        width: 70
        height: 70
        radius: 35
        color: "transparent"
        border { width: 2; color: "#00A3DA" }
        opacity: 0.6
    }
    HandPicture {
        shape: "pointing"
        x: 55 + 35 * Math.sin(stage.angle)
        y: 28 - 35 * Math.cos(stage.angle)
    }
}
