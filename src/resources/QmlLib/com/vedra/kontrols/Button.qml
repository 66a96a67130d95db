import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.Button {
    id: root

    property font font: Theme.fonts.mainFont
    property color backgroundColor: "transparent"
    property color backgroundColorHovered: backgroundColor
    property color overlayColor: "white"
    property real fontSizeFactor: 1
    // The font as shown.
    readonly property font scaledFont: Qt.font({
        family: font.family,
        pointSize: font.pointSize * fontSizeFactor,
        weight: font.weight,
        capitalization: font.capitalization,
        letterSpacing: font.letterSpacing
    })

    property Component defaultStyle: Base.ButtonStyle {
        background: Rectangle {
            implicitWidth: 100
            implicitHeight: 25
            radius: root.Theme.radius
            border.width: root.activeFocus ? 2 : 1
            border.color: root.Theme.colors.foreground
            color: root.hovered ? Qt.lighter(root.backgroundColorHovered) : root.backgroundColor
            opacity: root.enabled ? 1 : 0.4
        }
        label: ButtonContent {
            iconSource: root.iconSource
            iconColor: root.overlayColor
            text: root.text
            font: root.scaledFont
            color: root.Theme.colors.foreground
            opacity: root.enabled ? 1 : 0.4
        }
    }

    style: Style.getStyle("ButtonStyle", Theme.classnames) || defaultStyle
}
