import QtQuick 2.15
import com.vedra.kontrols 1.0
import "menu"

// The menu bar: every command with its key. In full screen it takes no room, and its keys stay.
Item {
    id: root

    property var commands

    height: kView.fullScreen ? 0 : bar.__contentItem.implicitHeight
    visible: !kView.fullScreen

    // F10 opens the menus for those without a pointer, as on other desktops.
    function onKeyPressed(event) {
        if (event.key === Qt.Key_F10 && visible && !bar.__isNative) {
            bar.menus[0].__visualItem.Accessible.pressAction()
            event.accepted = true
        } else {
            commands.keyPressed(event)
        }
    }
    function onKeyReleased(event) { commands.keyReleased(event) }

    MenuBar {
        id: bar
        objectName: "menuBar"
        availableWidth: root.width

        K_MenuFile { commands: root.commands }
        K_MenuPlayback { commands: root.commands }
        K_MenuAudio { commands: root.commands }
        K_MenuInput { commands: root.commands }
        K_MenuOutput { commands: root.commands }
        K_MenuCamera { commands: root.commands }
        K_MenuControllers { commands: root.commands }
        K_MenuWindow { commands: root.commands }
        K_MenuHelp { commands: root.commands }

        // Without a native menu bar its picture is an item of ours.
        Component.onCompleted: {
            if (__isNative)
                return
            __contentItem.parent = root
            __contentItem.width = Qt.binding(function() { return root.width })
        }
    }
}
