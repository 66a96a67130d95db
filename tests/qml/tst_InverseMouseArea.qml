import QtQuick 2.9
import QtTest 1.2
import com.vedra.components 1.0

Item {
    id: root

    width: 400
    height: 300

    MouseArea { id: beneath; anchors.fill: parent }
    InverseMouseArea { id: area; x: 100; y: 100; width: 50; height: 50 }
    SignalSpy { id: outside; target: area; signalName: "pressedOutside" }
    SignalSpy { id: clicks; target: beneath; signalName: "clicked" }

    TestCase {
        name: "InverseMouseArea"
        when: windowShown

        function test_presses_data() {
            return [
                { tag: "outside", x: 90, y: 120, told: 1 },
                { tag: "inside", x: 110, y: 120, told: 0 },
                { tag: "disabled", x: 10, y: 10, told: 0, set: { enabled: false } },
                { tag: "hidden", x: 10, y: 10, told: 0, set: { visible: false } }
            ]
        }

        function test_presses(data) {
            area.enabled = true
            area.visible = true
            for (var name in data.set)
                area[name] = data.set[name]
            outside.clear()
            clicks.clear()
            mouseClick(root, data.x, data.y)
            compare(outside.count, data.told)
            compare(clicks.count, 1, "the press goes on to what lies beneath")
            if (data.told) {
                compare(outside.signalArguments[0][0], data.x - area.x)
                compare(outside.signalArguments[0][1], data.y - area.y)
            }
        }
    }
}
