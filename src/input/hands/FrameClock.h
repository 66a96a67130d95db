#pragma once

// Time between the frames of a device whose timestamps cannot be trusted: they may repeat, go back
// or leap. Owned by whoever analyses the frames, on that thread.

#include <QtGlobal>

#include <optional>

class FrameClock
{
public:
    /// Microseconds after which a motion is no longer the same motion.
    static constexpr quint64 kLongestStep = 250000;

    /// Seconds since the frame before; 0 for the first frame and after a break, when everything in
    /// progress must start anew. Nothing for a frame that is to be left out: one seen already, or
    /// older than one seen. A device that counts anew is believed after kBelieveRestart frames.
    std::optional<float> advance(qint64 timestamp);

    static constexpr int kBelieveRestart = 5;

private:
    std::optional<qint64> m_last;
    int m_older = 0;
};
