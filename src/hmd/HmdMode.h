#pragma once

// The agreement between the stored headset mode and what is plugged in, as a decision on values;
// no object, no thread. The mode is a setting because the renderer and the video backend depend on
// it before any device can be asked, so a change needs a restart.

#include <QString>

/// What to do about the stored mode.
enum class HmdModeChange {
    None,
    SwitchOff, ///< stored on, but there is no headset
    SwitchOn   ///< stored off, but there is one
};

struct HmdModeFacts
{
    bool forceOpenGL = false; ///< the user has fixed the renderer
    bool hostFrames = false;  ///< another program's frames are shown
    bool hmdMode = false;     ///< as stored
    bool detected = false;    ///< a headset is there
};

[[nodiscard]] HmdModeChange decideHmdMode(const HmdModeFacts &facts);

/// What the store remembers of the last restart that a change asked for; empty for None.
QString reasonOf(HmdModeChange change);

/// Whether to restart for @p change, when the restart before this run was for @p lastReason: a
/// machine that needs the same restart again would restart for ever.
[[nodiscard]] bool mayRestart(HmdModeChange change, const QString &lastReason);
