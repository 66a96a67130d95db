import QtQuick 2.9
import QtTest 1.2
import com.vedra.components 1.0

Item {
    id: root

    width: 400
    height: 300

    FocusScope {
        id: owner

        property int bubbled: 0

        anchors.fill: parent
        Keys.onPressed: if (event.key === Qt.Key_Left || event.key === Qt.Key_Right) ++bubbled

        Component {
            id: box
            HorizontalSpinBox { width: 200 }
        }
    }
    Item { id: elsewhere; focus: false }
    SignalSpy { id: edited; signalName: "valueEdited" }

    TestCase {
        id: test

        name: "HorizontalSpinBox"
        when: windowShown

        function make(properties) {
            var item = createTemporaryObject(box, owner, properties)
            edited.target = item
            edited.clear()
            return item
        }

        function type(item, text) {
            item.forceActiveFocus()
            keyClick(Qt.Key_A, Qt.ControlModifier)
            keyClick(Qt.Key_Delete)
            for (var i = 0; i < text.length; ++i)
                keyClick(text[i])
        }

        function text(item) { return findChild(item, "input").text }

        function test_steps_data() {
            var circle = { minimumValue: -180, maximumValue: 180, loopMinMax: true }
            return [
                { tag: "up", start: 1, step: "increase", value: 2 },
                { tag: "down", start: 1, step: "decrease", value: 0 },
                { tag: "by its size", set: { stepSize: 0.1, decimals: 2 }, start: 0.2, step: "increase", value: 0.3 },
                { tag: "stops at the end", set: { maximumValue: 5 }, start: 4.5, step: "increase", value: 5 },
                { tag: "an end between decimals", set: { maximumValue: 2.25 }, start: 2, step: "increase", value: 2.25 },
                { tag: "maximum to minimum", set: circle, start: 180, step: "increase", value: -180 },
                { tag: "minimum to maximum", set: circle, start: -180, step: "decrease", value: 180 },
                { tag: "no ends to join", set: { loopMinMax: true }, start: 1e6, step: "increase", value: 1000001 },
                { tag: "from no number", start: NaN, step: "increase", value: 1 }
            ]
        }

        function test_steps(data) {
            var item = make(data.set || {})
            item.numericValue = data.start
            item[data.step]()
            compare(item.numericValue, data.value)
            compare(edited.count, 1)
            compare(edited.signalArguments[0][0], data.value)
        }

        function test_typing_data() {
            return [
                { tag: "number", typed: "42", value: 42, shown: "42" },
                { tag: "negative", typed: "-7", value: -7, shown: "-7" },
                { tag: "comma", typed: "1,25", value: 1.25, shown: "1.25", set: { decimals: 2 } },
                { tag: "decimals cut", typed: "1.26", value: 1.3, shown: "1.3", set: { decimals: 1 } },
                { tag: "too large", typed: "500", value: 100, shown: "100", set: { maximumValue: 100 } },
                { tag: "held, not looped", typed: "500", value: 100, shown: "100",
                  set: { minimumValue: 0, maximumValue: 100, loopMinMax: true } },
                { tag: "with its suffix", typed: "12 ms", value: 12, shown: "12", set: { suffix: " ms" } },
                { tag: "letters", typed: "abc", value: 5, shown: "5", told: NaN },
                { tag: "nothing", typed: "", value: 5, shown: "5", told: NaN },
                { tag: "endless", typed: "1e999", value: 5, shown: "5", told: NaN },
                { tag: "no minus zero", typed: "-0.3", value: 0, shown: "0" }
            ]
        }

        function test_typing(data) {
            var item = make(data.set || {})
            item.numericValue = 5
            type(item, data.typed)
            compare(item.numericValue, 5, "not before the edit ends")
            keyClick(Qt.Key_Return)
            compare(item.numericValue, data.value)
            compare(text(item), data.shown)
            compare(edited.count, 1)
            var told = edited.signalArguments[0][0]
            if (data.told === undefined)
                compare(told, data.value)
            else
                verify(isNaN(told))
            keyClick(Qt.Key_Return)
            compare(edited.count, 1, "nothing new")
        }

        function test_theEditEndsWithTheFocusAndEscapeTakesItBack() {
            var item = make({ numericValue: 5 })
            type(item, "8")
            verify(item.textFocus)
            elsewhere.forceActiveFocus()
            verify(!item.textFocus)
            compare(item.numericValue, 8)
            type(item, "9")
            keyClick(Qt.Key_Escape)
            compare(item.numericValue, 8)
            compare(text(item), "8")
        }

        function test_anotherValueDoesNotDisturbTyping() {
            var item = make({ numericValue: 5 })
            type(item, "8")
            item.numericValue = 6
            compare(text(item), "8")
            keyClick(Qt.Key_Return)
            compare(item.numericValue, 8)
            item.numericValue = 7
            compare(text(item), "7")
        }

        function test_keys() {
            var item = make({ numericValue: 5 })
            var seen = []
            item.keyPressed.connect(function (event) {
                seen.push(event.key)
                if (event.key === Qt.Key_H)
                    event.accepted = true
            })
            item.forceActiveFocus()
            keyClick(Qt.Key_Up)
            compare(item.numericValue, 6)
            keyClick(Qt.Key_Down)
            keyClick(Qt.Key_Down)
            compare(item.numericValue, 4)
            keyClick("h")
            compare(text(item), "4", "a key that the owner took writes nothing")
            compare(seen, [Qt.Key_Up, Qt.Key_Down, Qt.Key_Down, Qt.Key_H])
        }

        function test_leftAndRightAtTheEndOfTheText_data() {
            return [{ tag: "kept", propagate: false, bubbled: 0 },
                    { tag: "handed on", propagate: true, bubbled: 2 }]
        }

        function test_leftAndRightAtTheEndOfTheText(data) {
            var item = make({ numericValue: 5, propagateLeftRightArrowEvent: data.propagate })
            item.forceActiveFocus()
            keyClick(Qt.Key_Home)
            owner.bubbled = 0
            keyClick(Qt.Key_Left)
            keyClick(Qt.Key_End)
            keyClick(Qt.Key_Right)
            compare(owner.bubbled, data.bubbled)
        }

        function test_wheel() {
            var item = make({ numericValue: 0, stepSize: 3 })
            compare(item.wheelStepSize, 6)
            mouseWheel(item, 100, 10, 0, 120)
            compare(item.numericValue, 6)
            mouseWheel(item, 100, 10, 0, -240)
            compare(item.numericValue, -6)
            mouseWheel(item, 100, 10, 0, 60)
            compare(item.numericValue, -6, "half a notch is not yet a step")
            mouseWheel(item, 100, 10, 0, 60)
            compare(item.numericValue, 0)
        }

        function test_arrowsStepAndRepeatWhileHeld() {
            var item = make({ numericValue: 0, repeatInterval: 5 })
            var increase = findChild(item, "increase")
            mouseClick(increase)
            compare(item.numericValue, 1)
            mouseClick(findChild(item, "decrease"))
            compare(item.numericValue, 0)
            mousePress(increase)
            tryVerify(function () { return item.numericValue > 4 })
            mouseRelease(increase)
            var after = item.numericValue
            wait(50)
            compare(item.numericValue, after)

            item.repeat = false
            mousePress(increase)
            wait(400)
            mouseRelease(increase)
            compare(item.numericValue, after + 1)
        }

        function test_disabledItDoesNothing() {
            var item = make({ numericValue: 5, enabled: false })
            mouseClick(findChild(item, "increase"))
            mouseWheel(item, 100, 10, 0, 120)
            compare(item.numericValue, 5)
        }
    }
}
