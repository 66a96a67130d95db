import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.ToolButton {
    id: root

    property font font: Theme.fonts.mainFont
    property color overlayColor: Theme.colors.foreground

    property Component defaultStyle: Base.ButtonStyle {
        background: Rectangle {
            implicitWidth: 36
            implicitHeight: 36
            radius: root.Theme.radius
            border.width: root.activeFocus ? 2 : 0
            border.color: root.Theme.colors.foreground
            color: root.pressed || root.checked ? root.Theme.colors.selection
                 : root.hovered ? Style.faint(root.Theme.colors.foreground, 0.14) : "transparent"
        }
        label: ButtonContent {
            iconSource: root.iconSource
            iconColor: root.overlayColor
            text: root.iconSource == "" ? root.text : ""
            font: root.font
            color: root.Theme.colors.foreground
            opacity: root.enabled ? 1 : 0.4
        }
    }

    style: Style.getStyle("ToolButtonStyle", Theme.classnames) || defaultStyle
}
