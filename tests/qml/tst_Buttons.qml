import QtQuick 2.9
import QtTest 1.2
import com.vedra.kontrols 1.0
import com.vedra.components 1.0

Item {
    id: root

    width: 400
    height: 300

    Button { id: button; text: "text" }
    LabelIconButton { id: glyph; y: 50; text: "x" }
    ExclusiveGroup { id: group }
    Row {
        y: 100
        RadioButtonImage { id: first; exclusiveGroup: group; checked: true }
        RadioButtonImage { id: second; exclusiveGroup: group }
    }
    SignalSpy { id: glyphClicks; target: glyph; signalName: "clicked" }

    TestCase {
        name: "Buttons"
        when: windowShown

        function test_defaultsOfAButton() {
            compare(button.font, button.Theme.fonts.mainFont)
            verify(Qt.colorEqual(button.backgroundColor, "transparent"))
            verify(Qt.colorEqual(button.overlayColor, "white"))
            compare(button.fontSizeFactor, 1)
            button.backgroundColor = "#666666"
            verify(Qt.colorEqual(button.backgroundColorHovered, "#666666"))
            button.fontSizeFactor = 2
            compare(button.scaledFont.pointSize, 2 * button.font.pointSize)
        }

        function test_theDefaultStyleShowsFocus() {
            button.style = button.defaultStyle
            compare(button.implicitWidth, 100)
            compare(button.implicitHeight >= 25, true)
            var face = findFace(button)
            compare(face.border.width, 1)
            button.forceActiveFocus()
            compare(face.border.width, 2)
        }

        function findFace(item) {
            for (var i = 0; i < item.children.length; ++i) {
                var child = item.children[i]
                var face = child.border !== undefined ? child : findFace(child)
                if (face)
                    return face
            }
            return null
        }

        function test_aGlyphIsClickedByPointerAndKey() {
            glyphClicks.clear()
            mouseClick(glyph)
            compare(glyphClicks.count, 1)
            glyph.forceActiveFocus()
            keyClick(Qt.Key_Space)
            keyClick(Qt.Key_Return)
            compare(glyphClicks.count, 3)
        }

        function test_oneOfSeveralPicturesIsOn() {
            mouseClick(second)
            compare([first.checked, second.checked], [false, true])
            mouseClick(second)
            compare(second.checked, true)
            mouseClick(first)
            compare([first.checked, second.checked], [true, false])
        }
    }
}
