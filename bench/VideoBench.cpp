// What a played picture costs beyond libvlc's own work: the same clip decoded into plain memory is
// the baseline. The processor time is that of the whole process, per picture shown.

#include "video/FrameTexture.h"
#include "video/VlcFramePipeline.h"
#include "video/VlcHandles.h"
#include "video/VlcInstance.h"
#include "video/YuvConverter.h"

#include <benchmark/benchmark.h>

#include <QElapsedTimer>
#include <QGuiApplication>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QProcess>
#include <QSemaphore>

#include <atomic>
#include <cstdlib>
#include <ctime>
#include <new>

namespace {
thread_local bool counting = false;
std::atomic<int> allocations{0};
} // namespace

void *operator new(std::size_t bytes)
{
    if (counting)
        ++allocations;
    if (void *memory = std::malloc(bytes))
        return memory;
    throw std::bad_alloc();
}
void operator delete(void *memory) noexcept
{
    std::free(memory);
}
void operator delete(void *memory, std::size_t) noexcept
{
    std::free(memory);
}

namespace {

constexpr int kWidth = 1920;
constexpr int kHeight = 960;
constexpr int kPictures = 40;

VideoSurfaceGate::Anchor anchor;

double processSeconds()
{
    timespec time{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
    return double(time.tv_sec) + double(time.tv_nsec) * 1e-9;
}

/// Where the pictures of a played clip go.
class Sink
{
public:
    virtual ~Sink() = default;
    virtual bool begin() = 0;
    virtual void lock(void **planes) = 0;
    virtual void unlock() = 0;
    virtual void end() = 0;
};

class PlainMemory final : public Sink
{
public:
    bool begin() override { return true; }
    void lock(void **planes) override
    {
        for (int i = 0; i < 3; ++i)
            planes[i] = m_memory.data() + m_layout.cpuOffset(i);
    }
    void unlock() override {}
    void end() override {}

private:
    PlaneLayout m_layout = PlaneLayout::of(kWidth, kHeight, VlcPixelFormat::I420);
    std::vector<std::uint8_t> m_memory = std::vector<std::uint8_t>(m_layout.allocationSize());
};

/// Our buffer and upload, without the colour conversion, which is measured apart.
class Upload final : public Sink
{
public:
    bool begin() override
    {
        m_context = std::make_unique<QOpenGLContext>();
        m_context->setShareContext(anchor.share);
        m_context->setFormat(anchor.surface->format());
        if (!m_context->create() || !m_context->makeCurrent(anchor.surface))
            return false;
        m_frame = std::make_unique<FrameTexture>();
        m_frame->create();
        m_frame->setLayout(kWidth, kHeight, VlcPixelFormat::I420);
        return m_frame->isValid();
    }
    void lock(void **planes) override
    {
        for (int i = 0; i < 3; ++i)
            planes[i] = m_frame->plane(i);
        m_context->functions()->glFlush();
    }
    void unlock() override
    {
        m_frame->unmap();
        m_frame->upload();
        m_context->functions()->glFlush();
    }
    void end() override
    {
        m_frame->destroy();
        m_frame.reset();
        m_context->doneCurrent();
        m_context.reset();
    }

private:
    std::unique_ptr<QOpenGLContext> m_context;
    std::unique_ptr<FrameTexture> m_frame;
};

/// The player's own road, conversion included.
class Pipeline final : public Sink
{
public:
    bool begin() override
    {
        VlcFramePipeline::Request request;
        request.format = VlcPixelFormat::I420;
        request.size = QSize(kWidth, kHeight);
        return m_pipeline.begin(anchor, request).has_value();
    }
    void lock(void **planes) override { m_pipeline.lock(planes); }
    void unlock() override { benchmark::DoNotOptimize(m_pipeline.unlock()); }
    void end() override { m_pipeline.end(); }

private:
    VlcFramePipeline m_pipeline;
};

/// Plays the clip until kPictures have been shown.
class Run
{
public:
    explicit Run(Sink &sink)
        : m_sink(sink)
    {
        m_player.reset(libvlc_media_player_new(vlcInstance()));
        const VlcMediaHandle media(libvlc_media_new_path(vlcInstance(), ORBILENS_BINARY_DIR
                                                         "/tests/video/clips/large.mp4"));
        libvlc_media_add_option(media.get(), ":avcodec-hw=none");
        libvlc_media_player_set_media(m_player.get(), media.get());
        libvlc_video_set_callbacks(m_player.get(), lock, unlock, nullptr, this);
        libvlc_video_set_format_callbacks(m_player.get(), format, cleanup);
    }

    /// Processor seconds per picture after the first.
    double play()
    {
        m_clock.start();
        libvlc_media_player_play(m_player.get());
        m_first.acquire();
        m_firstPicture = double(m_clock.nsecsElapsed()) * 1e-9;
        const double start = processSeconds();
        m_last.acquire();
        const double seconds = processSeconds() - start;
        libvlc_media_player_stop(m_player.get());
        return seconds / (kPictures - 1);
    }
    double firstPicture() const { return m_firstPicture; }

private:
    static unsigned format(void **opaque, char *chroma, unsigned *width, unsigned *height,
                           unsigned *pitches, unsigned *lines)
    {
        auto *self = static_cast<Run *>(*opaque);
        std::copy_n("I420", 4, chroma);
        *width = kWidth;
        *height = kHeight;
        const auto layout = PlaneLayout::of(kWidth, kHeight, VlcPixelFormat::I420);
        std::copy(layout.pitch.begin(), layout.pitch.end(), pitches);
        std::copy(layout.planeHeight.begin(), layout.planeHeight.end(), lines);
        return self->m_sink.begin() ? 1 : 0;
    }
    static void cleanup(void *opaque) { static_cast<Run *>(opaque)->m_sink.end(); }
    static void *lock(void *opaque, void **planes)
    {
        auto *self = static_cast<Run *>(opaque);
        counting = self->m_shown > 0;
        self->m_sink.lock(planes);
        counting = false;
        return nullptr;
    }
    static void unlock(void *opaque, void *, void *const *)
    {
        auto *self = static_cast<Run *>(opaque);
        counting = self->m_shown > 0;
        self->m_sink.unlock();
        counting = false;
        ++self->m_shown;
        if (self->m_shown == 1)
            self->m_first.release();
        if (self->m_shown == kPictures)
            self->m_last.release();
    }

    Sink &m_sink;
    VlcPlayerHandle m_player;
    QElapsedTimer m_clock;
    QSemaphore m_first;
    QSemaphore m_last;
    double m_firstPicture = 0;
    int m_shown = 0; ///< libvlc's video thread
};

template <class Destination>
void playedPicture(benchmark::State &state)
{
    allocations = 0;
    for (auto _ : state) {
        Destination destination;
        state.SetIterationTime(Run(destination).play());
    }
    // Through operator new, in the callbacks of all pictures but the first.
    state.counters["allocations/frame"] =
        double(allocations) / double(state.iterations() * (kPictures - 1));
    if (std::is_same_v<Destination, Upload>)
        state.counters["limit"] = 1.15;
}
BENCHMARK(playedPicture<PlainMemory>)->Name("play/baseline")->Iterations(1)->UseManualTime();
BENCHMARK(playedPicture<Upload>)->Name("play/upload")->Iterations(1)->UseManualTime();
BENCHMARK(playedPicture<Pipeline>)->Name("play/upload_and_convert")->Iterations(1)->UseManualTime();

template <class Destination>
void firstPicture(benchmark::State &state)
{
    for (auto _ : state) {
        Destination destination;
        Run run(destination);
        run.play();
        state.SetIterationTime(run.firstPicture());
    }
}
BENCHMARK(firstPicture<PlainMemory>)
    ->Name("first_picture/baseline")
    ->Iterations(1)
    ->UseManualTime();
BENCHMARK(firstPicture<Pipeline>)->Name("first_picture/player")->Iterations(1)->UseManualTime();

/// One pass over a whole frame into a framebuffer of its size.
template <VlcPixelFormat format>
void pass(benchmark::State &state)
{
    QOpenGLContext context;
    context.setFormat(anchor.surface->format());
    if (!context.create() || !context.makeCurrent(anchor.surface)) {
        state.SkipWithError("no GL context");
        return;
    }
    {
        FrameTexture frame;
        frame.create();
        frame.setLayout(kWidth, kHeight, format);
        std::fill_n(frame.plane(0), frame.layout().totalSize, std::uint8_t(100));
        frame.unmap();
        frame.upload();
        QOpenGLFramebufferObject target(kWidth, kHeight);
        target.bind();
        context.functions()->glViewport(0, 0, kWidth, kHeight);
        SwizzleBlit copy(SwizzleBlit::RowOrder::TopRowFirst);
        YuvConverter converter(yuvSourceOf(format, false).fourcc, bigEndianFourcc("RGBA"), false,
                               false);
        const auto draw = [&] {
            if (isYuv(format))
                converter.convert(frame.texture(), kWidth, kHeight);
            else
                copy.draw(frame.textureId());
            context.functions()->glFinish();
        };
        draw();
        for (auto _ : state) {
            const double start = processSeconds();
            draw();
            state.SetIterationTime(processSeconds() - start);
        }
        target.release();
        frame.destroy();
    }
    context.doneCurrent();
}
BENCHMARK(pass<VlcPixelFormat::Bgra>)->Name("convert/baseline")->UseManualTime();
BENCHMARK(pass<VlcPixelFormat::I420>)->Name("convert/I420")->UseManualTime();
BENCHMARK(pass<VlcPixelFormat::Nv12>)->Name("convert/NV12")->UseManualTime();
BENCHMARK(pass<VlcPixelFormat::Yuyv>)->Name("convert/YUYV")->UseManualTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication::setAttribute(Qt::AA_UseDesktopOpenGL);
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    const QString clips = QStringLiteral(ORBILENS_BINARY_DIR "/tests/video/clips");
    if (QProcess::execute(QStringLiteral(ORBILENS_SOURCE_DIR "/tests/video/make-clips.sh"),
                          {clips}) != 0)
        return 1;
    QOffscreenSurface surface;
    surface.create();
    QOpenGLContext share;
    if (!share.create())
        return 1;
    anchor = {&surface, &share};
    benchmark::RunSpecifiedBenchmarks();
    releaseVlcInstance();
    return 0;
}
