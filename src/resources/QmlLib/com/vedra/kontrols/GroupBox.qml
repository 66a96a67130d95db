import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Private 1.0 as Base
import com.vedra.kontrols 1.0

Controls.GroupBox {
    id: root

    property Component defaultStyle: Base.GroupBoxStyle {
        padding { top: root.title === "" ? 12 : titleSize.height + 16; left: 12; right: 12; bottom: 12 }
        property FontMetrics titleSize: FontMetrics { font: root.Theme.fonts.h4Font }
        panel: Item {
            anchors.fill: parent

            Rectangle {
                id: mark

                x: 12
                anchors.verticalCenter: title.verticalCenter
                visible: root.checkable
                width: visible ? 14 : 0
                height: 14
                color: root.checked ? root.Theme.colors.selection : "transparent"
                border.width: root.__checkbox.activeFocus ? 2 : 1
                border.color: root.Theme.colors.foreground
            }

            Text {
                id: title

                x: root.checkable ? 34 : 12
                text: root.title
                textFormat: Text.PlainText
                font: root.Theme.fonts.h4Font
                color: root.Theme.colors.foreground
                opacity: root.enabled ? 1 : 0.4
            }

            Rectangle {
                anchors.fill: parent
                anchors.topMargin: title.text === "" ? 0 : title.height + 4
                visible: !root.flat
                radius: root.Theme.radius
                color: "transparent"
                border.color: Style.faint(root.Theme.colors.foreground, 0.25)
            }
        }
    }

    style: Style.getStyle("GroupBoxStyle", Theme.classnames) || defaultStyle
}
