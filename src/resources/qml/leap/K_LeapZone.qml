import QtQuick 2.15
import com.vedra.kontrols 1.0

// Warns of the edge of the tracker's zone that the hand is leaving, at the same edge of the window.
Item {
    id: root

    property int edges: 0

    component Warning: Rectangle {
        property int bit
        property alias text: label.text
        property bool across: false

        opacity: root.edges & bit ? 1 : 0
        visible: opacity > 0

        Behavior on opacity { NumberAnimation { duration: 150 } }

        Rectangle {
            anchors.centerIn: parent
            width: label.implicitWidth + 20
            height: label.implicitHeight + 12
            radius: 6
            color: Qt.rgba(0, 0, 0, 0.7)

            Text {
                id: label
                anchors.centerIn: parent
                color: "white"
                textFormat: Text.PlainText
                font.family: Theme.fonts.mainFont.family
                font.pixelSize: 14
            }
        }
        gradient: Gradient {
            orientation: across ? Gradient.Horizontal : Gradient.Vertical
            GradientStop { position: 0; color: bit === 1 || bit === 8 ? "#c0ffa000" : "#00ffa000" }
            GradientStop { position: 1; color: bit === 1 || bit === 8 ? "#00ffa000" : "#c0ffa000" }
        }
    }

    Warning {
        objectName: "left"
        bit: 1
        across: true
        text: "\u2192"
        width: 60
        height: parent.height
    }
    Warning {
        objectName: "right"
        bit: 2
        across: true
        text: "\u2190"
        anchors.right: parent.right
        width: 60
        height: parent.height
    }
    Warning {
        objectName: "bottom"
        bit: 4
        text: qsTr("Raise your hand")
        anchors.bottom: parent.bottom
        width: parent.width
        height: 60
    }
    Warning {
        objectName: "top"
        bit: 8
        text: qsTr("Lower your hand")
        width: parent.width
        height: 60
    }
}
