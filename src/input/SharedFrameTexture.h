#pragma once

// The picture of another program's newest frame as one texture that a sampler2D reads, with red and
// blue exchanged as the panorama shader expects of such frames; owned by SharedMemoryThread, used
// on its thread with its context current.

#include "video/FrameTexture.h"
#include "video/YuvConverter.h"

#include <QOpenGLFramebufferObject>
#include <QSize>

#include <memory>

class SharedFrameTexture
{
public:
    SharedFrameTexture();
    ~SharedFrameTexture();
    SharedFrameTexture(const SharedFrameTexture &) = delete;
    SharedFrameTexture &operator=(const SharedFrameTexture &) = delete;

    /// Largest edge of a texture in texels, of both kinds that frames need.
    static int largestTexture();

    /// The name and size that are valid for other contexts; 0 and (-1, -1) without a picture.
    int textureId() const;
    QSize size() const;

    /// Whether setLayout() would end the texture that textureId() names.
    bool isReplacedBy(quint32 width, quint32 height, VlcPixelFormat format) const;
    void setLayout(quint32 width, quint32 height, VlcPixelFormat format);

    /// Where the rows of the next frame go, pitch() bytes apart; null without memory for them.
    std::uint8_t *beginFrame() { return m_frame.plane(0); }
    quint32 pitch() const { return m_frame.pitch(0); }
    quint32 rows() const { return m_frame.height(0); }
    /// Ends the writing; a frame that is not @p complete leaves the picture as it was.
    void endFrame(bool complete);

private:
    bool sameLayout(quint32 width, quint32 height, VlcPixelFormat format) const;
    void convert();

    FrameTexture m_frame;
    std::unique_ptr<YuvConverter> m_converter;
    // The raw bytes of a YUYV frame lie in a rectangle that the panorama cannot sample.
    std::unique_ptr<QOpenGLFramebufferObject> m_converted;
    bool m_hasPicture = false;
};
