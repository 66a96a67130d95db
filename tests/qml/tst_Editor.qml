import QtQuick 2.9
import QtTest 1.2
import com.vedra.components 1.0

Item {
    id: root

    width: 400
    height: 300

    Editor { id: editor; width: 200 }
    Item { id: elsewhere }
    SignalSpy { id: edited; target: editor; signalName: "edited" }

    TestCase {
        name: "Editor"
        when: windowShown

        function init() {
            editor.value = "old"
            edited.clear()
            editor.forceActiveFocus()
            editor.selectAll()
            keyClick("x")
            compare(editor.value, "old")
        }

        function test_handsItsTextOutWhenTheEditEnds() {
            keyClick(Qt.Key_Return)
            compare(editor.value, "x")
            elsewhere.forceActiveFocus()
            compare(edited.count, 1)
        }

        function test_handsItsTextOutWhenTheFocusLeaves() {
            elsewhere.forceActiveFocus()
            compare(editor.value, "x")
            compare(edited.count, 1)
        }

        function test_takesItBackOnEscape() {
            keyClick(Qt.Key_Escape)
            compare(editor.text, "old")
            compare(edited.count, 0)
        }

        function test_followsItsValue() {
            editor.value = "new"
            compare(editor.text, "new")
        }
    }
}
