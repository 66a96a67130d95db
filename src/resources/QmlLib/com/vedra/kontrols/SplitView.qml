import QtQuick.Controls 1.4 as Controls

Controls.SplitView {
}
