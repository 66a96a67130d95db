import QtQuick 2.9

// Icon and text of a button, centred; each takes no room when it is missing.
Item {
    id: root

    property url iconSource
    property color iconColor: "transparent"
    property real iconSize: text !== "" ? 20 : Math.max(20, Math.min(width, height))
    property alias text: label.text
    property alias font: label.font
    property alias color: label.color

    readonly property bool hasIcon: iconSource != ""

    implicitWidth: label.implicitWidth + (hasIcon ? 20 + row.spacing : 0)
    implicitHeight: Math.max(label.implicitHeight, hasIcon ? 20 : 0)
    baselineOffset: row.y + label.y + label.baselineOffset

    Row {
        id: row

        anchors.centerIn: parent
        height: parent.height
        spacing: root.hasIcon && label.text !== "" ? 8 : 0

        TintedImage {
            anchors.verticalCenter: parent.verticalCenter
            visible: root.hasIcon
            width: visible ? Math.min(root.iconSize, root.width) : 0
            height: visible ? Math.min(root.iconSize, root.height) : 0
            icon: root.iconSource
            color: root.iconColor
        }

        Text {
            id: label

            anchors.verticalCenter: parent.verticalCenter
            width: Math.min(implicitWidth,
                            root.width - (root.hasIcon ? root.iconSize + row.spacing : 0))
            visible: text !== ""
            elide: Text.ElideRight
            textFormat: Text.PlainText
        }
    }
}
