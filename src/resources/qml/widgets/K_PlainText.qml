import QtQuick 2.15
import com.vedra.kontrols 1.0

// Running text in the theme's typeface, without the capitals that suit labels alone.
Text {
    font.family: Theme.fonts.mainFont.family
    font.pixelSize: 14
    color: Qt.rgba(1, 1, 1, 0.78)
    linkColor: Theme.colors.selection
    textFormat: Text.PlainText
    wrapMode: Text.Wrap

    // Texts come from servers and files too: nothing but a web page is opened.
    onLinkActivated: {
        if (/^https?:/.test(link))
            Qt.openUrlExternally(link)
    }

    MouseArea {
        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        cursorShape: parent.hoveredLink !== "" ? Qt.PointingHandCursor : Qt.ArrowCursor
    }
}
