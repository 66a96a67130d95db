import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// A heading that can be edited in its place: a line appears under it when it is touched.
Base.TextFieldStyle {
    padding { top: 2; bottom: 4; left: 0; right: 0 }
    font: Style.asWritten(control.Theme.fonts.h2Font)
    textColor: control.Theme.colors.foreground
    placeholderTextColor: control.Theme.colors.darkerForeground
    selectionColor: control.Theme.colors.selection
    selectedTextColor: "white"
    background: Item {
        implicitWidth: 160
        implicitHeight: 32

        Rectangle {
            anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
            height: control.activeFocus ? 2 : 1
            visible: control.activeFocus || control.hovered
            color: control.activeFocus ? control.Theme.colors.selection
                                       : control.Theme.colors.darkerForeground
        }
    }
}
