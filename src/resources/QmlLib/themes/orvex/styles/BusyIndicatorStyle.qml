import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// A turning arc.
Base.BusyIndicatorStyle {
    indicator: Item {
        implicitWidth: 48
        implicitHeight: 48
        opacity: control.running ? 1 : 0

        // Comes only for a wait that people notice.
        Behavior on opacity {
            SequentialAnimation {
                PauseAnimation { duration: control.running ? 150 : 0 }
                NumberAnimation { duration: 200 }
            }
        }

        TintedImage {
            anchors.fill: parent
            icon: "qrc:/QmlLib/com/vedra/kontrols/images/spinner.svg"
            color: control.Theme.colors.foreground

            RotationAnimation on rotation {
                running: control.visible && control.running
                loops: Animation.Infinite
                duration: 900
                from: 0
                to: 360
            }
        }
    }
}
