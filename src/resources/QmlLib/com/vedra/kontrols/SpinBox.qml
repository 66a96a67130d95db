import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.SpinBox {
    id: root

    property Component defaultStyle: Base.SpinBoxStyle {
        font: Style.asWritten(root.Theme.fonts.mainFont)
        textColor: root.Theme.colors.foreground
        selectionColor: root.Theme.colors.selection
        selectedTextColor: "white"
        padding { top: 2; bottom: 2; left: 8; right: 26 }
        background: Rectangle {
            implicitWidth: 90
            implicitHeight: 28
            radius: root.Theme.radius
            color: root.Theme.colors.darkerBackground
            border.width: root.activeFocus ? 2 : 1
            border.color: root.activeFocus ? root.Theme.colors.selection
                                           : root.Theme.colors.darkerForeground
        }
        incrementControl: Item {
            implicitWidth: 22

            Chevron {
                anchors.centerIn: parent
                width: 8
                height: 8
                rotation: 180
                color: styleData.upHovered ? root.Theme.colors.selection
                                           : root.Theme.colors.foreground
            }
        }
        decrementControl: Item {
            implicitWidth: 22

            Chevron {
                anchors.centerIn: parent
                width: 8
                height: 8
                color: styleData.downHovered ? root.Theme.colors.selection
                                             : root.Theme.colors.foreground
            }
        }
    }

    opacity: enabled ? 1 : 0.4
    style: Style.getStyle("SpinBoxStyle", Theme.classnames) || defaultStyle
}
