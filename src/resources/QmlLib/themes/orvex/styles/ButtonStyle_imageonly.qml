import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// An icon without a frame; the text of the button serves its tooltip only.
Base.ButtonStyle {
    padding { top: 0; bottom: 0; left: 0; right: 0 }
    background: Rectangle {
        implicitWidth: 30
        implicitHeight: 30
        radius: 3
        color: control.hovered ? control.backgroundColorHovered : control.backgroundColor
        border.width: control.activeFocus ? 2 : 0
        border.color: control.Theme.colors.foreground
    }
    label: TintedImage {
        icon: control.iconSource
        color: control.overlayColor
        opacity: !control.enabled ? 0.3 : control.pressed ? 0.6 : control.hovered ? 1 : 0.85

        Behavior on opacity { NumberAnimation { duration: 100 } }
    }
}
