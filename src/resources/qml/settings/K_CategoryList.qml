import QtQuick 2.15
import com.vedra.kontrols 1.0

// The categories { name, id }, one of them current; the arrow keys go through them.
ListView {
    id: root

    // Whether the category with an id is out of reach.
    property var isLocked

    activeFocusOnTab: true
    interactive: contentHeight > height
    keyNavigationEnabled: true // also where nothing is to scroll
    clip: true
    Accessible.role: Accessible.List
    Accessible.name: qsTr("Categories")

    delegate: Item {
        id: entry

        readonly property bool current: ListView.isCurrentItem

        objectName: "category_" + modelData.id
        width: root.width
        height: 40
        Accessible.role: Accessible.ListItem
        Accessible.name: modelData.name

        Rectangle {
            anchors.fill: parent
            color: Qt.rgba(1, 1, 1, entry.current ? 0.07 : pointer.containsMouse ? 0.04 : 0)
            border {
                width: entry.current && root.activeFocus ? 2 : 0
                color: Theme.colors.foreground
            }
        }
        Rectangle {
            width: 4
            height: parent.height
            visible: entry.current
            color: "#00a2dd"
        }
        Label {
            anchors {
                left: parent.left
                leftMargin: 14
                right: parent.right
                rightMargin: 4
                verticalCenter: parent.verticalCenter
            }
            text: modelData.name
            textFormat: Text.PlainText
            elide: Text.ElideRight
            fontSizeMode: Text.HorizontalFit
            minimumPointSize: 8
            opacity: root.isLocked(modelData.id) ? 0.2 : 1
        }
        MouseArea {
            id: pointer
            anchors.fill: parent
            hoverEnabled: true
            onClicked: {
                root.forceActiveFocus()
                root.currentIndex = index
            }
        }
    }
}
