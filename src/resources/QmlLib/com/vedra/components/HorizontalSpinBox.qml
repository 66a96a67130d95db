import QtQuick 2.9
import com.vedra.kontrols 1.0

// An editable number with an arrow on either side. Arrows, the up and down keys and the wheel step
// at once; a typed number counts when the edit ends (Return, or the focus leaves), Escape takes it
// back. Every edit writes numericValue, so an owner that follows another value gives it by a
// Binding object.
FocusScope {
    id: root

    property real numericValue: 0
    property real minimumValue: -Infinity
    property real maximumValue: Infinity
    property bool loopMinMax: false // past one end it goes on at the other
    property int decimals: 0
    property real stepSize: 1
    property real wheelStepSize: 2 * stepSize
    property string suffix
    property bool repeat: true // while an arrow is held
    property int repeatInterval: 70
    property int arrowSize: 7
    // Hands on the left and right keys that move nothing in the text.
    property bool propagateLeftRightArrowEvent: false
    property alias textFocus: input.activeFocus
    property font font: Style.asWritten(Theme.fonts.mainFont)

    // A new value by the user's hand; NaN when what was typed is no number, the value then stays.
    signal valueEdited(real value)
    // Each key, before it is used here; one that the owner accepts goes no further.
    signal keyPressed(var event)

    // Holds a value in range, at the precision shown; an end keeps decimals of its own.
    function clampValue(value) {
        if (value >= maximumValue)
            return maximumValue
        if (value <= minimumValue)
            return minimumValue
        return Math.min(maximumValue, Math.max(minimumValue, Number(value.toFixed(d.precision))))
    }

    function increase() { d.step(stepSize) }
    function decrease() { d.step(-stepSize) }

    onNumericValueChanged: if (!d.typing) d.showValue()
    onDecimalsChanged: if (!d.typing) d.showValue()

    QtObject {
        id: d

        readonly property int precision: Math.max(0, Math.min(20, root.decimals))
        property bool typing: false // the text is ahead of the value
        property real wheelTurn: 0 // eighths of a degree not stepped yet

        function step(amount) {
            var value = (isFinite(root.numericValue) ? root.numericValue : 0) + amount
            if (root.loopMinMax && value > root.maximumValue && isFinite(root.minimumValue))
                value = root.minimumValue
            else if (root.loopMinMax && value < root.minimumValue && isFinite(root.maximumValue))
                value = root.maximumValue
            take(root.clampValue(value))
        }

        function take(value) {
            typing = false
            if (value !== root.numericValue) {
                root.numericValue = value
                root.valueEdited(value)
            }
            showValue()
        }

        function displayText() {
            if (isNaN(root.numericValue))
                return ""
            return root.numericValue.toFixed(precision).replace(/^-(0(\.0*)?)$/, "$1")
        }

        function showValue() {
            typing = false
            input.text = displayText()
        }

        function commit() {
            if (!typing)
                return
            var text = input.text.trim()
            if (root.suffix !== "" && text.slice(-root.suffix.length) === root.suffix)
                text = text.slice(0, -root.suffix.length).trim()
            var value = text === "" ? NaN : Number(text.replace(",", "."))
            if (isFinite(value))
                take(root.clampValue(value))
            else
                root.valueEdited(NaN)
            showValue()
        }
    }

    implicitWidth: 2 * (arrowSize + 16) + 80
    implicitHeight: 28
    opacity: enabled ? 1 : 0.4
    Accessible.role: Accessible.SpinBox

    Keys.onLeftPressed: event.accepted = !propagateLeftRightArrowEvent
    Keys.onRightPressed: event.accepted = !propagateLeftRightArrowEvent

    Rectangle {
        anchors.fill: parent
        radius: Theme.radius
        color: Theme.colors.darkerBackground
        border.width: input.activeFocus ? 2 : 1
        border.color: input.activeFocus ? Theme.colors.selection
                    : hover.containsMouse ? Theme.colors.foreground : Theme.colors.darkerForeground
    }

    MouseArea {
        id: hover

        anchors.fill: parent
        acceptedButtons: Qt.NoButton
        hoverEnabled: true
        onWheel: {
            // A wheel that turns finely steps once for a whole notch.
            d.wheelTurn += wheel.angleDelta.y
            var notches = d.wheelTurn > 0 ? Math.floor(d.wheelTurn / 120)
                                          : Math.ceil(d.wheelTurn / 120)
            d.wheelTurn -= notches * 120
            if (notches !== 0)
                d.step(notches * root.wheelStepSize)
        }
    }

    SpinBoxArrow {
        objectName: "decrease"
        anchors { left: parent.left; top: parent.top; bottom: parent.bottom }
        direction: Qt.LeftArrow
        arrowSize: root.arrowSize
        repeatInterval: root.repeat ? root.repeatInterval : 0
        onTriggered: root.decrease()
    }

    SpinBoxArrow {
        objectName: "increase"
        anchors { right: parent.right; top: parent.top; bottom: parent.bottom }
        direction: Qt.RightArrow
        arrowSize: root.arrowSize
        repeatInterval: root.repeat ? root.repeatInterval : 0
        onTriggered: root.increase()
    }

    TextInput {
        id: input

        objectName: "input"
        // It has the focus, so it is what is read out.
        Accessible.role: Accessible.SpinBox
        Accessible.name: root.Accessible.name
        anchors {
            fill: parent
            leftMargin: root.arrowSize + 16
            rightMargin: root.arrowSize + 16 + unit.width
        }
        focus: true
        activeFocusOnTab: true
        selectByMouse: true
        clip: true
        horizontalAlignment: root.suffix === "" ? TextInput.AlignHCenter : TextInput.AlignRight
        verticalAlignment: TextInput.AlignVCenter
        font: root.font
        color: Theme.colors.foreground
        selectionColor: Theme.colors.selection
        selectedTextColor: "white"
        inputMethodHints: Qt.ImhFormattedNumbersOnly

        onTextEdited: d.typing = true
        onActiveFocusChanged: {
            if (activeFocus)
                selectAll()
            else
                d.commit()
        }

        Keys.onPressed: {
            event.accepted = false
            root.keyPressed(event)
            if (event.accepted)
                return
            switch (event.key) {
            case Qt.Key_Up:
                root.increase()
                break
            case Qt.Key_Down:
                root.decrease()
                break
            case Qt.Key_Return:
            case Qt.Key_Enter:
                d.commit()
                selectAll()
                break
            case Qt.Key_Escape:
                d.showValue()
                root.focus = false
                break
            default:
                return
            }
            event.accepted = true
        }

        Component.onCompleted: d.showValue()
    }

    Text {
        id: unit

        anchors {
            right: parent.right
            rightMargin: root.arrowSize + 16
            verticalCenter: parent.verticalCenter
        }
        width: text === "" ? 0 : Math.min(implicitWidth, parent.width / 3)
        text: root.suffix
        textFormat: Text.PlainText
        font: root.font
        color: Theme.colors.darkerForeground
        elide: Text.ElideRight
    }
}
