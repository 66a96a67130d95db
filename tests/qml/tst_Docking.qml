import QtQuick 2.9
import QtTest 1.2
import com.vedra.docking 1.0

Item {
    id: root

    width: 400
    height: 300

    DockArea {
        id: area

        width: 400
        height: 200

        DockItem { id: left; title: "Left"; edge: DockItem.Left; extent: 100 }
        DockItem { id: centre; title: "Centre" }
    }
    DockBar { id: bar; y: 250; dockItems: [left, centre] }

    TestCase {
        name: "Docking"
        when: windowShown

        function test_aButtonShowsAndHidesItsItemAndTheRestIsLaidOutAnew() {
            tryCompare(centre, "x", 100)
            compare([left.width, left.height], [100, 200])
            compare(centre.width, 300)
            for (var i = 0; i < 2; ++i) {
                mouseClick(bar, 10, 10)
                compare(left.visible, false)
                tryCompare(centre, "width", 400)
                mouseClick(bar, 10, 10)
                compare(left.visible, true)
                tryCompare(centre, "width", 300)
            }
            left.edge = DockItem.Bottom
            tryCompare(centre, "height", 100)
            left.extent = 50
            tryCompare(centre, "height", 150)
            area.width = 200
            tryCompare(centre, "width", 200)
        }
    }
}
