import QtQuick 2.15
import com.vedra.kontrols 1.0
import Orbilens 1.0

// The camera's picture and below it the gestures it knows; one lights up when it is seen.
Rectangle {
    id: root

    property var device
    property string marked: ""

    function mark(gestureId) {
        marked = gestureId
        unmark.restart()
    }

    width: 200
    height: content.height + 24
    color: Qt.rgba(0, 0, 0, 0.7)

    Timer {
        id: unmark
        interval: 700
        onTriggered: root.marked = ""
    }

    Column {
        id: content
        x: 12
        y: 12
        width: parent.width - 24
        spacing: 6

        Rectangle {
            width: parent.width
            height: width * 3 / 4
            color: "black"
            border { width: 1; color: "#3a3536" }

            RealSenseCamera {
                objectName: "camera"
                anchors { fill: parent; margins: 1 }
                Component.onCompleted: initialize(root.device)
            }
        }

        Repeater {
            model: [
                { id: "move_camera", image: "spreadfingers", text: qsTr("Look around") },
                { id: "pinch", image: "full_pinch", text: qsTr("Seek") },
                { id: "v_sign", image: "v_sign", text: qsTr("Play, pause") },
                { id: "thumb_up", image: "thumb_up", text: qsTr("Louder") },
                { id: "thumb_down", image: "thumb_down", text: qsTr("Quieter") }
            ]

            Rectangle {
                objectName: modelData.id
                readonly property bool marked: root.marked === modelData.id
                width: content.width
                height: 34
                radius: 4
                color: marked ? "#00A3DA" : "transparent"

                Behavior on color { ColorAnimation { duration: 150 } }

                Image {
                    x: 4
                    anchors.verticalCenter: parent.verticalCenter
                    width: 26
                    height: 26
                    sourceSize: Qt.size(52, 52)
                    source: "qrc:/images/newui/hand_" + modelData.image + ".svg"
                }
                Text {
                    x: 40
                    anchors.verticalCenter: parent.verticalCenter
                    text: modelData.text
                    textFormat: Text.PlainText
                    color: "white"
                    font.family: Theme.fonts.mainFont.family
                    font.pixelSize: 14
                }
            }
        }
    }
}
