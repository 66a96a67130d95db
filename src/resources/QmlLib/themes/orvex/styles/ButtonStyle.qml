import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// A framed button with text, an icon, or both.
Base.ButtonStyle {
    id: root

    padding { top: 2; bottom: 2; left: 12; right: 12 }
    background: Rectangle {
        implicitWidth: 100
        implicitHeight: 25
        radius: control.Theme.radius
        color: control.hovered ? control.backgroundColorHovered : control.backgroundColor
        border.width: control.activeFocus ? 2 : control.backgroundColor.a > 0 ? 0 : 1
        border.color: control.Theme.colors.foreground
        opacity: control.enabled ? 1 : 0.4

        // Lets a button without a hover colour of its own answer the pointer.
        Rectangle {
            anchors.fill: parent
            radius: parent.radius
            color: control.checked ? control.Theme.colors.selection
                                   : control.Theme.colors.foreground
            opacity: control.pressed ? 0.25
                   : control.checked ? 0.8
                   : control.hovered && Qt.colorEqual(control.backgroundColor,
                                                      control.backgroundColorHovered) ? 0.12 : 0

            Behavior on opacity { NumberAnimation { duration: 100 } }
        }
    }
    label: ButtonContent {
        iconSource: control.iconSource
        iconColor: control.overlayColor
        text: control.text
        font: control.scaledFont
        color: control.Theme.colors.foreground
        opacity: control.enabled ? 1 : 0.4
    }
}
