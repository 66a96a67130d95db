import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import com.vedra.kontrols 1.0

Controls.Label {
    font: Theme.fonts.mainFont
    color: Theme.colors.foreground
    linkColor: Theme.colors.selection
    opacity: enabled ? 1 : 0.4
}
