#pragma once

// What a device's thread needs of the interface shown inside the headset; implemented by the
// interface's manager, owned by Application, which outlives the thread.
//
// The const questions and detectTap() are asked on the device's thread, the build functions are
// called on the GUI thread.

#include <QMatrix4x4>
#include <QSize>

#include <array>

class HeadsetInterface
{
public:
    virtual ~HeadsetInterface() = default;

    /// The interface is open.
    virtual bool isShown() const = 0;

    /// The frame in which the panel stands: multiplied from the left to the head's pose.
    virtual QMatrix4x4 orientation() const = 0;

    /// Name and pixels of a layer's texture, 0 while there is none. 0 is the panel, 1 the
    /// foreground; drawn in this order.
    virtual int textureId(int layer) const = 0;
    virtual QSize textureSize(int layer) const = 0;

    /// Whether the head has just nodded. @p velocity in radians per second of yaw, pitch and roll,
    /// @p gazePitch in radians.
    virtual bool detectTap(const std::array<float, 3> &velocity, float gazePitch) = 0;

    /// Moves the gaze's pointer, and clicks with @p tap.
    virtual void buildGazeEvents(bool tap) = 0;

    /// Acts on a controller's code (1 to 6).
    virtual void buildEvents(int inputEventInt) = 0;

protected:
    HeadsetInterface() = default;
    HeadsetInterface(const HeadsetInterface &) = delete;
    HeadsetInterface &operator=(const HeadsetInterface &) = delete;
};
