import QtQuick 2.9
import com.vedra.kontrols 1.0

// A field of one line that hands its text out when the edit ends, and takes it back on Escape.
TextField {
    id: root

    // The text in force; what is typed stays apart until the edit ends.
    property string value

    signal edited(string value)

    function commit() {
        if (text === value)
            return
        value = text
        edited(value)
    }

    text: value
    onValueChanged: text = value
    onEditingFinished: commit()
    Keys.onEscapePressed: {
        text = value
        focus = false
    }
}
