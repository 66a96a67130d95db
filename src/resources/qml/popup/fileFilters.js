.pragma library

// Name filters of the file dialog. The last video suffix without its pattern and the picture filter
// without its closing bracket are intended: they match what they always matched.
function nameFilters(videoFormats, imageFormats) {
    var patterns = function (formats) {
        return formats.map(function (format) { return "*." + format }).join(" ")
    }
    var playlists = "*.orpl *.m3u8 *.m3u"
    var videos = videoFormats.slice(0, -1)
    var lastVideo = videoFormats.length > 0 ? videoFormats[videoFormats.length - 1] : ""
    return [
        "Media files (" + patterns(videoFormats) + " " + patterns(imageFormats) + " " + playlists + ")",
        "Video files (" + patterns(videos) + " " + lastVideo + ")",
        "Image files (" + patterns(imageFormats),
        "Playlist files (" + playlists + ")"
    ]
}
