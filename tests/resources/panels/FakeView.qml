import QtQuick 2.15

// The face of the window that the popups see.
QtObject {
    property string gpuInfo: "Renderer : Test \nOpenGL Version : 4.5 \nMaximum texture size : 8192\n"

    property bool fullScreen: false
    signal mouseMoved(int x, int y)

    function version() { return "2.3 (32bits)" }
    function newVersion() { return "2.4.0.400" }
    function newVersionDate() { return new Date(2017, 1, 14) }
    function newChangeLog() { return "<h3>New</h3><ul><li>One <a href=\"https://example.org\">thing</a></li></ul>" }
    function urlWebsite() { return "https://example.org/site" }
    function urlDownload() { return "" }
}
