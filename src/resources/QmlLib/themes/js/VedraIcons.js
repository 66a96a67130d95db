.pragma library

// The glyphs of the icon font, by what they show. themes/orvex/fonts/make-icon-font.py reads the
// code points from here.

var Add = "\ue900"
var Back = "\ue901"
var Browse = "\ue902"
var Cameras = "\ue903"
var Checkbox_empty = "\ue904"
var Checkbox_filled = "\ue905"
var Color = "\ue906"
var Correction = "\ue907"
var Delete_Copy = "\ue908"
var Drag_n_Drop = "\ue909"
var Edit = "\ue90a"
var Emergency = "\ue90b"
var Exposure = "\ue90c"
var Horizon = "\ue90d"
var Import = "\ue90e"
var Luminosity = "\ue90f"
var Move = "\ue910"
var Patch = "\ue911"
var Start_broadcasting = "\ue912"
var Stitching = "\ue913"
var Stop_broadcasting = "\ue914"
var Unroll = "\ue915"
var Wait = "\ue916"
