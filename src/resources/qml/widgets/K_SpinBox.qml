import QtQuick 2.15
import com.vedra.components 1.0

// A whole number of the owner's within two limits.
HorizontalSpinBox {
    id: root

    property int value
    property string name

    signal edited(int value)

    implicitWidth: 150
    implicitHeight: 30
    Accessible.name: name
    onValueEdited: {
        if (!isNaN(value) && value !== root.value)
            root.edited(value)
    }

    Binding {
        target: root
        property: "numericValue"
        value: root.value
    }
}
