import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.ScrollView {
    property Component defaultStyle: Base.ScrollViewStyle { }

    style: Style.getStyle("ScrollViewStyle", Theme.classnames) || defaultStyle
}
