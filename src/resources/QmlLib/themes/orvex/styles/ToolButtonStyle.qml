import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// Class names: "light" and "dark" fix its colours whatever the theme, "ddleft" puts the arrow of
// its menu on the left, "defaultText" shows the text as it is written.
Base.ButtonStyle {
    id: root

    readonly property bool classed: control.Theme.classnames.length > 0
    readonly property bool light: classed && control.Theme.hasClassname("light")
    readonly property bool dark: classed && control.Theme.hasClassname("dark")
    readonly property bool arrowLeft: classed && control.Theme.hasClassname("ddleft")
    readonly property bool plainText: classed && control.Theme.hasClassname("defaultText")
    readonly property color inkColor: light ? "#141414" : dark ? "white"
                                                               : control.Theme.colors.foreground
    readonly property bool on: control.pressed || control.checkable && control.checked
    readonly property real arrowRoom: control.menu ? 16 : 0

    padding {
        top: 4
        bottom: 4
        left: 6 + (arrowLeft ? arrowRoom : 0)
        right: 6 + (arrowLeft ? 0 : arrowRoom)
    }
    background: Rectangle {
        implicitWidth: 36
        implicitHeight: 36
        radius: control.Theme.radius
        color: root.on ? control.Theme.colors.selection
             : control.hovered && control.enabled ? Style.faint(root.inkColor, 0.14)
                                                  : "transparent"
        border.width: control.activeFocus ? 2 : 0
        border.color: root.inkColor

        Chevron {
            anchors.verticalCenter: parent.verticalCenter
            x: root.arrowLeft ? 6 : parent.width - width - 6
            visible: control.menu !== null
            width: 8
            height: 8
            color: root.inkColor
        }
    }
    label: ButtonContent {
        iconSource: control.iconSource
        iconColor: root.light || root.dark ? root.inkColor : control.overlayColor
        text: control.iconSource == "" ? control.text : ""
        font: !root.plainText ? control.font
            : Style.asWritten(control.font)
        color: root.inkColor
        opacity: control.enabled ? 1 : 0.4
    }
}
