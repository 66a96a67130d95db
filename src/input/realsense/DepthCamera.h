#pragma once

// A depth camera with hand recognition, as its maker's library offers it. Made by a plug-in, owned
// by KRealSense. The steps of the start run on the GUI thread in the order in which they stand
// here, each only after the one before succeeded; after that acquire() runs on KRealSenseThread
// alone.

#include "input/realsense/DepthFrame.h"

#include <QStringList>

#include <array>

class DepthCamera
{
public:
    enum class Acquired {
        Frame,
        Nothing, ///< for now
        Lost     ///< for good
    };

    virtual ~DepthCamera() = default;

    /// Whether the library that the camera needs is on this machine.
    virtual bool driversFound() = 0;
    [[nodiscard]] virtual bool createManager() = 0;
    [[nodiscard]] virtual bool enableHandModule() = 0;
    /// Recognises these and no others.
    [[nodiscard]] virtual bool enableGestures(const QStringList &names) = 0;
    /// Major, minor, build and revision of the library.
    virtual std::array<int, 4> version() = 0;

    /// Waits for a frame, at most about a tenth of a second.
    virtual Acquired acquire(DepthFrame *frame) = 0;
};
