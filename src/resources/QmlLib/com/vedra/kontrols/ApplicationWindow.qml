import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.ApplicationWindow {
    id: root

    property Component defaultStyle: Base.ApplicationWindowStyle {
        background: Rectangle { color: root.Theme.colors.background }
    }

    color: Theme.colors.background
    style: Style.getStyle("ApplicationWindowStyle", Theme.classnames) || defaultStyle
}
