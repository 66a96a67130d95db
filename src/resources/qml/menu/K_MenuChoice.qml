import com.vedra.kontrols 1.0

// An item that is checked while something holds elsewhere, whatever a click makes of its own mark.
MenuItem {
    id: root

    property bool chosen

    signal choose()

    checkable: true
    checked: chosen
    onTriggered: {
        choose()
        checked = Qt.binding(function() { return root.chosen })
    }
}
