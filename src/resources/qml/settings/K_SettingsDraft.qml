import QtQuick 2.15

// Local copies of some settings, with the face of KSettings: nothing changes before apply().
QtObject {
    id: root

    // In the order in which they are written back.
    property var keys: []
    property var values: ({})

    signal settingsChanged(string key)

    function getTyped(key) { return values[key] }

    function set(key, value) {
        values[key] = value
        settingsChanged(key)
    }

    function load() {
        for (var i = 0; i < keys.length; ++i)
            set(keys[i], kSettings.getTyped(keys[i]))
    }

    function apply() {
        for (var i = 0; i < keys.length; ++i)
            kSettings.set(keys[i], values[keys[i]])
    }

    Component.onCompleted: load()
}
