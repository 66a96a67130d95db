import QtQuick 2.9
import com.vedra.kontrols 1.0

// One glyph of the icon font: give it a name of VedraIcons.js as text.
Label {
    // The theme brings the font; text laid out before that would keep its empty boxes.
    font.family: ThemeManager.current.title !== "" ? "VedraIcons" : ""
    font.weight: Font.Normal
    font.letterSpacing: 0
    font.pixelSize: 24
    font.capitalization: Font.MixedCase
    textFormat: Text.PlainText
}
