import QtQuick 2.15
import QtQuick.Window 2.2
import com.vedra.kontrols 1.0
import com.vedra.components 1.0

// The body of a popup: a title, its content, which scrolls where the window is too low, and a row of
// buttons. Escape closes it, as does Return where nothing in it wants that key.
FocusScope {
    id: root

    property string title
    property real panelWidth: 520
    // Of the whole panel; 0 takes what the content needs, up to a limit.
    property real panelHeight: 0
    readonly property real maximumHeight: 600
    property bool closesOnReturn: false
    // A panel with something to take back says here what Escape means to it.
    property var dismiss: close

    default property alias content: body.data
    property alias buttons: buttonRow.data

    readonly property real available: Window.height > 0 ? Window.height - 60 : 400
    readonly property real chrome: header.height + (footer.visible ? footer.height : 20) + 10
    readonly property real wanted: panelHeight > 0
        ? panelHeight : Math.min(maximumHeight, chrome + body.implicitHeight)

    property bool opened: false

    signal close()
    // The keys are the panel's for the first time: what wants them may take them.
    signal focusGiven()

    onActiveFocusChanged: {
        if (!activeFocus || opened)
            return
        opened = true
        focusGiven()
    }

    width: Math.min(panelWidth, (Window.width > 0 ? Window.width : 640) - 40)
    height: Math.min(wanted, available)

    Shortcut {
        sequence: "Escape"
        onActivated: root.dismiss()
    }
    Keys.onReturnPressed: {
        if (closesOnReturn)
            close()
        else
            event.accepted = false
    }
    Keys.onEnterPressed: {
        if (closesOnReturn)
            close()
        else
            event.accepted = false
    }

    // Content without a control of its own is read by the keys that move a page.
    Keys.onPressed: {
        var page = scroll.flickableItem.height - 40
        var ways = {}
        ways[Qt.Key_Up] = -40
        ways[Qt.Key_Down] = 40
        ways[Qt.Key_PageUp] = -page
        ways[Qt.Key_PageDown] = page
        event.accepted = event.key in ways
        if (event.accepted)
            scrollBy(ways[event.key])
    }

    function scrollBy(pixels) {
        var flickable = scroll.flickableItem
        var end = Math.max(0, flickable.contentHeight - flickable.height)
        flickable.contentY = Math.max(0, Math.min(end, flickable.contentY + pixels))
    }

    function reveal(item) {
        for (var parent = item; parent && parent !== body; parent = parent.parent) {}
        if (!parent)
            return
        var flickable = scroll.flickableItem
        var top = item.mapToItem(body, 0, 0).y
        if (top < flickable.contentY)
            flickable.contentY = top
        else if (top + item.height > flickable.contentY + flickable.height)
            flickable.contentY = top + item.height - flickable.height
    }

    Connections {
        target: root.Window.window
        function onActiveFocusItemChanged() { root.reveal(root.Window.window.activeFocusItem) }
    }

    // A click on the panel is no click on what lies behind it.
    MouseArea {
        anchors.fill: parent
        hoverEnabled: true
        onWheel: wheel.accepted = true
    }

    Rectangle {
        anchors.fill: parent
        color: "#2a2627"
        border { width: 1; color: Qt.rgba(1, 1, 1, 0.12) }

        Rectangle {
            anchors { left: parent.left; right: parent.right; top: parent.top }
            height: 3
            color: "#00A3DA"
        }
    }

    Item {
        id: header
        anchors { left: parent.left; right: parent.right; top: parent.top }
        height: root.title === "" ? 20 : 60

        LabelH2 {
            anchors {
                left: parent.left
                right: parent.right
                margins: 20
                verticalCenter: parent.verticalCenter
            }
            text: root.title
            textFormat: Text.PlainText
            elide: Text.ElideRight
        }
    }

    ScrollView {
        id: scroll
        objectName: "popupScroll"
        anchors {
            left: parent.left
            leftMargin: 20
            right: parent.right
            rightMargin: 8
            top: header.bottom
            bottom: footer.visible ? footer.top : parent.bottom
            bottomMargin: footer.visible ? 0 : 20
        }
        horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff

        Column {
            id: body
            width: scroll.width - 14
            spacing: 10
        }
    }

    Item {
        id: footer
        anchors { left: parent.left; right: parent.right; bottom: parent.bottom }
        height: 66
        visible: buttonRow.children.length > 0

        Row {
            id: buttonRow
            anchors { right: parent.right; rightMargin: 20; verticalCenter: parent.verticalCenter }
            spacing: 10
        }
    }
}
