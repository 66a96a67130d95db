import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// Class names: "light" and "dark" fix its colours whatever the theme, "ddleft" puts the arrow on
// the left, "defaultText" shows the entries as they are written.
Base.ComboBoxStyle {
    id: root

    readonly property bool classed: control.Theme.classnames.length > 0
    readonly property bool light: classed && control.Theme.hasClassname("light")
    readonly property bool dark: classed && control.Theme.hasClassname("dark")
    readonly property bool arrowLeft: classed && control.Theme.hasClassname("ddleft")
    readonly property bool plainText: classed && control.Theme.hasClassname("defaultText")
    readonly property color faceColor: light ? "#e1e1e1" : dark ? "#262626"
                                                                : control.Theme.colors.background

    font: plainText ? Style.asWritten(control.font) : control.font
    textColor: light ? "#141414" : dark ? "white" : control.Theme.colors.foreground
    selectionColor: control.Theme.colors.selection
    selectedTextColor: "white"
    dropDownButtonWidth: 28

    background: Rectangle {
        implicitWidth: 180
        implicitHeight: 30
        radius: control.Theme.radius
        color: control.hovered && control.enabled ? Qt.tint(root.faceColor, "#18808080")
                                                  : root.faceColor
        border.width: control.activeFocus ? 2 : 1
        border.color: control.activeFocus ? root.selectionColor
                                          : Qt.tint(root.faceColor, "#60808080")
        opacity: control.enabled ? 1 : 0.4

        Chevron {
            anchors.verticalCenter: parent.verticalCenter
            x: root.arrowLeft ? 10 : parent.width - width - 10
            rotation: control.pressed ? 180 : 0
            color: root.textColor
        }
    }
    label: Item {
        implicitWidth: name.implicitWidth + root.dropDownButtonWidth
        baselineOffset: name.y + name.baselineOffset

        Text {
            id: name

            anchors {
                left: parent.left
                right: parent.right
                leftMargin: root.arrowLeft ? root.dropDownButtonWidth : 4
                rightMargin: root.arrowLeft ? 4 : root.dropDownButtonWidth
                verticalCenter: parent.verticalCenter
            }
            text: control.currentText
            textFormat: Text.PlainText
            font: root.font
            color: root.textColor
            opacity: control.enabled ? 1 : 0.4
            elide: Text.ElideRight
        }
    }
    __editor: Item { }
    __dropDownStyle: MenuPanelStyle {
        menuFont: root.font
        colors: ({
            foreground: root.textColor,
            darkerForeground: control.Theme.colors.darkerForeground,
            background: root.faceColor,
            lighterBackground: Qt.tint(root.faceColor, "#60808080"),
            selection: root.selectionColor
        })
        __maxPopupHeight: 600
        __menuItemType: "comboboxitem"
    }
}
