#pragma once

// What the user chose for the hand tracker, as the analysis of frames needs it. Plain values, made
// by KLeap from its properties.

#include <QSizeF>

enum class HandCameraMode {
    Translation = 0, ///< an open hand's motion in both axes turns the view
    Finger = 1,      ///< a finger points and pushes
    Head = 2,        ///< as Hands, by a tracker on the user's head
    Hands = 3        ///< an open hand steers: aside it turns, tilted it looks up and down
};

struct HandOptions
{
    HandCameraMode mode = HandCameraMode::Hands;
    double sensitivity = 0.2; ///< of yaw and pitch, 0.01 to 0.8
    bool pitchInverted = false;
    bool yawInverted = false;
    bool roll = false;
    bool zoom = true;
    bool playPause = true;
    bool seek = true;
    bool menu = false; ///< the hand drives the menu now
    double pointerSensibility = 1;
    int pointerInterpolation = 4; ///< 0 follows at once, 10 is very calm
    QSizeF window;                ///< pixels
};
