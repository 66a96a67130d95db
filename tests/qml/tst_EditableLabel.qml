import QtQuick 2.9
import QtTest 1.2
import com.vedra.components 1.0

Item {
    id: root

    width: 400
    height: 300

    Component {
        id: label
        EditableLabel { width: 200; text: "old" }
    }
    SignalSpy { id: edited; signalName: "edited" }

    TestCase {
        name: "EditableLabel"
        when: windowShown

        function test_howAnEditEnds_data() {
            return [
                { tag: "Return takes it", end: function () { keyClick(Qt.Key_Return) }, text: "x" },
                { tag: "a click elsewhere takes it", end: function () { mouseClick(root, 300, 250) }, text: "x" },
                { tag: "a click inside goes on", end: function (item) { mouseClick(item, 100, 10) }, text: "old", editing: true },
                { tag: "Escape keeps the old", end: function () { keyClick(Qt.Key_Escape) }, text: "old" }
            ]
        }

        function test_howAnEditEnds(data) {
            var item = createTemporaryObject(label, root)
            edited.target = item
            edited.clear()
            mouseDoubleClickSequence(item, 20, 10)
            compare(item.editing, true)
            keyClick("x")
            data.end(item)
            compare(item.editing, data.editing === true)
            compare(item.text, data.text)
            compare(edited.count, data.text === "x" ? 1 : 0)
        }

        function test_returnOpensItByKeyAlone() {
            var item = createTemporaryObject(label, root)
            item.forceActiveFocus()
            keyClick(Qt.Key_Return)
            compare(item.editing, true)
        }
    }
}
