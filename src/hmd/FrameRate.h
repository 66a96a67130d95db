#pragma once

// Counts frames by whole seconds; a plain value of the thread that draws.

#include <QtGlobal>

#include <optional>

class FrameRate
{
public:
    /// Counts a frame drawn in @p second (since the epoch). Once in each second the number of
    /// frames since the last answer, which covers that second when frames come steadily.
    std::optional<int> count(qint64 second)
    {
        if (second <= m_second) {
            ++m_frames;
            return std::nullopt;
        }
        m_second = second;
        const int frames = m_frames + 1;
        m_frames = 0;
        return frames;
    }

private:
    int m_frames = 0;
    qint64 m_second = 0;
};
