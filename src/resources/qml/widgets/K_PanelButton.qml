import QtQuick 2.15
import com.vedra.kontrols 1.0

// A button of a panel, pressed by Space and Return alike. The main one stands out by its colour.
Button {
    property bool primary: false

    implicitHeight: 34
    activeFocusOnPress: true
    backgroundColor: primary ? "#00A3DA" : "#3a3536"
    backgroundColorHovered: primary ? "#33b8e4" : "#4b4546"

    Keys.onReturnPressed: clicked()
    Keys.onEnterPressed: clicked()
    // Space is also the key of "Pause".
    Keys.onShortcutOverride: event.accepted = event.key === Qt.Key_Space
}
