#pragma once

// The road of one picture from libvlc's decoder to a texture: the GL context of libvlc's video
// thread, the buffer that the decoder writes, the upload and the colour conversion. Owned by the
// player item; begin, lock, unlock and end run on libvlc's video thread, one after the other.
//
// libvlc announces a format up to three times for one file and drops the first ones without a
// picture, so storage is made with the first picture of a format.

#include "video/FrameTexture.h"
#include "video/SwizzleBlit.h"
#include "video/VideoInterop.h"
#include "video/VideoSurfaceGate.h"
#include "video/YuvConverter.h"

#include <QSize>
#include <QString>

#include <array>
#include <atomic>
#include <memory>
#include <optional>
#include <vector>

class QOpenGLFramebufferObject;
class QThread;

class VlcFramePipeline
{
public:
    struct Request
    {
        VlcPixelFormat format = VlcPixelFormat::Unset;
        QSize size;
        bool fullRange = false;
        bool stitched = false;
        bool shaderColorConversion = true;
        WId window = 0;
    };

    /// What libvlc is told to write.
    struct Announcement
    {
        VlcPixelFormat format = VlcPixelFormat::Unset;
        std::array<unsigned, 3> pitches{};
        std::array<unsigned, 3> lines{};
    };

    /// What lock did besides giving memory.
    enum class Locked { Frame, FirstFrame };

    VlcFramePipeline();
    /// libvlc's video thread must have ended.
    ~VlcFramePipeline();
    VlcFramePipeline(const VlcFramePipeline &) = delete;
    VlcFramePipeline &operator=(const VlcFramePipeline &) = delete;

    /// Makes the thread's context and decides how frames travel. Nothing when no context can be
    /// made current, no texture can be made, or the frame is larger than the driver takes.
    [[nodiscard]] std::optional<Announcement> begin(const VideoSurfaceGate::Anchor &anchor,
                                                    const Request &request);
    /// Gives the decoder memory for each plane of the format announced.
    Locked lock(void **planes);
    /// Ends the writing and brings the picture into a texture, whose name is returned; nothing
    /// when the picture was lost. The name stays the same from frame to frame of one format.
    [[nodiscard]] std::optional<GLuint> unlock();
    /// Deletes all of it, the thread's context too.
    void end();
    /// Pixels of the frames begun.
    QSize frameSize() const { return m_request.size; }

    // The rest may be asked on any thread.

    /// How frames reach the texture, as the scene shows it; empty while none do.
    QString transferName() const;
    /// The format of the frames that arrive, or arrived last.
    VlcPixelFormat shownFormat() const { return m_shownFormat; }

private:
    bool makeCurrent();
    bool makeContext(const VideoSurfaceGate::Anchor &anchor);
    bool fitsTheDriver(const PlaneLayout &layout) const;
    bool prepareFrameTexture();
    void makeStorage();
    GLuint updateTexture();
    void dropFrame();
    void dropContext();

    Request m_request;
    PlaneLayout m_layout;
    VideoSurfaceGate::Anchor m_anchor;
    QThread *m_thread = nullptr; ///< of m_context
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<FrameTexture> m_frame;
    std::unique_ptr<YuvConverter> m_converter; ///< null for BGRA and RV32
    std::unique_ptr<QOpenGLFramebufferObject> m_fbo;
    std::unique_ptr<VideoInterop> m_interop;
    std::unique_ptr<SwizzleBlit> m_blit;
    std::vector<std::uint8_t> m_scratch; ///< where lost pictures are written to
    bool m_hasStorage = false;
    bool m_lost = false; ///< the picture being written goes to m_scratch

    static constexpr int kNothingShown = -1;
    static constexpr int kInteropShown = 100;
    std::atomic<int> m_shownTransfer{kNothingShown}; ///< a TextureTransferKind or one of the above
    std::atomic<VlcPixelFormat> m_shownFormat{VlcPixelFormat::Unset};
};
