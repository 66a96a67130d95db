#include "desktop/PlaybackClock.h"

namespace {

// Reports come some times a second, and a busy machine delays them.
constexpr qint64 kJumpMilliseconds = 1000;

} // namespace

void PlaybackClock::restart()
{
    *this = PlaybackClock();
}

void PlaybackClock::setPlaying(bool playing, qint64 now)
{
    if (m_playing == playing)
        return;
    m_playing = playing;
    m_reportedAt = now;
}

bool PlaybackClock::moveTo(qint64 position, qint64 now)
{
    const qint64 expected = m_position + (m_playing ? now - m_reportedAt : 0);
    const bool jumped =
        m_started && (m_jumpExpected || qAbs(position - expected) > kJumpMilliseconds);
    m_position = position;
    m_reportedAt = now;
    m_started = true;
    m_jumpExpected = false;
    return jumped;
}
