import QtQuick 2.9
import QtQuick.Window 2.2
import QtGraphicalEffects 1.0

// A picture fitted into its item, in one colour; a transparent colour leaves it as it is. Vectors
// are drawn for the pixels they fill.
Image {
    id: root

    property color color: "transparent"

    fillMode: Image.PreserveAspectFit
    sourceSize: Qt.size(Math.max(1, Math.round(width * Screen.devicePixelRatio)),
                        Math.max(1, Math.round(height * Screen.devicePixelRatio)))
    layer.enabled: color.a > 0
    layer.effect: ColorOverlay { color: root.color }
}
