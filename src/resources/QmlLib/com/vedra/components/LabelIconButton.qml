import QtQuick 2.9
import com.vedra.kontrols 1.0

// A glyph of the icon font to click, by pointer or by key.
LabelIcon {
    id: root

    readonly property bool hovered: area.containsMouse
    readonly property bool pressed: area.pressed

    // A glyph says nothing to those who do not see it.
    property string name

    signal clicked()

    activeFocusOnTab: true
    color: hovered || activeFocus ? Theme.colors.selection : Theme.colors.foreground
    Accessible.role: Accessible.Button
    Accessible.name: name
    Accessible.onPressAction: clicked()

    Keys.onSpacePressed: clicked()
    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()

    MouseArea {
        id: area

        anchors.fill: parent
        hoverEnabled: true
        onClicked: root.clicked()
    }
}
