#pragma once

// Follows a position that is reported now and then, and tells a jump from playing on. Owned by
// MprisService; a value without a clock of its own.

#include <QtGlobal>

class PlaybackClock
{
public:
    /// Last position reported, milliseconds.
    qint64 position() const { return m_position; }

    /// A new medium begins at its start; that is no jump. It does not play yet.
    void restart();

    /// The next report is a jump however small it is.
    void expectJump() { m_jumpExpected = true; }

    /// The player plays from @p now on (milliseconds of any steady clock), or no longer.
    void setPlaying(bool playing, qint64 now);

    /// The player reports @p position (milliseconds) at @p now. Returns whether it has jumped.
    bool moveTo(qint64 position, qint64 now);

private:
    qint64 m_position = 0;
    qint64 m_reportedAt = 0;
    bool m_playing = false;
    bool m_started = false;
    bool m_jumpExpected = false;
};
