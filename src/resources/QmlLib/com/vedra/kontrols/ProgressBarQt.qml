import QtQuick.Controls 1.4 as Controls

// The toolkit's own progress bar, with the platform's look.
Controls.ProgressBar {
}
