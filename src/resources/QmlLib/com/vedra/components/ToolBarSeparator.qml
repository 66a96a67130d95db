import QtQuick 2.9
import com.vedra.kontrols 1.0

// The line between two groups of a tool bar.
Item {
    implicitWidth: 17
    implicitHeight: 24

    Rectangle {
        anchors { top: parent.top; bottom: parent.bottom; horizontalCenter: parent.horizontalCenter }
        width: 1
        color: Theme.colors.darkerForeground
        opacity: 0.5
    }
}
