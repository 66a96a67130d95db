import QtQuick 2.15
import QtTest 1.2
import QtMultimedia 5.8
import "qrc:/qml"

// A still is asked for once, and never before the driver has said how large it may come.
Item {
    id: root

    width: 400
    height: 300

    property QtObject kView: QtObject { property size maxTextureSize }
    property QtObject kStillOptions: QtObject { property int edition: 3 }
    property QtObject kTextureProvider: QtObject {
        property int textureId
        property size textureSize
    }

    property QtObject kGlobalObject: QtObject { function startTimerNextImage() {} }

    Component {
        id: players
        K_ImagePlayer {}
    }

    TestCase {
        name: "K_ImagePlayer"
        when: windowShown

        function test_asksOnce_data() {
            return [{ tag: "limit known", late: false }, { tag: "limit comes later", late: true }]
        }
        function test_asksOnce(row) {
            kView.maxTextureSize = row.late ? Qt.size(-1, -1) : Qt.size(64, 64)
            var player = createTemporaryObject(players, root)
            player.mediaSource = "http://a/b.png"
            if (row.late)
                wait(50)
            compare(player.playerStatus, row.late ? MediaPlayer.NoMedia : MediaPlayer.Loading)
            kView.maxTextureSize = Qt.size(64, 64)
            tryCompare(player, "playerStatus", MediaPlayer.Buffered)
            compare(stillRequests.take(), ["http%3A//a/b.png?3 64x64"])
        }
    }
}
