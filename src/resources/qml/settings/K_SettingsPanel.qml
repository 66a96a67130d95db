import QtQuick 2.15
import com.vedra.kontrols 1.0
import "../widgets"

// What is seen of the preferences; its owner, K_SettingsWindow, knows what a change means.
Item {
    id: area

    property var owner
    readonly property var pages: ({
        "general": generalPage, "video": videoPage, "audio": audioPage,
        "masterSlave": masterSlavePage, "controllers": controllersPage, "advanced": advancedPage
    })
    readonly property alias categoriesList: categoriesList
    readonly property alias page: page
    readonly property alias scroll: scroll
    readonly property alias restoreButton: restoreButton

    K_BackButton {
        id: backButton
        objectName: "backButton"
        anchors { left: parent.left; top: parent.top; margins: 20 }
        text: owner.restartNeeded ? qsTr("Restart to apply") : qsTr("Back to Player")
        highlighted: owner.restartNeeded
        onClicked: owner.goBack()
    }

    K_CategoryList {
        id: categoriesList
        objectName: "categoriesList"
        anchors {
            left: parent.left
            top: backButton.bottom
            bottom: footer.top
            margins: 20
        }
        width: area.width < 800 ? 160 : 190
        focus: true
        model: owner.categories
        isLocked: owner.isLocked
        currentIndex: owner.categoryIndex
        onCurrentIndexChanged: owner.categoryIndex = currentIndex
    }

    Rectangle {
        id: divider
        anchors {
            left: categoriesList.right
            leftMargin: 10
            top: categoriesList.top
            bottom: categoriesList.bottom
        }
        width: 1
        color: Qt.rgba(1, 1, 1, 0.12)
    }

    ScrollView {
        id: scroll
        objectName: "scroll"
        anchors {
            left: divider.right
            leftMargin: 10
            right: parent.right
            rightMargin: 6
            top: categoriesList.top
            bottom: categoriesList.bottom
        }
        horizontalScrollBarPolicy: Qt.ScrollBarAlwaysOff

        Loader {
            id: page
            objectName: "page"
            width: scroll.viewport.width - 4
            active: owner.state === "On"
            sourceComponent: area.pages[owner.category] || null
            enabled: !owner.isLocked(owner.category)
            opacity: enabled ? 1 : 0.2
            onItemChanged: if (scroll.flickableItem) scroll.flickableItem.contentY = 0
        }
    }

    Item {
        id: footer
        anchors {
            left: parent.left
            right: parent.right
            bottom: parent.bottom
            margins: 20
        }
        height: 44

        Rectangle {
            anchors {
                left: parent.left
                right: parent.right
                bottom: parent.top
                bottomMargin: 8
            }
            height: 1
            color: Qt.rgba(1, 1, 1, 0.12)
        }
        K_PlainText {
            objectName: "hintLine"
            anchors {
                left: parent.left
                right: restoreButton.left
                rightMargin: 20
                verticalCenter: parent.verticalCenter
            }
            text: owner.hint
            font.pixelSize: 13
            maximumLineCount: 3
            elide: Text.ElideRight
        }
        K_PanelButton {
            id: restoreButton
            objectName: "restoreButton"
            anchors { right: parent.right; verticalCenter: parent.verticalCenter }
            text: qsTr("Restore Default values")
            enabled: page.enabled
            onClicked: owner.restoreCurrentCategory()
        }
    }

    Component {
        id: generalPage
        K_SettingsGeneral {
            desktopFolder: owner.folderDialog().desktop
            onChooseFolder: {
                var last = kSettings.getTyped("application/general/printSavePath")
                var dialog = owner.folderDialog()
                dialog.folder = last === "toBeDefine" ? dialog.desktop : last
                dialog.open()
            }
        }
    }

    Component {
        id: videoPage
        K_SettingsVideo {
            onInstanceArgumentsChanged: owner.onInstanceArgumentsChanged(text)
            onRestartPlayback: owner.restartPlayback()
        }
    }
    Component { id: audioPage; K_SettingsAudio {} }
    Component { id: masterSlavePage; K_CommunicationSettings {} }
    Component { id: controllersPage; K_SettingsControllers {} }
    Component { id: advancedPage; K_SettingsAdvanced {} }
}
