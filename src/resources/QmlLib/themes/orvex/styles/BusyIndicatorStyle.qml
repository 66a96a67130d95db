import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// A turning arc.
Base.BusyIndicatorStyle {
    indicator: Item {
        implicitWidth: 48
        implicitHeight: 48
        opacity: control.running ? 1 : 0

        Behavior on opacity { NumberAnimation { duration: 200 } }

        TintedImage {
            anchors.fill: parent
            source: "qrc:/QmlLib/com/vedra/kontrols/images/spinner.svg"
            color: control.Theme.colors.foreground

            // An animator would turn the picture below its tinting layer, which shows nothing.
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
