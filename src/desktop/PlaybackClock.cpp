#include "desktop/PlaybackClock.h"

namespace {

// Reports come some times a second, and a busy machine delays them.
constexpr qint64 kJumpMilliseconds = 1000;

} // namespace

void PlaybackClock::restart()
{
    *this = PlaybackClock();
}

bool PlaybackClock::moveTo(qint64 position, qint64 now, bool playing)
{
    const qint64 expected = m_position + (playing ? now - m_reportedAt : 0);
    const bool jumped =
        m_started && (m_jumpExpected || qAbs(position - expected) > kJumpMilliseconds);
    m_position = position;
    m_reportedAt = now;
    m_started = true;
    m_jumpExpected = false;
    return jumped;
}
