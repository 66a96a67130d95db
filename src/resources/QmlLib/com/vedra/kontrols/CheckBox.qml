import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.CheckBox {
    id: root

    property font font: Theme.fonts.mainFont

    property Component defaultStyle: Base.CheckBoxStyle {
        label: Text {
            text: root.text
            textFormat: Text.PlainText
            font: root.font
            color: root.Theme.colors.foreground
            opacity: root.enabled ? 1 : 0.4
        }
    }

    style: Style.getStyle("CheckBoxStyle", Theme.classnames) || defaultStyle
}
