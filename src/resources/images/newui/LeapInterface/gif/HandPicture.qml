import QtQuick 2.15

// One hand of the tutorial in a shape that can change while it moves.
Image {
    property string shape: "open"

    width: 100
    height: 100
    sourceSize: Qt.size(200, 200)
    source: "qrc:/images/newui/LeapInterface/hand_" + shape + ".svg"
}
