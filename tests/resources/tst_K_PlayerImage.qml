import QtQuick 2.15
import QtTest 1.2
import "qrc:/qml"

// Feedback over the video comes at once and goes by itself, and a new one takes the place of what
// is still going.
Item {
    id: root

    width: 400
    height: 300

    K_PlayerImage {
        id: image
        anchors.fill: parent
    }

    TestCase {
        name: "K_PlayerImage"
        when: windowShown

        function test_textsAndPicturesComeAndGo_data() {
            return [{ tag: "plate", show: function() { image.onShowPlayerText("01:01") } },
                    { tag: "picture",
                      show: function() { image.onShowPlayerImage("qrc:/images/newui/Play.svg") } }]
        }
        function test_textsAndPicturesComeAndGo(row) {
            var item = findChild(image, row.tag)
            compare(item.opacity, 0)
            row.show()
            compare(item.opacity, 1)
            tryVerify(function() { return item.opacity < 1 })
            row.show()
            compare(item.opacity, 1)
            tryCompare(item, "scale", 1)
            tryCompare(item, "opacity", 0)
        }
    }
}
