import QtQuick 2.15

// Two hands go apart and together.
Stage {
    id: stage

    property real gap: 0

    SequentialAnimation on gap {
        loops: Animation.Infinite
        NumberAnimation { from: 0; to: 40; duration: 1100; easing.type: Easing.InOutSine }
        PauseAnimation { duration: 250 }
        NumberAnimation { from: 40; to: 0; duration: 1100; easing.type: Easing.InOutSine }
        PauseAnimation { duration: 250 }
    }

    HandPicture { x: 42 - stage.gap; y: 60; width: 76; height: 76; mirror: true }
    HandPicture { x: 82 + stage.gap; y: 60; width: 76; height: 76 }
    Rectangle {
        anchors.horizontalCenter: parent.horizontalCenter
        y: 30 - height / 2
        width: 36 + stage.gap
        height: width * 0.56
        color: "transparent"
        border { width: 2; color: "#00A3DA" }
    }
}
