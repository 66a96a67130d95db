import QtQuick 2.15
import com.vedra.kontrols 1.0
import com.vedra.components 1.0
import "../widgets"

// One page of the hand tracker's tutorial: the gesture as a moving picture, and what it does. With a
// headset it stands once before each eye, without the buttons.
Item {
    id: root

    property int page: -1
    property bool buttons: true

    readonly property var pages: ({
        0: ["move", qsTr("Move"), qsTr("Open hand: aside to look around, tilted to look up and down.")],
        1: ["seek", qsTr("Seek"), qsTr("Draw a circle with one finger: clockwise forward.")],
        2: ["pinch", qsTr("Pinch"), qsTr("Thumb and index together: pull the picture.")],
        3: ["zoom", qsTr("Zoom"), qsTr("Two hands apart or together.")],
        4: ["clap", qsTr("Clap"), qsTr("Clap to let your finger use the menu, again to end it.")],
        5: ["hold", qsTr("Hold"), qsTr("Palm to the screen, still: play or pause.")],
        6: ["turn", qsTr("Turn"), qsTr("Turn the open hand like a wing: the horizon follows.")],
        7: ["swipe", qsTr("Swipe"), qsTr("Sweep a hand on edge: next projection.")],
        10: ["finger", qsTr("Finger"), qsTr("Point with one finger, push to pull the picture.")],
        20: ["fist", qsTr("Fist"), qsTr("Close the hand to rest: nothing moves.")]
    })
    readonly property var shown: pages[page]

    signal next()
    signal close()

    visible: shown !== undefined
    width: 260
    height: panel.implicitHeight + 40

    Rectangle {
        anchors.fill: parent
        radius: 6
        color: Qt.rgba(0, 0, 0, 0.75)
    }

    Column {
        id: panel
        anchors { left: parent.left; right: parent.right; top: parent.top; margins: 20 }
        spacing: 10

        LabelH2 {
            objectName: "title"
            anchors.horizontalCenter: parent.horizontalCenter
            text: root.shown ? root.shown[1] : ""
        }
        Loader {
            objectName: "picture"
            anchors.horizontalCenter: parent.horizontalCenter
            width: 200
            height: 200
            source: root.shown
                ? "qrc:/images/newui/LeapInterface/gif/" + root.shown[0] + ".qml" : ""
        }
        Text {
            width: parent.width
            text: root.shown ? root.shown[2] : ""
            textFormat: Text.PlainText
            wrapMode: Text.Wrap
            horizontalAlignment: Text.AlignHCenter
            color: "white"
            font.family: Theme.fonts.mainFont.family
            font.pixelSize: 14
        }
        Row {
            anchors.horizontalCenter: parent.horizontalCenter
            visible: root.buttons
            spacing: 10

            K_PanelButton {
                objectName: "nextButton"
                text: qsTr("Next")
                primary: true
                onClicked: root.next()
            }
            K_PanelButton {
                objectName: "closeButton"
                text: qsTr("Close")
                onClicked: root.close()
            }
        }
    }
}
