import QtQuick 2.9

// A small arrow that points down, turned with rotation.
TintedImage {
    width: 10
    height: 10
    icon: "images/chevron.svg"
}
