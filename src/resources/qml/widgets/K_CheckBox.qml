import QtQuick 2.15
import com.vedra.kontrols 1.0

// A mark that follows the owner's value, whatever a click makes of it.
CheckBox {
    id: root

    property bool value

    signal edited(bool value)

    activeFocusOnPress: true
    checked: value
    onClicked: {
        var wanted = checked
        checked = Qt.binding(function() { return root.value })
        edited(wanted)
    }
    Keys.onReturnPressed: edited(!value)
    Keys.onEnterPressed: edited(!value)
    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Space
}
