#pragma once

// Counts published frames by the second; a value of the player item, used on libvlc's video
// thread alone.

#include <QtGlobal>

class FpsCounter
{
public:
    /// Counts a frame at @p milliseconds since the epoch. True when a second has ended; then
    /// framesPerSecond() has its new value.
    bool frame(qint64 milliseconds)
    {
        const qint64 second = milliseconds / 1000;
        if (second <= m_lastSecond) {
            ++m_frames;
            return false;
        }
        m_framesPerSecond = m_frames + 1;
        m_frames = 0;
        m_lastSecond = second;
        return true;
    }
    int framesPerSecond() const { return m_framesPerSecond; }

private:
    int m_framesPerSecond = 0;
    int m_frames = 0;
    qint64 m_lastSecond = 0;
};
