import QtQuick 2.9
import QtQuick.Controls 1.4 as Controls
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

Controls.ProgressBar {
    id: root

    property Component defaultStyle: Base.ProgressBarStyle {
        background: Rectangle {
            implicitWidth: 200
            implicitHeight: 6
            radius: height / 2
            color: Style.faint(root.Theme.colors.foreground, 0.2)
        }
        progress: Rectangle {
            radius: height / 2
            color: root.Theme.colors.selection
            opacity: root.enabled ? 1 : 0.4

            SequentialAnimation on opacity {
                running: root.indeterminate && root.visible
                loops: Animation.Infinite
                NumberAnimation { from: 1; to: 0.3; duration: 700 }
                NumberAnimation { from: 0.3; to: 1; duration: 700 }
            }
        }
    }

    style: Style.getStyle("ProgressBarStyle", Theme.classnames) || defaultStyle
}
