import QtQuick 2.15

// The present value of one key of a store with the face of KSettings, for bindings.
QtObject {
    id: root

    property var store
    property string key
    property var value

    // Has to be a list for the object to hold a child.
    readonly property list<QtObject> watchers: [
        Connections {
            target: root.store
            function onSettingsChanged(key) {
                if (key === root.key)
                    root.read()
            }
        }
    ]

    function read() { value = store ? store.getTyped(key) : undefined }
    function set(newValue) { store.set(key, newValue) }

    onStoreChanged: read()
    onKeyChanged: read()
}
