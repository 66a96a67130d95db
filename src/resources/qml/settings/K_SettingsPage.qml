import QtQuick 2.15

// A category's rows, one below the other, and the explanation of the row under the pointer or, where
// that is none, of the one with the focus.
Column {
    id: root

    readonly property string hint: {
        var focused = ""
        for (var i = 0; i < children.length; ++i) {
            if (children[i].pointed === true)
                return children[i].hint
            if (children[i].focused === true)
                focused = children[i].hint
        }
        return focused
    }

    spacing: 6
}
