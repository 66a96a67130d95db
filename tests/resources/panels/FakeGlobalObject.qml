import QtQuick 2.15

// The face of KGlobalObject that the settings window and the popups see.
QtObject {
    property bool adobePlugin: false
    property bool touchTable: false
    property int loopMode: 1
    property int playListIndex: 0
    property string videoLogMessage: "Media : file:///clip.mp4 \nProjection : Equirectangular \n"
    property string privacyUrl: "https://example.org/privacy"
    property string platform: "Q_OS_LINUX"
    property bool custom: false
    property bool writable: true
    property var texts: ({})
    property var player: null
    property var calls: []

    function platformOS() { return platform }
    function isVlcCustom() { return custom }
    function getVlcCmdInfos(custom, kind) {
        return custom ? texts[kind] || "" : "--default-" + kind + ",--second"
    }
    function setVlcCustomCmd(kind, text) {
        texts[kind] = text
        calls.push("vlc " + kind + " " + text)
    }
    function isWritableFolder(folder) { return writable }
    function mediaPlayer() { return player }
    function aboutThirdParty() {
        var text = ""
        for (var i = 0; i < 20; ++i)
            text += "<p><b>Component " + i + "</b><br>what it is for<br><i>its licence</i></p>"
        return text
    }
    function openFile(text) { calls.push("open " + text) }
    function openFiles(urls, dropped) { calls.push("files " + urls) }
    function restart() { calls.push("restart") }
    function getSupportedVideoFormats() { return ["mp4", "mov"] }
    function getSupportedImageFormats() { return ["jpg", "png"] }
}
