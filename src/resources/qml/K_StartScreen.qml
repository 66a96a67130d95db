import QtQuick 2.9

// What the window shows while no medium does.
Rectangle {
    id: root

    property string errorString

    color: "#222222"

    Rectangle {
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: parent.height / 2
        color: "#1b1b1b"
    }

    Column {
        anchors.centerIn: parent
        spacing: 20

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            text: qsTr("Version ") + kView.version()
            color: "#999999"
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.errorString === ""
            text: qsTr("Drag & Drop your spherical videos here")
            textFormat: Text.PlainText
            color: "white"
            font.pixelSize: 20
        }

        Text {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.errorString !== ""
            text: root.errorString
            textFormat: Text.PlainText
            color: "#ff5050"
            font.pixelSize: 16
        }
    }
}
