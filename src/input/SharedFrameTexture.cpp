#include "input/SharedFrameTexture.h"

#include <QOpenGLContext>
#include <QOpenGLFunctions>

#include <algorithm>

SharedFrameTexture::SharedFrameTexture()
{
    m_frame.create();
}

SharedFrameTexture::~SharedFrameTexture()
{
    m_frame.destroy();
}

int SharedFrameTexture::largestTexture()
{
    GLint flat = 0;
    GLint rectangle = 0;
    QOpenGLFunctions *functions = QOpenGLContext::currentContext()->functions();
    functions->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &flat);
    functions->glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE, &rectangle);
    return std::min(flat, rectangle);
}

int SharedFrameTexture::textureId() const
{
    if (!m_hasPicture)
        return 0;
    return m_converted ? int(m_converted->texture()) : int(m_frame.textureId());
}

QSize SharedFrameTexture::size() const
{
    return m_hasPicture ? QSize(int(m_frame.width(0)), int(m_frame.height(0))) : QSize(-1, -1);
}

bool SharedFrameTexture::sameLayout(quint32 width, quint32 height, VlcPixelFormat format) const
{
    return m_frame.width(0) == width && m_frame.height(0) == height &&
           m_frame.layout().format == format;
}

bool SharedFrameTexture::isReplacedBy(quint32 width, quint32 height, VlcPixelFormat format) const
{
    return m_hasPicture && !sameLayout(width, height, format);
}

void SharedFrameTexture::setLayout(quint32 width, quint32 height, VlcPixelFormat format)
{
    if (sameLayout(width, height, format))
        return;
    m_hasPicture = false;
    m_frame.setLayout(width, height, format);
    m_converted.reset();
    if (isYuv(format) && m_frame.layout().totalSize != 0) {
        m_converted = std::make_unique<QOpenGLFramebufferObject>(
            int(width), int(height), QOpenGLFramebufferObject::NoAttachment, GL_TEXTURE_2D);
    }
}

void SharedFrameTexture::endFrame(bool complete)
{
    m_frame.unmap();
    if (!complete)
        return;
    m_frame.upload();
    if (m_converted)
        convert();
    m_hasPicture = !m_converted || m_converted->isValid();
}

void SharedFrameTexture::convert()
{
    if (!m_converter) {
        const YuvSource source = yuvSourceOf(m_frame.layout().format, false);
        m_converter = std::make_unique<YuvConverter>(source.fourcc, bigEndianFourcc("RGBA"),
                                                     source.fullRange, false);
    }
    if (!m_converted->bind())
        return;
    m_converter->convert(m_frame.texture(), m_converted->width(), m_converted->height());
    m_converted->release();
}
