import QtQuick 2.9
import com.vedra.kontrols 1.0

// One arrow of a HorizontalSpinBox, which steps again and again while it is held.
MouseArea {
    id: root

    property int direction: Qt.RightArrow
    property int arrowSize: 7
    property int repeatInterval: 70 // milliseconds; 0 steps once for each press

    signal triggered()

    width: arrowSize + 16
    hoverEnabled: true
    onPressed: {
        triggered()
        if (repeatInterval > 0)
            delay.start()
    }
    onReleased: stop()
    onCanceled: stop()
    onEnabledChanged: stop()

    function stop() {
        delay.stop()
        again.stop()
    }

    // A click is over before this ends, so it steps once.
    Timer {
        id: delay
        interval: 300
        onTriggered: again.start()
    }

    Timer {
        id: again
        interval: Math.max(1, root.repeatInterval)
        repeat: true
        onTriggered: root.triggered()
    }

    Chevron {
        anchors.centerIn: parent
        width: root.arrowSize
        height: root.arrowSize
        rotation: root.direction === Qt.LeftArrow ? 90 : -90
        color: root.pressed || root.containsMouse ? Theme.colors.selection : Theme.colors.foreground
    }
}
