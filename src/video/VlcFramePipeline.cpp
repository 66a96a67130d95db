#include "video/VlcFramePipeline.h"

#include "video/FormatChoice.h"

#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QThread>

VlcFramePipeline::VlcFramePipeline() = default;

VlcFramePipeline::~VlcFramePipeline()
{
    end();
}

std::optional<VlcFramePipeline::Announcement>
VlcFramePipeline::begin(const VideoSurfaceGate::Anchor &anchor, const Request &request)
{
    dropFrame();
    m_request = request;
    const auto width = quint32(request.size.width());
    const auto height = quint32(request.size.height());
    if (!makeContext(anchor))
        return {};

    const bool intel = m_context->hasExtension("GL_INTEL_map_texture");
    if (chooseFramePath(request.shaderColorConversion, intel) == FramePath::Interop) {
        m_interop = VideoInterop::open(request.size.width(), request.size.height(), request.format,
                                       request.window);
        if (m_interop) {
            const auto pitch = unsigned(m_interop->pitch());
            m_scratch.assign(std::size_t(pitch) * height * 2, 0);
            return Announcement{request.format, {pitch, pitch / 2, pitch / 2}, {height, 0, 0}};
        }
        m_request.format = VlcPixelFormat::Bgra;
    }

    m_layout = PlaneLayout::of(width, height, m_request.format);
    if (!fitsTheDriver(m_layout) || !prepareFrameTexture()) {
        end();
        return {};
    }
    return Announcement{m_request.format, m_layout.pitch, m_layout.planeHeight};
}

bool VlcFramePipeline::makeContext(const VideoSurfaceGate::Anchor &anchor)
{
    // libvlc opens a new thread for each video output, and a context is bound to its thread.
    if (!m_context || m_thread != QThread::currentThread()) {
        dropContext();
        m_anchor = anchor;
        m_thread = QThread::currentThread();
        m_context = std::make_unique<QOpenGLContext>();
        m_context->setShareContext(anchor.share);
        m_context->setFormat(anchor.surface->format());
        if (!m_context->create()) {
            dropContext();
            return false;
        }
    }
    if (makeCurrent())
        return true;
    dropContext();
    return false;
}

bool VlcFramePipeline::makeCurrent()
{
    if (!m_context || m_thread != QThread::currentThread())
        return false;
    // It stays current on the video thread between the callbacks.
    if (QOpenGLContext::currentContext() == m_context.get())
        return true;
    return m_context->makeCurrent(m_anchor.surface);
}

bool VlcFramePipeline::fitsTheDriver(const PlaneLayout &layout) const
{
    const TextureStorage storage = layout.storage();
    QOpenGLFunctions *gl = m_context->functions();
    GLint limit = 0;
    gl->glGetIntegerv(GL_MAX_TEXTURE_SIZE, &limit);
    if (layout.totalSize == 0 || m_request.size.width() > limit || m_request.size.height() > limit)
        return false;
    if (storage.target == GL_TEXTURE_RECTANGLE)
        gl->glGetIntegerv(GL_MAX_RECTANGLE_TEXTURE_SIZE, &limit);
    return storage.width <= limit && storage.height <= limit;
}

bool VlcFramePipeline::prepareFrameTexture()
{
    m_frame = std::make_unique<FrameTexture>();
    m_frame->create();
    return m_frame->isValid();
}

void VlcFramePipeline::makeStorage()
{
    m_hasStorage = true;
    m_fbo = std::make_unique<QOpenGLFramebufferObject>(
        m_request.size, QOpenGLFramebufferObject::CombinedDepthStencil, GL_TEXTURE_2D);
    if (m_interop) {
        m_shownTransfer = kInteropShown;
    } else {
        m_frame->setLayout(quint32(m_request.size.width()), quint32(m_request.size.height()),
                           m_request.format);
        const YuvSource source = yuvSourceOf(m_request.format, m_request.fullRange);
        if (source.fourcc != 0)
            m_converter = std::make_unique<YuvConverter>(source.fourcc, bigEndianFourcc("RGBA"),
                                                         source.fullRange, m_request.stitched);
        m_shownTransfer = int(m_frame->kind());
    }
    m_shownFormat = m_request.format;
    m_context->functions()->glFlush();
}

VlcFramePipeline::Locked VlcFramePipeline::lock(void **planes)
{
    const bool current = makeCurrent();
    const Locked result = current && !m_hasStorage ? Locked::FirstFrame : Locked::Frame;
    if (result == Locked::FirstFrame)
        makeStorage();

    std::array<std::uint8_t *, 3> memory{};
    if (m_interop) {
        auto surface = m_interop->lock();
        m_lost = !surface.bits;
        if (m_lost)
            surface = {m_scratch.data(), m_interop->pitch()};
        memory = VideoInterop::planes(surface, m_request.size.height());
    } else {
        m_lost = !current || !m_frame->plane(0);
        if (m_lost && m_scratch.empty())
            m_scratch.resize(m_layout.allocationSize());
        for (int i = 0; i < 3; ++i)
            memory[std::size_t(i)] =
                m_lost ? m_scratch.data() + m_layout.mappedOffset(i) : m_frame->plane(i);
        if (current)
            m_context->functions()->glFlush();
    }

    planes[0] = memory[0];
    if (isThreePlane(m_request.format) || m_request.format == VlcPixelFormat::Nv12)
        planes[1] = memory[1];
    if (isThreePlane(m_request.format))
        planes[2] = memory[2];
    return result;
}

std::optional<GLuint> VlcFramePipeline::unlock()
{
    if (m_lost || !makeCurrent())
        return {};
    if (m_interop)
        m_interop->unlockAndConvert();
    else
        m_frame->unmap();
    const GLuint name = updateTexture();
    if (!m_interop)
        m_context->functions()->glFlush();
    return name;
}

GLuint VlcFramePipeline::updateTexture()
{
    if (m_interop) {
        if (!m_blit)
            m_blit = std::make_unique<SwizzleBlit>(SwizzleBlit::RowOrder::TopRowFirst);
        m_interop->beginReading();
        m_fbo->bind();
        m_context->functions()->glViewport(0, 0, m_fbo->width(), m_fbo->height());
        m_blit->draw(m_interop->texture());
        m_fbo->release();
        m_interop->endReading();
        return m_fbo->texture();
    }
    m_frame->upload();
    if (!m_converter)
        return m_frame->textureId();
    m_fbo->bind();
    m_converter->convert(m_frame->texture(), m_fbo->width(), m_fbo->height());
    m_fbo->release();
    return m_fbo->texture();
}

void VlcFramePipeline::end()
{
    dropFrame();
    dropContext();
}

void VlcFramePipeline::dropFrame()
{
    m_shownTransfer = kNothingShown;
    makeCurrent();
    m_converter.reset();
    if (m_frame)
        m_frame->destroy();
    m_frame.reset();
    m_fbo.reset();
    m_blit.reset();
    m_interop.reset();
    m_scratch.clear();
    m_hasStorage = false;
    m_lost = false;
}

void VlcFramePipeline::dropContext()
{
    if (m_context && QOpenGLContext::currentContext() == m_context.get())
        m_context->doneCurrent();
    m_context.reset();
    m_thread = nullptr;
}

QString VlcFramePipeline::transferName() const
{
    const int shown = m_shownTransfer;
    if (shown == kNothingShown)
        return {};
    if (shown == kInteropShown)
        return QStringLiteral("DirectX interoperability");
    return textureTransferName(TextureTransferKind(shown));
}
