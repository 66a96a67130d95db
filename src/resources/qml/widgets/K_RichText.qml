import QtQuick 2.15
import com.vedra.kontrols 1.0

// Running text with markup; its links open in the browser.
K_PlainText {
    property string markup

    textFormat: Text.RichText
    text: "<style>a { color: " + Theme.colors.selection + " }</style>" + markup
}
