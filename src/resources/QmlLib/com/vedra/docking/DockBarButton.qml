import QtQuick 2.9
import com.vedra.kontrols 1.0
import com.vedra.docking 1.0

// Shows and hides one dock item; it is on while the item is there.
ToolButton {
    property DockItem dockItem: null

    text: dockItem ? dockItem.title : ""
    checkable: true
    checked: dockItem !== null && dockItem.visible
    onClicked: {
        dockItem.visible = !dockItem.visible
        // The click has replaced the binding by a value of its own.
        checked = Qt.binding(function () { return dockItem !== null && dockItem.visible })
    }
}
