import QtQuick 2.15
import QtTest 1.2
import "qrc:/qml"

// What the loader tells its peers once it stands, with stand-ins for them.
Item {
    id: root

    property QtObject registered
    property QtObject backend

    QtObject {
        id: kVideoPlugin
        property string currentPlugin: "qt"
    }
    QtObject {
        id: kGlobalObject
        property real yaw: 0
        property real pitch: 0
        property real roll: 0
        signal endOfPlaylistReached()
        function setMediaLoader(loader) { root.registered = loader }
        function hackQmlMediaPlayer(player) { root.backend = player.item.qtMediaPlayer }
    }
    QtObject {
        id: kTextureProvider
        property int textureId
        property size textureSize
        function isSharedMemory() { return false }
        function setShaderEffectSource(source, still) {}
    }
    QtObject {
        id: kShaderCodeBuilder
        property bool invertedColors: true
    }
    QtObject {
        id: kView
        property size maxTextureSize
    }
    K_MediaLoader { id: loader }

    TestCase {
        name: "K_MediaLoader"
        when: windowShown

        function test_theBackendIsThereForWhomItIsHandedTo() {
            compare(root.registered, loader)
            verify(root.backend)
            verify(!kShaderCodeBuilder.invertedColors)
        }
    }
}
