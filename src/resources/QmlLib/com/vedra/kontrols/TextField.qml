import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.TextField {
    id: root

    property Component defaultStyle: Base.TextFieldStyle {
        font: Style.asWritten(root.Theme.fonts.mainFont)
    }

    style: Style.getStyle("TextFieldStyle", Theme.classnames) || defaultStyle
}
