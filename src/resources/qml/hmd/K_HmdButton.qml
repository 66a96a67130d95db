import QtQuick 2.15

// A round button of the panel inside the headset.
Item {
    id: root

    property string name
    property alias icon: image.source
    readonly property alias hovered: area.containsMouse

    signal hoverChanged(bool entered)
    signal chosen()

    width: 72
    height: 72

    Rectangle {
        anchors.fill: parent
        radius: width / 2
        color: Qt.rgba(1, 1, 1, area.containsMouse ? 0.28 : 0.12)
    }

    Image {
        id: image
        anchors.centerIn: parent
        width: 32
        height: 32
        sourceSize: Qt.size(64, 64)
    }

    Accessible.role: Accessible.Button
    Accessible.name: name

    MouseArea {
        id: area
        anchors.fill: parent
        hoverEnabled: true
        onContainsMouseChanged: root.hoverChanged(containsMouse)
        onClicked: root.chosen()
    }
}
