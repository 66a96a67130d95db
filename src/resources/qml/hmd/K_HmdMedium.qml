import QtQuick 2.15
import QtGraphicalEffects 1.0

// One medium of the panel inside the headset: its picture, or what stands in for one, and its name.
Item {
    id: root

    property url medium
    property string title
    property url thumb
    property bool still
    property bool playing
    property bool hovered
    property color accent
    property string family

    signal hoverChanged(bool entered)
    signal chosen()

    readonly property string suffix: {
        var dot = title.lastIndexOf(".")
        return dot > 0 ? title.substring(dot + 1).toUpperCase() : ""
    }

    width: 200
    height: 220

    Item {
        id: picture
        width: 200
        height: 120
        anchors.horizontalCenter: parent.horizontalCenter
        y: 10
        scale: root.hovered ? 1.06 : 1
        Behavior on scale { NumberAnimation { duration: 120 } }

        Rectangle {
            id: mask
            anchors.fill: parent
            radius: 14
            visible: false
        }

        Item {
            anchors.fill: parent
            layer.enabled: true
            layer.effect: OpacityMask { maskSource: mask }

            Rectangle {
                anchors.fill: parent
                gradient: Gradient {
                    GradientStop { position: 0; color: "#3a3d42" }
                    GradientStop { position: 1; color: "#232529" }
                }
            }

            Text {
                objectName: "suffix"
                anchors.centerIn: parent
                width: parent.width - 24
                visible: image.status !== Image.Ready
                text: root.suffix !== "" ? root.suffix : qsTr("Stream")
                textFormat: Text.PlainText
                elide: Text.ElideRight
                horizontalAlignment: Text.AlignHCenter
                font { family: root.family; pixelSize: 30; weight: Font.DemiBold }
                color: Qt.rgba(1, 1, 1, 0.45)
            }

            Image {
                id: image
                objectName: "thumb"
                anchors.fill: parent
                asynchronous: true
                fillMode: Image.PreserveAspectCrop
                sourceSize: Qt.size(400, 240)
                visible: status === Image.Ready
                // A whole panorama of a server is not fetched for this.
                readonly property string shown: root.thumb.toString() !== "" ? root.thumb
                    : root.still && /^(file|qrc):/.test(root.medium) ? root.medium : ""
                source: shown !== "" ? "image://still/" + encodeURIComponent(shown) : ""
            }
        }

        Rectangle {
            anchors { left: parent.left; bottom: parent.bottom; margins: 8 }
            width: playingText.implicitWidth + 20
            height: 30
            radius: 15
            color: root.accent
            visible: root.playing

            Text {
                id: playingText
                anchors.centerIn: parent
                text: qsTr("Now playing")
                textFormat: Text.PlainText
                font { family: root.family; pixelSize: 18; weight: Font.DemiBold }
                color: "white"
            }
        }

        Rectangle {
            anchors { fill: parent; margins: -4 }
            radius: 18
            color: "transparent"
            border { width: 4; color: root.hovered ? "white" : root.accent }
            visible: root.hovered || root.playing
        }
    }

    Text {
        objectName: "name"
        anchors { left: parent.left; right: parent.right; top: parent.top; topMargin: 142 }
        text: root.title
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
        maximumLineCount: 2
        elide: Text.ElideRight
        horizontalAlignment: Text.AlignHCenter
        font { family: root.family; pixelSize: 22 }
        color: root.hovered || root.playing ? "white" : Qt.rgba(1, 1, 1, 0.75)
    }

    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onContainsMouseChanged: root.hoverChanged(containsMouse)
        onClicked: root.chosen()
    }
}
