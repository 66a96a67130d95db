// Not a shared library: it sees ThemeManager through the imports of the control that uses it.

// The style component for a control type and its class names, or null when the theme has none.
// Called in a binding, it follows every change of the theme.
function getStyle(type, classnames) {
    var file = ThemeManager.current.getStyle(type, classnames)
    if (file === null)
        return null
    var component = Qt.createComponent(file, Component.PreferSynchronous)
    if (component.status === Component.Error) {
        console.warn(component.errorString())
        return null
    }
    return component
}

// A colour let through in part, for lines and hover faces that must show on any background.
function faint(color, alpha) {
    return Qt.rgba(color.r, color.g, color.b, alpha)
}

// A theme's font for text whose case counts: what people type and paths, never in capitals.
function asWritten(font) {
    return Qt.font({ family: font.family, pointSize: font.pointSize, weight: font.weight })
}
