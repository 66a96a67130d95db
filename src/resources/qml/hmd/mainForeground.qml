import QtQuick 2.15
import Orbilens 1.0
import com.vedra.kontrols 1.0

// What stays in the middle of the wearer's view while the panel is open: the reticle and, once the
// gaze rests on something, the ring that fills until it is chosen.
Item {
    id: root

    property var manager: kHmdUIManager
    property var settings: kSettings

    readonly property int restTime: 1000        // ms until the ring appears
    readonly property int progressionTime: 2000 // ms that it takes to fill
    readonly property int settleTime: 500       // ms between full and chosen
    readonly property color accent: Theme.colors.selection

    property real progression: 0

    width: 4000
    height: 2000

    function reset() {
        countdown.stop()
        ring.visible = false
        progression = 0
    }

    Connections {
        target: root.manager
        function onUiStateChanged() {
            root.reset()
            if (root.manager.uiState === KHmdUIManager.Hovered
                    && root.settings.getTyped("application/hmd/gazeUI") === true)
                countdown.start()
        }
    }

    SequentialAnimation {
        id: countdown
        PauseAnimation { duration: root.restTime }
        PropertyAction { target: ring; property: "visible"; value: true }
        NumberAnimation {
            target: root
            property: "progression"
            from: 0
            to: 1
            duration: root.progressionTime
        }
        PauseAnimation { duration: root.settleTime }
        ScriptAction { script: root.manager.uiState = KHmdUIManager.Clicked }
    }

    // Dark around white, so that it shows before any picture.
    Rectangle {
        objectName: "reticle"
        anchors.centerIn: parent
        width: 26
        height: 26
        radius: 13
        color: Qt.rgba(0, 0, 0, 0.5)
        visible: !ring.visible

        Rectangle {
            anchors.centerIn: parent
            width: 16
            height: 16
            radius: 8
            color: "white"
        }
    }

    Canvas {
        id: ring
        anchors.centerIn: parent
        width: 120
        height: 120
        visible: false

        readonly property real progression: root.progression
        onProgressionChanged: requestPaint()
        onVisibleChanged: requestPaint()
        onPaint: {
            var context = getContext("2d")
            var top = -Math.PI / 2
            function arc(turn, width, style) {
                context.beginPath()
                context.arc(60, 60, 46, top, top + 2 * Math.PI * turn)
                context.lineWidth = width
                context.strokeStyle = style
                context.stroke()
            }
            context.clearRect(0, 0, width, height)
            context.lineCap = "round"
            context.beginPath()
            context.arc(60, 60, 55, 0, 2 * Math.PI)
            context.fillStyle = "rgba(0, 0, 0, 0.6)"
            context.fill()
            arc(1, 8, "rgba(255, 255, 255, 0.25)")
            if (progression > 0)
                arc(progression, 8, root.accent)
        }
    }

    Text {
        objectName: "countdown"
        anchors.centerIn: parent
        visible: ring.visible
        // Whole seconds that are left; the last one also covers the moment after.
        text: Math.max(1, Math.ceil((1 - root.progression) * root.progressionTime / 1000))
        textFormat: Text.PlainText
        font { family: Theme.fonts.mainFont.family; pixelSize: 40; weight: Font.DemiBold }
        color: "white"
    }
}
