import QtQuick 2.9
import com.vedra.kontrols 1.0
import com.vedra.docking 1.0

// A bar with one button for each dock item, which shows and hides it.
Rectangle {
    id: root

    property list<DockItem> dockItems

    implicitHeight: 32
    implicitWidth: buttons.implicitWidth
    color: Theme.colors.darkerBackground

    Row {
        id: buttons

        height: parent.height

        Repeater {
            model: root.dockItems.length

            DockBarButton {
                height: buttons.height
                dockItem: root.dockItems[index]
            }
        }
    }
}
