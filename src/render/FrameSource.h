#pragma once

// Frames that another process hands over, seen as the one texture that holds the newest; owned by
// the KTextureProvider that it is given to, asked on any thread that draws.

#include <QSize>

class FrameSource
{
public:
    virtual ~FrameSource() = default;

    /// Name of the texture with the newest frame, 0 while there is none.
    virtual int textureId() const = 0;

    /// Pixels of that frame, (-1, -1) while there is none.
    virtual QSize textureSize() const = 0;

protected:
    FrameSource() = default;
    FrameSource(const FrameSource &) = delete;
    FrameSource &operator=(const FrameSource &) = delete;
};
