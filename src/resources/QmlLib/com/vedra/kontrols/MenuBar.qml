import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.MenuBar {
    id: root

    property Component defaultStyle: Base.MenuBarStyle {
        id: barStyle

        font: root.Theme.fonts.alternateFont
        padding { left: 6; right: 6; top: 0; bottom: 0 }
        background: Rectangle {
            implicitHeight: 28
            color: root.Theme.colors.background
        }
        itemDelegate: Rectangle {
            implicitWidth: title.implicitWidth + 20
            implicitHeight: 28
            color: styleData.open ? root.Theme.colors.selection
                 : styleData.selected ? Style.faint(root.Theme.colors.foreground, 0.14) : "transparent"

            Text {
                id: title

                anchors.centerIn: parent
                font: barStyle.font
                text: barStyle.formatMnemonic(styleData.text, styleData.underlineMnemonic)
                color: styleData.open ? "white" : root.Theme.colors.foreground
                opacity: styleData.enabled ? 1 : 0.4
            }
        }
        menuStyle: MenuPanelStyle { colors: root.Theme.colors; menuFont: barStyle.font }
        // Only one platform has a bar outside the window.
        __isNative: Qt.platform.os === "osx"
    }

    style: Style.getStyle("MenuBarStyle", Theme.classnames) || defaultStyle
}
