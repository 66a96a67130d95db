import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Base.TextFieldStyle {
    padding { top: 4; bottom: 4; left: 8; right: 8 }
    font: Style.asWritten(control.Theme.fonts.mainFont)
    textColor: control.enabled ? control.Theme.colors.foreground
                               : Style.faint(control.Theme.colors.foreground, 0.4)
    placeholderTextColor: control.Theme.colors.darkerForeground
    selectionColor: control.Theme.colors.selection
    selectedTextColor: "white"
    background: Rectangle {
        implicitWidth: 160
        implicitHeight: 30
        radius: control.Theme.radius
        color: control.Theme.colors.darkerBackground
        border.width: control.activeFocus ? 2 : 1
        border.color: control.activeFocus ? control.Theme.colors.selection
                    : control.hovered ? control.Theme.colors.foreground
                                      : control.Theme.colors.darkerForeground
        opacity: control.enabled ? 1 : 0.4
    }
}
