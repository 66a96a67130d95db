.pragma library

// Which keys a category puts back to their defaults; the pages of the video backend know their own.
var keys = {
    "general": ["application/input/projection", "application/input/stereoscopy",
                "application/output/projection", "application/output/display",
                "application/general/touchMode", "application/general/loopMode",
                "application/playlist/imageDisplayDuration",
                "application/playlist/imageDisplayDurationNone",
                "application/general/enableAnalytics", "application/general/cameraMoveSteps",
                "application/general/cameraInertia", "application/general/printSavePath"],
    "masterSlave": ["application/communication/state", "application/communication/ipMode",
                    "application/communication/ipCustom", "application/communication/port",
                    "application/communication/rate", "application/communication/urlMode",
                    "application/communication/orientationMode",
                    "application/communication/format"],
    "controllers": ["application/hmd/sdk", "application/hmd/gazeUI",
                    "application/realsense/feedbackScreen", "application/leapmotion/ghostHands"],
    "advanced": ["application/advanced/forceopengl", "application/advanced/sharedmemory"]
}
