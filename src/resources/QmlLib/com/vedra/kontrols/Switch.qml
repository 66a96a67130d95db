import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.Switch {
    id: root

    property Component defaultStyle: Base.SwitchStyle {
        groove: Rectangle {
            implicitWidth: 40
            implicitHeight: 20
            radius: height / 2
            color: root.checked ? root.Theme.colors.selection : root.Theme.colors.lighterBackground
            border.width: root.activeFocus ? 2 : 1
            border.color: root.activeFocus ? root.Theme.colors.foreground
                                           : root.Theme.colors.darkerForeground
            opacity: root.enabled ? 1 : 0.4
        }
        handle: Item {
            implicitWidth: 20
            implicitHeight: 20

            Rectangle {
                anchors.fill: parent
                anchors.margins: 4
                radius: height / 2
                color: root.checked ? "white" : root.Theme.colors.foreground
                opacity: root.enabled ? 1 : 0.4
            }
        }
    }

    style: Style.getStyle("SwitchStyle", Theme.classnames) || defaultStyle
}
