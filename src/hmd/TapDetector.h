#pragma once

// Hears a short nod in the speed of the head; one for the whole process, asked on the headset's
// thread.

#include <array>
#include <atomic>

class TapDetector
{
public:
    /// True once for each nod. @p velocity is what the head's yaw, pitch and roll change by in a
    /// second, @p gazePitch where it looks, all in radians. A head that looks more than an eighth
    /// of a turn up or down cannot nod. Between two nods it must come to rest; before the first
    /// one too.
    bool detect(const std::array<float, 3> &velocity, float gazePitch);

private:
    std::atomic<bool> m_armed{false};
};
