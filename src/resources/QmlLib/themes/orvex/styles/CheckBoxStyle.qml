import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Base.CheckBoxStyle {
    spacing: 10
    indicator: Rectangle {
        readonly property bool marked: control.checkedState !== Qt.Unchecked

        implicitWidth: 18
        implicitHeight: 18
        radius: 2
        color: marked ? control.Theme.colors.selection
             : control.hovered ? control.Theme.colors.lighterBackground : "transparent"
        border.width: control.activeFocus ? 2 : 1
        border.color: marked && !control.activeFocus ? control.Theme.colors.selection
                                                     : control.Theme.colors.foreground
        opacity: control.enabled ? 1 : 0.4

        TintedImage {
            anchors.fill: parent
            anchors.margins: 3
            visible: control.checkedState === Qt.Checked
            icon: "qrc:/QmlLib/com/vedra/kontrols/images/check.svg"
        }

        Rectangle {
            anchors.centerIn: parent
            visible: control.checkedState === Qt.PartiallyChecked
            width: 8
            height: 2
        }
    }
    label: Text {
        text: control.text
        textFormat: Text.PlainText
        font: control.font
        color: control.Theme.colors.foreground
        opacity: control.enabled ? 1 : 0.4
        elide: Text.ElideRight
    }
}
