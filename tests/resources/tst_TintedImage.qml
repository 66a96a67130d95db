import QtQuick 2.15
import QtTest 1.2
import com.vedra.kontrols 1.0

// One colour takes the place of a picture's own, as far as it covers, and nothing else changes.
Item {
    id: root

    width: 200
    height: 200

    Rectangle {
        id: ground
        anchors.fill: parent
        color: "black"

        TintedImage {
            id: image
            width: 64
            height: 64
        }
    }

    TestCase {
        name: "TintedImage"
        when: windowShown

        function test_colours_data() {
            return [{ tag: "plain", color: "transparent", inside: "#ffffff" },
                    { tag: "tinted", color: "#00a3da", inside: "#00a3da" },
                    { tag: "half", color: "#80ff0000", inside: "#ff7f7f" }]
        }
        function test_colours(row) {
            image.color = row.color
            image.icon = "qrc:/images/newui/Stop.svg"
            compare(image.status, Image.Ready)
            compare(image.implicitWidth, 64)
            waitForRendering(root)
            var shot = grabImage(ground)
            fuzzyCompare(shot.pixel(32, 32), row.inside, 3)
            verify(Qt.colorEqual(shot.pixel(1, 1), "black"))
        }
        function test_nothing() {
            image.icon = ""
            compare(image.status, Image.Null)
        }
    }
}
