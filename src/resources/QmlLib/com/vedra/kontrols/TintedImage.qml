import QtQuick 2.9
import QtQuick.Window 2.2

// A picture fitted into its item, in one colour; a transparent colour leaves it as it is. Vectors
// are drawn for the pixels they fill. The colour is laid on once when the picture is made: an effect
// would cost each icon a shader, textures of its own and a pass in every frame.
Image {
    id: root

    property url icon
    property color color: "transparent"

    source: icon.toString() === "" ? "" : "image://tinted/" + String(color).slice(1) + "/"
                                          + encodeURIComponent(icon)
    fillMode: Image.PreserveAspectFit
    sourceSize: Qt.size(Math.max(1, Math.round(width * Screen.devicePixelRatio)),
                        Math.max(1, Math.round(height * Screen.devicePixelRatio)))
}
