#pragma once

// The road on which the decoder writes a surface of the graphics card that the card itself turns
// into an RGB texture; owned by the player's frame pipeline, used on libvlc's video thread with
// the pipeline's context current.

#include "video/VlcPixelFormat.h"

#include <qopengl.h>
#include <qwindowdefs.h>

#include <array>
#include <cstdint>
#include <memory>

class VideoInterop
{
public:
    /// A surface that the decoder may write; bits is null when it could not be locked.
    struct LockedSurface
    {
        std::uint8_t *bits = nullptr;
        int pitch = 0; ///< bytes from one row of luma to the next
    };

    VideoInterop() = default;
    VideoInterop(const VideoInterop &) = delete;
    VideoInterop &operator=(const VideoInterop &) = delete;
    /// Takes everything down; the context of the opening must be current.
    virtual ~VideoInterop() = default;

    /// The pitch of every lock, known from the opening on.
    virtual int pitch() const = 0;
    virtual LockedSurface lock() = 0;
    /// Ends the writing and lets the card convert YV12 to RGB.
    virtual void unlockAndConvert() = 0;
    /// Between these two GL may read texture().
    virtual void beginReading() = 0;
    virtual void endReading() = 0;
    virtual GLuint texture() const = 0;

    /// Null where the platform, the driver or the format do not allow this road: only YV12 does.
    static std::unique_ptr<VideoInterop> open(int width, int height, VlcPixelFormat format,
                                              WId window);

    /// Where the three planes of a locked YV12 surface of @p height rows begin.
    static std::array<std::uint8_t *, 3> planes(const LockedSurface &surface, int height)
    {
        const std::size_t luma = std::size_t(height) * std::size_t(surface.pitch);
        return {surface.bits, surface.bits + luma, surface.bits + luma + luma / 4};
    }
};
