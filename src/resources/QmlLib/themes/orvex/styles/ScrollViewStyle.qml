import QtQuick 2.9
import QtQuick.Controls.Styles 1.4 as Base
import com.vedra.kontrols 1.0

// Thin bars beside the content.
Base.ScrollViewStyle {
    id: root

    transientScrollBars: false
    frame: Item { }
    corner: Item { }
    handle: ScrollHandle { control: root.control }
    scrollBarBackground: Item { implicitWidth: 10; implicitHeight: 10 }
    incrementControl: Item { }
    decrementControl: Item { }
}
