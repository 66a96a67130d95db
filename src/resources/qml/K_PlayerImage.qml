import QtQuick 2.15
import com.vedra.kontrols 1.0

// Short feedback over the video: a picture or a text that comes and goes by itself. In a headset
// the copies at the lenses' centres would carry it; they stay invisible.
Item {
    id: root

    property var headset: kHmdDevice

    function onShowPlayerImage(source) {
        picture.source = source
        imageAnimation.restart()
    }

    function onShowPlayerText(text) {
        label.text = text
        textAnimation.restart()
    }

    component LensCopy: Image {
        property point centre
        x: root.width * centre.x - width / 2
        y: root.height * centre.y - height / 2
        source: picture.source
        visible: false
    }

    Image {
        id: picture
        objectName: "picture"
        anchors.centerIn: parent
        width: 128
        height: 128
        sourceSize: Qt.size(256, 256)
        opacity: 0
    }

    LensCopy { centre: root.headset ? root.headset.lensCenterLeft : Qt.point(0.25, 0.5) }
    LensCopy { centre: root.headset ? root.headset.lensCenterRight : Qt.point(0.75, 0.5) }

    Rectangle {
        id: plate
        objectName: "plate"
        anchors.centerIn: parent
        width: label.implicitWidth + 20
        height: label.implicitHeight + 20
        radius: 6
        color: Qt.rgba(0, 0, 0, 0.7)
        opacity: 0

        Text {
            id: label
            anchors.centerIn: parent
            color: "white"
            textFormat: Text.PlainText
            font: Qt.font({ family: root.Theme.fonts.mainFont.family, pixelSize: 28 })
        }
    }

    SequentialAnimation {
        id: imageAnimation
        PropertyAction { target: picture; property: "opacity"; value: 1 }
        NumberAnimation { target: picture; property: "scale"; from: 0; to: 1; duration: 500 }
        NumberAnimation { target: picture; property: "opacity"; to: 0; duration: 200 }
    }

    SequentialAnimation {
        id: textAnimation
        PropertyAction { target: plate; property: "opacity"; value: 1 }
        PauseAnimation { duration: 500 }
        NumberAnimation { target: plate; property: "opacity"; to: 0; duration: 1000 }
    }
}
