import QtQuick 2.9
import com.vedra.kontrols 1.0

// A picture to choose among several: an exclusive group or the owner's "checked" decides which
// one is on.
Button {
    id: root

    property color checkedColor: Theme.colors.selection

    implicitWidth: 60
    implicitHeight: 60
    checkable: true
    Theme.classnames: ["imageonly"]
    overlayColor: checked ? checkedColor : hovered ? Theme.colors.foreground
                                                   : Theme.colors.darkerForeground
    Accessible.role: Accessible.RadioButton
    Accessible.name: tooltip
}
