import QtQuick 2.15

// Two palms meet.
Stage {
    id: stage

    property real gap: 50

    SequentialAnimation on gap {
        loops: Animation.Infinite
        NumberAnimation { from: 50; to: 2; duration: 250; easing.type: Easing.InQuad }
        ScriptAction { script: ring.start() }
        PauseAnimation { duration: 150 }
        NumberAnimation { from: 2; to: 50; duration: 500; easing.type: Easing.OutQuad }
        PauseAnimation { duration: 700 }
    }

    HandPicture { x: 42 - stage.gap; y: 40; shape: "edge" }
    HandPicture { x: 58 + stage.gap; y: 40; shape: "edge"; mirror: true }
    Rectangle {
        id: wave
        anchors.horizontalCenter: parent.horizontalCenter
        y: 90 - height / 2
        height: width
        radius: width / 2
        color: "transparent"
        border { width: 2; color: "#00A3DA" }
        opacity: 0

        ParallelAnimation {
            id: ring
            NumberAnimation { target: wave; property: "width"; from: 20; to: 150; duration: 500 }
            NumberAnimation { target: wave; property: "opacity"; from: 0.9; to: 0; duration: 500 }
        }
    }
}
