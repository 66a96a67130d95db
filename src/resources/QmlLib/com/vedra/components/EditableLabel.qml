import QtQuick 2.9
import com.vedra.components 1.0
import com.vedra.kontrols 1.0

// A text that a double click (or Return) opens for editing. Return or a click elsewhere takes the
// new text, Escape keeps the old one.
FocusScope {
    id: root

    property string text
    property string placeholderText
    property bool editing: false

    signal edited(string text)

    function edit() {
        field.text = root.text
        editing = true
        field.forceActiveFocus()
        field.selectAll()
    }

    function accept() {
        if (!editing)
            return
        editing = false
        if (field.text !== root.text) {
            root.text = field.text
            edited(root.text)
        }
    }

    function cancel() {
        editing = false
    }

    implicitWidth: Math.max(label.implicitWidth, 60)
    implicitHeight: Math.max(label.implicitHeight, field.implicitHeight)
    activeFocusOnTab: true
    Accessible.role: Accessible.EditableText
    Accessible.name: text !== "" ? text : placeholderText

    Keys.onReturnPressed: edit()
    Keys.onEnterPressed: edit()

    Label {
        id: label

        anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
        visible: !root.editing
        text: root.text !== "" ? root.text : root.placeholderText
        textFormat: Text.PlainText
        elide: Text.ElideRight
        color: root.text === "" ? Theme.colors.darkerForeground
             : root.activeFocus ? Theme.colors.selection : Theme.colors.foreground
    }

    MouseArea {
        anchors.fill: parent
        enabled: !root.editing
        onDoubleClicked: root.edit()
    }

    TextField {
        id: field

        anchors.fill: parent
        visible: root.editing
        Keys.onReturnPressed: root.accept()
        Keys.onEnterPressed: root.accept()
        Keys.onEscapePressed: root.cancel()
    }

    InverseMouseArea {
        anchors.fill: parent
        enabled: root.editing
        onPressedOutside: root.accept()
    }
}
