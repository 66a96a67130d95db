#include "input/hands/FrameClock.h"

std::optional<float> FrameClock::advance(qint64 timestamp)
{
    if (m_last && timestamp == *m_last)
        return {};
    if (m_last && timestamp < *m_last && ++m_older < kBelieveRestart)
        return {};
    m_older = 0;
    float seconds = 0;
    if (m_last && timestamp > *m_last) {
        // Without sign, since the two may lie farther apart than a signed number holds.
        const quint64 step = quint64(timestamp) - quint64(*m_last);
        seconds = step <= kLongestStep ? float(step) * 1e-6F : 0.0F;
    }
    m_last = timestamp;
    return seconds;
}
