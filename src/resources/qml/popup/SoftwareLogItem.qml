import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

// One section of the software log.
Column {
    id: root

    property string title
    property string text
    property string link // rich text

    width: parent ? parent.width : 0
    spacing: 6

    Label {
        objectName: "title"
        width: parent.width
        text: root.title
        textFormat: Text.PlainText
        font: Qt.font({
            family: Theme.fonts.mainFont.family,
            pixelSize: 15,
            underline: true,
            capitalization: Font.AllUppercase
        })
    }
    K_PlainText {
        objectName: "text"
        width: parent.width
        text: root.text || qsTr("Nothing to report.")
        wrapMode: Text.WrapAtWordBoundaryOrAnywhere
    }
    K_RichText {
        objectName: "link"
        width: parent.width
        visible: root.link !== ""
        markup: root.link
    }
}
