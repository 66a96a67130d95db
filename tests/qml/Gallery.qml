import QtQuick 2.9
import QtQuick.Layouts 1.3
import com.vedra.kontrols 1.0
import com.vedra.components 1.0
import com.vedra.docking 1.0
import "qrc:/QmlLib/themes/js/VedraIcons.js" as VedraIcons

// One of each control, in the states that can be seen without a hand on them.
Rectangle {
    id: root

    property alias controls: grid
    property alias spinBox: spinBox

    width: 1000
    height: 860
    color: Theme.colors.background

    MenuBar {
        id: bar

        Menu {
            title: "File"
            MenuItem { text: "Open"; shortcut: "Ctrl+O" }
            MenuSeparator { }
            MenuItem { text: "Loop"; checkable: true; checked: true }
            Menu { title: "More"; MenuItem { text: "Item" } }
        }
        Menu { title: "Playback"; MenuItem { text: "Play" } }
    }

    Component.onCompleted: {
        bar.__contentItem.parent = root
        bar.__contentItem.width = Qt.binding(function () { return root.width })
    }

    ExclusiveGroup { id: choice }

    GridLayout {
        id: grid

        anchors { fill: parent; margins: 24; topMargin: 48 }
        columns: 4
        columnSpacing: 24
        rowSpacing: 12

        LabelH1 { text: "Heading 1" }
        LabelH2 { text: "Heading 2" }
        LabelH3 { text: "Heading 3" }
        LabelH4 { text: "Heading 4" }

        Button { text: "Button"; Layout.preferredWidth: 160; Layout.preferredHeight: 40 }
        Button { text: "Focus"; Layout.preferredWidth: 160; focus: true }
        Button { text: "Disabled"; enabled: false }
        Button { text: "Play"; iconSource: "qrc:/images/newui/Play.svg"
                 backgroundColor: "#00A3DA"; Layout.preferredWidth: 120; Layout.preferredHeight: 40 }

        Row {
            spacing: 8
            Repeater {
                model: ["SideBySide", "OverUnder", "SideBySide_inverted"]
                RadioButtonImage {
                    width: 40; height: 40
                    checked: index === 0
                    exclusiveGroup: choice
                    iconSource: "qrc:/images/newui/Stereo_" + modelData + ".svg"
                }
            }
        }
        Row {
            spacing: 8
            Button { iconSource: "qrc:/images/newui/Loop.svg"; Theme.classnames: ["imageonly"]; width: 40; height: 40 }
            Button { iconSource: "qrc:/images/newui/Hmd.svg"; Theme.classnames: ["imageonly"]
                     overlayColor: "#00A3DA"; width: 40; height: 40 }
            Button { iconSource: "qrc:/images/newui/Next.svg"; Theme.classnames: ["imageonly"]; enabled: false; width: 40; height: 40 }
        }
        Row {
            ToolButton { iconSource: "qrc:/images/newui/Settings.svg" }
            ToolBarSeparator { height: 36 }
            ToolButton { text: "Tool"; checkable: true; checked: true }
            ToolButton { text: "Menu"; menu: Menu { MenuItem { text: "Item" } } }
        }
        Row {
            spacing: 6
            Repeater {
                model: ["Add", "Color", "Exposure", "Move", "Unroll", "Wait"]
                LabelIcon { text: VedraIcons[modelData] }
            }
            LabelIconButton { text: VedraIcons.Edit }
        }

        CheckBox { text: "Check box" }
        CheckBox { text: "Checked"; checked: true }
        CheckBox { text: "Partly"; partiallyCheckedEnabled: true; checkedState: Qt.PartiallyChecked }
        CheckBox { text: "Disabled"; checked: true; enabled: false }

        Switch { }
        Switch { checked: true }
        Switch { enabled: false }
        BusyIndicator { Layout.preferredHeight: 40; Layout.preferredWidth: 40 }

        ComboBox { model: ["Equirectangular", "Cubemap"] }
        ComboBox { model: ["Light"]; Theme.classnames: ["light", "defaultText"] }
        ComboBox { model: ["Dark, arrow left"]; Theme.classnames: ["dark", "ddleft"] }
        ComboBox { model: ["Disabled"]; enabled: false }

        TextField { text: "Text field" }
        TextField { placeholderText: "Placeholder" }
        TextField { text: "Title"; Theme.classnames: ["title"] }
        TextField { text: "Disabled"; enabled: false }

        HorizontalSpinBox { id: spinBox; numericValue: 12.5; decimals: 2; suffix: "°" }
        HorizontalSpinBox { numericValue: 40 }
        HorizontalSpinBox { numericValue: 7; enabled: false }
        SpinBox { value: 30 }

        EditableLabel { text: "Editable label" }
        Editor { value: "Editor" }
        ProgressBar { value: 0.6; Layout.fillWidth: true }
        ProgressBarQt { value: 0.6; Layout.fillWidth: true }

        GroupBox {
            title: "Group box"
            Column {
                Label { text: "A label" }
                Label { text: "A <a href=\"x\">link</a>" }
            }
        }
        TextArea { text: "A text area\nwith some lines\nof text\nthat\nscrolls\non"; Layout.preferredWidth: 200; Layout.preferredHeight: 100 }
        ScrollView {
            Layout.preferredWidth: 200; Layout.preferredHeight: 100
            Label { text: "A scroll view\nwith more\nlines than\nfit\ninto\nit\nso far"; width: 190 }
        }
        ScrollView {
            Theme.classnames: ["omni"]
            Layout.preferredWidth: 200; Layout.preferredHeight: 100
            Label { text: "An omni view\nwith more\nlines than\nfit\ninto\nit\nso far"; width: 400 }
        }

        SplitView {
            Layout.preferredWidth: 200; Layout.preferredHeight: 60
            Rectangle { width: 80; color: Theme.colors.lighterBackground }
            Rectangle { color: Theme.colors.darkerBackground }
        }
        StackView {
            Layout.preferredWidth: 200; Layout.preferredHeight: 60
            initialItem: Label { text: "On the stack" }
        }
        DockArea {
            Layout.preferredWidth: 200; Layout.preferredHeight: 60
            DockItem { id: dockLeft; title: "Left"; edge: DockItem.Left; extent: 60
                       Rectangle { anchors.fill: parent; color: "#008080" } }
            DockItem { Rectangle { anchors.fill: parent; color: "#808000" } }
        }
        DockBar { dockItems: [dockLeft] }
    }
}
