import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.ComboBox {
    id: root

    property font font: Theme.fonts.mainFont

    property Component defaultStyle: Base.ComboBoxStyle {
        font: root.font
    }

    activeFocusOnPress: true
    style: Style.getStyle("ComboBoxStyle", Theme.classnames) || defaultStyle
}
