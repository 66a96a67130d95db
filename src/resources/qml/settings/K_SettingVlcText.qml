import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

// A list of texts for libvlc, as the user has it and as it is by default. An edit counts when the
// focus leaves the text.
K_SettingRow {
    id: root

    property string kind // "instance" or "media"

    signal edited(string text)

    Column {
        width: parent.width
        spacing: 4

        K_PlainText { text: qsTr("Custom") }
        TextArea {
            id: custom

            property string stored: kGlobalObject.getVlcCmdInfos(true, root.kind)

            objectName: "custom"
            width: parent.width
            height: 90
            font: Qt.font({ family: "monospace", pixelSize: 13 })
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            tabChangesFocus: true
            text: stored
            Accessible.name: root.label
            onActiveFocusChanged: {
                if (activeFocus || text === stored)
                    return
                stored = text
                kGlobalObject.setVlcCustomCmd(root.kind, text)
                root.edited(text)
            }
        }

        K_PlainText { text: qsTr("Default") }
        TextArea {
            objectName: "default"
            Accessible.name: qsTr("%1, default").arg(root.label)
            width: parent.width
            height: 70
            font: Qt.font({ family: "monospace", pixelSize: 13 })
            textFormat: TextEdit.PlainText
            wrapMode: TextEdit.WrapAnywhere
            tabChangesFocus: true
            readOnly: true
            opacity: 0.6
            text: kGlobalObject.getVlcCmdInfos(false, root.kind)
        }
    }
}
