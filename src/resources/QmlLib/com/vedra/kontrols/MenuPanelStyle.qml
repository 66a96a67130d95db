import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// The look of an opened menu: of the menu bar's menus and of a combo box's list.
Base.MenuStyle {
    id: root

    property var colors
    property font menuFont

    font: menuFont
    padding { left: 1; right: 1; top: 4; bottom: 4 }
    frame: Rectangle {
        color: root.colors.background
        // Opaque: under it is a window of its own.
        border.color: Qt.tint(root.colors.background, Style.faint(root.colors.foreground, 0.25))
    }
    itemDelegate.background: Rectangle {
        color: styleData.selected && styleData.enabled ? root.colors.selection : "transparent"
    }
    itemDelegate.label: Text {
        text: root.formatMnemonic(styleData.text, styleData.underlineMnemonic)
        font: root.menuFont
        color: styleData.selected && styleData.enabled ? "white" : root.colors.foreground
        opacity: styleData.enabled ? 1 : 0.4
        topPadding: 4
        bottomPadding: 4
    }
    itemDelegate.shortcut: Text {
        text: styleData.shortcut
        font: root.menuFont
        color: styleData.selected && styleData.enabled ? "white" : root.colors.darkerForeground
        opacity: styleData.enabled ? 1 : 0.4
        topPadding: 4
        bottomPadding: 4
    }
    itemDelegate.submenuIndicator: Chevron {
        width: 9
        height: 9
        baselineOffset: height // stands on the line of the text
        rotation: -90
        color: root.colors.foreground
    }
    itemDelegate.checkmarkIndicator: TintedImage {
        width: 12
        height: 12
        visible: styleData.checked
        icon: "images/check.svg"
        color: styleData.selected && styleData.enabled ? "white" : root.colors.selection
    }
    separator: Item {
        implicitHeight: 9

        Rectangle {
            anchors { left: parent.left; right: parent.right; verticalCenter: parent.verticalCenter }
            height: 1
            color: Style.faint(root.colors.foreground, 0.2)
        }
    }
    scrollIndicator: Chevron {
        width: 9
        height: 9
        rotation: styleData.scrollerDirection === Qt.UpArrow ? 180 : 0
        color: root.colors.foreground
    }
}
