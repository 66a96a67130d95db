#pragma once

// What the desktop may ask of the player. Implemented by the player's shell, which outlives the
// callers; called on the GUI thread.

#include "desktop/PlayerStatus.h"

class PlayerControls
{
public:
    virtual ~PlayerControls() = default;

    virtual void play() = 0;
    virtual void pause() = 0;
    virtual void stop() = 0;
    virtual void next() = 0;
    virtual void previous() = 0;
    /// @p position in milliseconds, inside the medium.
    virtual void seek(int position) = 0;
    /// @p volume from 0 to 1.
    virtual void setVolume(double volume) = 0;
    virtual void setLoop(PlayerStatus::Loop loop) = 0;
    virtual void setFullScreen(bool fullScreen) = 0;
    virtual void open(const QUrl &medium) = 0;
    virtual void raise() = 0;
    virtual void quit() = 0;
};
