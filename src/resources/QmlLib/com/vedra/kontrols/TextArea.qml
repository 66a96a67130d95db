import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.TextArea {
    id: root

    property Component defaultStyle: Base.TextAreaStyle {
        font: Style.asWritten(root.Theme.fonts.mainFont)
        textColor: root.Theme.colors.foreground
        backgroundColor: root.Theme.colors.darkerBackground
        selectionColor: root.Theme.colors.selection
        selectedTextColor: "white"
        textMargin: 6
        transientScrollBars: true
        frame: Rectangle {
            radius: root.Theme.radius
            color: "transparent"
            border.width: root.activeFocus ? 2 : 1
            border.color: root.activeFocus ? root.Theme.colors.selection
                                           : root.Theme.colors.darkerForeground
        }
        handle: ScrollHandle { control: root }
        corner: Item { }
        scrollBarBackground: Item { implicitWidth: 10; implicitHeight: 10 }
        incrementControl: Item { }
        decrementControl: Item { }
    }

    opacity: enabled ? 1 : 0.4
    style: Style.getStyle("TextAreaStyle", Theme.classnames) || defaultStyle
}
