import QtQuick 2.15
import com.vedra.kontrols 1.0

// A label and its control, beside each other where there is room. The pointer over a control is over
// its row too, which holds of an area around both but not of a handler beside them.
MouseArea {
    id: root

    property string label
    property string hint
    readonly property bool pointed: containsMouse
    readonly property bool focused: slot.activeFocus

    default property alias control: slot.data

    readonly property bool wide: width >= 600
    readonly property real labelWidth: 190

    hoverEnabled: true
    acceptedButtons: Qt.NoButton
    width: parent ? parent.width : 0
    height: (wide ? Math.max(slot.height, text.height) : text.height + 6 + slot.height) + 16

    Rectangle {
        anchors.fill: parent
        radius: 2
        color: Qt.rgba(1, 1, 1, root.pointed ? 0.04 : 0)
        Behavior on color { ColorAnimation { duration: 120 } }
    }

    Label {
        id: text
        x: 10
        y: root.wide ? Math.max(8, Math.min(15, (parent.height - height) / 2)) : 8
        width: root.wide ? root.labelWidth : parent.width - 20
        text: root.label
        textFormat: Text.PlainText
        wrapMode: Text.Wrap
    }

    FocusScope {
        id: slot
        x: root.wide ? root.labelWidth + 20 : 10
        y: root.wide ? (parent.height - height) / 2 : text.y + text.height + 6
        width: parent.width - x - 10
        height: childrenRect.height
    }
}
