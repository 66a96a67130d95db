import QtQuick 2.15
import com.vedra.kontrols 1.0

// The four numbers of an address, each 0 to 255; what is left empty counts as 0.
Row {
    id: root

    property string address

    readonly property var numbers: address.split(".")

    signal edited(string address)

    function numberOf(text) { return Math.max(0, Math.min(255, parseInt(text, 10) || 0)) }

    function compose() {
        var parts = []
        for (var i = 0; i < 4; ++i)
            parts.push(numberOf(fields.itemAt(i).text))
        var composed = parts.join(".")
        if (composed !== address)
            edited(composed)
        for (i = 0; i < 4; ++i)
            fields.itemAt(i).showNumber()
    }

    spacing: 4

    Repeater {
        id: fields
        model: 4

        TextField {
            id: field

            // A store may hold anything.
            function showNumber() { text = root.numberOf(root.numbers[index]) }

            objectName: "ip_" + index
            width: 58
            horizontalAlignment: TextInput.AlignHCenter
            inputMethodHints: Qt.ImhDigitsOnly
            validator: RegExpValidator { regExp: /^(25[0-5]|2[0-4][0-9]|1?[0-9]{0,2})$/ }
            Accessible.name: qsTr("Number %1 of the address").arg(index + 1)
            onEditingFinished: root.compose()
            // A field that the validator finds unfinished, an empty one, ends no edit by itself.
            onActiveFocusChanged: {
                if (activeFocus)
                    selectAll()
                else
                    root.compose()
            }
            Component.onCompleted: showNumber()

            Connections {
                target: root
                function onAddressChanged() { field.showNumber() }
            }
        }
    }
}
