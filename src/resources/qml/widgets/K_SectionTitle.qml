import QtQuick 2.15
import com.vedra.components 1.0

// The name of a group of rows.
LabelH2 {
    x: 10
    topPadding: 14
    bottomPadding: 2
    textFormat: Text.PlainText
}
