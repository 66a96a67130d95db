import QtQuick 2.15

// Where a page of the tutorial shows its gesture: the tracker below, the hands above it.
Item {
    id: root

    default property alias hands: above.data

    width: 200
    height: 200

    Item {
        id: above
        width: parent.width
        height: 170
    }

    Rectangle {
        anchors { horizontalCenter: parent.horizontalCenter; bottom: parent.bottom; bottomMargin: 8 }
        width: 64
        height: 8
        radius: 4
        color: "#3a3536"
        border { width: 1; color: "#00A3DA" }

        Rectangle {
            anchors.centerIn: parent
            width: 20
            height: 2
            color: "#00A3DA"

            SequentialAnimation on opacity {
                loops: Animation.Infinite
                NumberAnimation { from: 1; to: 0.3; duration: 900 }
                NumberAnimation { from: 0.3; to: 1; duration: 900 }
            }
        }
    }
}
