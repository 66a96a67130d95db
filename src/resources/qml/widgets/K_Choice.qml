import QtQuick 2.15
import com.vedra.kontrols 1.0

// One of a few values, each a labelled plate. One stop of the Tab key; the arrow keys choose.
Flow {
    id: root

    // Entries of { text, value }.
    property var choices: []
    property var value
    property string name

    readonly property int currentIndex: {
        for (var i = 0; i < choices.length; ++i) {
            if (choices[i].value === value)
                return i
        }
        return -1
    }

    signal chosen(var value)

    function choose(index) {
        if (index >= 0 && index < choices.length && index !== currentIndex)
            chosen(choices[index].value)
    }

    spacing: 4
    activeFocusOnTab: true
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.Grouping
    Accessible.name: name

    Keys.onLeftPressed: choose(currentIndex - 1)
    Keys.onUpPressed: choose(currentIndex - 1)
    Keys.onRightPressed: choose(currentIndex + 1)
    Keys.onDownPressed: choose(currentIndex + 1)

    Repeater {
        model: root.choices

        Rectangle {
            id: plate

            readonly property bool current: index === root.currentIndex

            objectName: "choice_" + index
            width: Math.max(60, label.implicitWidth + 20)
            height: 30
            radius: 2
            color: current ? Theme.colors.selection
                 : mouse.containsMouse ? Qt.rgba(1, 1, 1, 0.16) : Qt.rgba(1, 1, 1, 0.07)
            border {
                width: current && root.activeFocus ? 2 : 0
                color: Theme.colors.foreground
            }
            Accessible.role: Accessible.RadioButton
            Accessible.name: modelData.text
            Accessible.checked: current
            Accessible.onPressAction: root.choose(index)

            Behavior on color { ColorAnimation { duration: 100 } }

            Label {
                id: label
                anchors.centerIn: parent
                text: modelData.text
                textFormat: Text.PlainText
            }

            MouseArea {
                id: mouse
                anchors.fill: parent
                hoverEnabled: true
                onClicked: {
                    root.forceActiveFocus()
                    root.choose(index)
                }
            }

            // With no value among the choices the focus still shows somewhere.
            Rectangle {
                anchors.fill: parent
                visible: root.activeFocus && root.currentIndex < 0 && index === 0
                color: "transparent"
                border { width: 2; color: Theme.colors.foreground }
            }
        }
    }
}
