import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.MenuBar {
    id: root

    // The room there is for the titles, which draw together where it is too small.
    property real availableWidth: Infinity
    readonly property font titleFont: Theme.fonts.alternateFont
    readonly property bool narrow: titles.advanceWidth + 20 * menus.length + 12 > availableWidth
    property TextMetrics titles: TextMetrics {
        font: root.titleFont
        text: {
            var all = ""
            for (var i = 0; i < root.menus.length; ++i)
                all += root.menus[i].title
            return all
        }
    }

    property Component defaultStyle: Base.MenuBarStyle {
        id: barStyle

        font: root.titleFont
        padding { left: root.narrow ? 0 : 6; right: 6; top: 0; bottom: 0 }
        background: Rectangle {
            implicitHeight: 28
            color: root.Theme.colors.background
        }
        itemDelegate: Rectangle {
            implicitWidth: title.implicitWidth + (root.narrow ? 13 : 20)
            implicitHeight: 28
            color: styleData.open ? root.Theme.colors.selection
                 : styleData.selected ? Style.faint(root.Theme.colors.foreground, 0.14) : "transparent"

            Text {
                id: title

                anchors.centerIn: parent
                font: root.narrow ? Qt.font({ family: barStyle.font.family,
                                              pointSize: barStyle.font.pointSize,
                                              weight: barStyle.font.weight,
                                              capitalization: barStyle.font.capitalization })
                                  : barStyle.font
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
