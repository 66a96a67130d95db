.pragma library

// Texts of numbers for the scene.

// "mm:ss", from one hour on "h:mm:ss", of a time in milliseconds, rounded to whole seconds.
function formatTime(ms) {
    var seconds = Math.round(ms / 1000)
    var two = function (n) { return n < 10 ? "0" + n : "" + n }
    var hours = Math.floor(seconds / 3600)
    var rest = two(Math.floor(seconds / 60) % 60) + ":" + two(seconds % 60)
    return hours > 0 ? hours + ":" + rest : rest
}

// The number rounded to 1 / p.
function trimNumber(number, p) {
    var precision = p === undefined ? 100000 : p
    return Math.round(number * precision) / precision
}
