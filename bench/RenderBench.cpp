// The picture: the generated shader against a bare equirectangular one on the same context, and
// what paint() allocates against an item that only does what the toolkit asks of every item; and a
// frame that serves a snapshot against one that draws as often and reads back.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"
#include "render/PanoramaProgram.h"
#include "render/ShaderText.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLPaintDevice>
#include <QPainter>
#include <QThreadPool>

#include <cstdlib>

// The C library's own names of what is replaced below.
extern "C" void *__libc_malloc(size_t size);               // NOLINT
extern "C" void *__libc_calloc(size_t count, size_t size); // NOLINT
extern "C" void *__libc_realloc(void *block, size_t size); // NOLINT

namespace {

thread_local long allocations = 0;

constexpr QSize kFrame(1280, 720);
const char *const kLimit = "limit";

/// The least that shows an equirectangular picture through a flat window.
constexpr char kBareFragment[] = R"(#ifdef GL_ES
precision highp float;
#endif
varying highp vec4 texCoord;
uniform sampler2D uSampler;
uniform mat4 uMatViewInverse;
uniform vec2 uRatio;
uniform float uFov;
void main(){
vec2 s = (2.0 * texCoord.xy - 1.0) * uRatio * tan(radians(uFov) / 2.0);
vec3 d = (uMatViewInverse * vec4(s, -1.0, 1.0)).xyz;
vec2 uv = vec2(atan(d.x, -d.z) / 6.283185308 + 0.5, acos(d.y / length(d)) / 3.141592654);
gl_FragColor = vec4(texture2D(uSampler, uv).rgb, 1.0);
}
)";

/// Context, target and a source picture, shared by all benchmarks.
class Stage
{
public:
    Stage()
    {
        m_surface.create();
        m_context.create();
        m_context.makeCurrent(&m_surface);
        m_target = std::make_unique<QOpenGLFramebufferObject>(kFrame);
        m_second = std::make_unique<QOpenGLFramebufferObject>(kFrame);
        m_target->bind();
        QImage picture(2048, 1024, QImage::Format_RGBA8888);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, qRgb(x / 8, y / 4, (x ^ y) & 255));
        functions()->glGenTextures(1, &m_texture);
        functions()->glBindTexture(GL_TEXTURE_2D, m_texture);
        for (const GLenum filter : {GL_TEXTURE_MIN_FILTER, GL_TEXTURE_MAG_FILTER})
            functions()->glTexParameteri(GL_TEXTURE_2D, filter, GL_LINEAR);
        functions()->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width(), picture.height(), 0,
                                  GL_RGBA, GL_UNSIGNED_BYTE, picture.constBits());
        functions()->glViewport(0, 0, kFrame.width(), kFrame.height());
    }

    static Stage &instance()
    {
        static auto *stage = new Stage; // the application ends before it
        return *stage;
    }

    QOpenGLFunctions *functions() { return m_context.functions(); }
    GLuint texture() const { return m_texture; }

    /// Binds the target before the first frame of a benchmark.
    void begin() { m_target->bind(); }

    /// Binds a second target: what is drawn into one and the same could be dropped where it is
    /// drawn over.
    void beginSecond() { m_second->bind(); }
    QImage readSecond() const { return m_second->toImage(false); }

    /// Times @p draw, but for the first frame, which builds the driver's programs.
    template <class Draw>
    void measure(benchmark::State &state, Draw draw)
    {
        const auto frame = [&] {
            draw();
            functions()->glFinish();
        };
        frame();
        for (auto _ : state)
            frame();
    }

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
    std::unique_ptr<QOpenGLFramebufferObject> m_target;
    std::unique_ptr<QOpenGLFramebufferObject> m_second;
    GLuint m_texture = 0;
};

const QMatrix4x4 &turned()
{
    static const QMatrix4x4 matrix = CameraMath::matrixFromAngles({0.4F, 0.2F, 0.1F});
    return matrix;
}

void bareShader(benchmark::State &state)
{
    Stage &stage = Stage::instance();
    stage.begin();
    QuadProgram program;
    program.build(shader::vertexText(), QLatin1String(kBareFragment));
    const int rotation = program.uniformLocation("uMatViewInverse");
    const int ratio = program.uniformLocation("uRatio");
    const int fov = program.uniformLocation("uFov");
    const int sampler = program.uniformLocation("uSampler");
    stage.measure(state, [&] {
        program.bind();
        program.set(rotation, turned());
        program.set(ratio, QVector2D(16.0F / 9, 1));
        program.set(fov, 90.0F);
        program.set(sampler, 0);
        stage.functions()->glActiveTexture(GL_TEXTURE0);
        stage.functions()->glBindTexture(GL_TEXTURE_2D, stage.texture());
        program.draw(stage.functions(), QuadProgram::fullViewport());
    });
}

void mainShader(benchmark::State &state, int projection)
{
    Stage &stage = Stage::instance();
    stage.begin();
    shader::ShaderKey key;
    key.projection = projection;
    PanoramaProgram program;
    // As the view builds it for a whole panorama.
    program.build(shader::vertexText(),
                  shader::withFixedUniforms(shader::fragmentText(key), {true, true}));
    PanoramaUniforms uniforms;
    uniforms.matrix = QuadProgram::fullViewport();
    uniforms.viewport = viewportParameters(kFrame, EyeLayout::Single, 1.0);
    uniforms.matViewInverse = turned();
    uniforms.yawMin = -CameraMath::kPi;
    uniforms.yawMax = CameraMath::kPi;
    uniforms.pitchMin = -CameraMath::kPi / 2;
    uniforms.pitchMax = CameraMath::kPi / 2;
    const shader::OrvexParameters orvex = shader::orvexParameters(uniforms.fov);
    uniforms.projScale = orvex.scale;
    uniforms.projectionDistance = orvex.distance;
    stage.measure(state, [&] { program.draw(stage.functions(), uniforms, stage.texture()); });
    state.counters[kLimit] = 1.25;
}

/// Runs @p paint as an item's frame and reports what the thread that paints allocates.
template <class Paint>
void countAllocations(benchmark::State &state, Paint paint)
{
    Stage &stage = Stage::instance();
    stage.begin();
    QOpenGLPaintDevice device(kFrame);
    long counted = 0;
    long frames = 0;
    for (auto _ : state) {
        QPainter painter(&device);
        const long before = allocations;
        paint(&painter);
        stage.functions()->glFinish();
        counted += frames > 1 ? allocations - before : 0; // the first frames build the programs
        ++frames;
    }
    state.counters["allocations/frame"] = double(counted) / double(std::max(1L, frames - 2));
}

void paintBare(benchmark::State &state)
{
    Stage &stage = Stage::instance();
    QuadProgram program;
    program.build(shader::vertexText(), QLatin1String(kBareFragment));
    countAllocations(state, [&](QPainter *painter) {
        painter->beginNativePainting();
        program.bind();
        stage.functions()->glBindTexture(GL_TEXTURE_2D, stage.texture());
        program.draw(stage.functions(), QuadProgram::fullViewport());
        painter->endNativePainting();
    });
}

void paintView(benchmark::State &state)
{
    auto *application = static_cast<Application *>(qApp);
    application->textureProvider()->setTextureId(int(Stage::instance().texture()));
    OrbilensView view;
    view.setSize(kFrame);
    view.init(application);
    countAllocations(state, [&](QPainter *painter) { view.paint(painter); });
}

/// The view with a picture of a medium, which is what there is to take a snapshot of.
class SnapshotScene
{
public:
    SnapshotScene()
    {
        auto *application = static_cast<Application *>(qApp);
        application->textureProvider()->setTextureId(int(Stage::instance().texture()));
        m_player.setProperty("mediaSource", QStringLiteral("still.jpg"));
        m_loader.setProperty("mediaPlayer", QVariant::fromValue(&m_player));
        application->globalObject()->setMediaLoader(&m_loader);
        m_view.setSize(kFrame);
        m_view.init(application);
        paint();
    }
    ~SnapshotScene() { static_cast<Application *>(qApp)->globalObject()->setMediaLoader(nullptr); }

    void request() { m_view.setPrintScreenRequested(int(SnapshotKind::Snap)); }
    void paint()
    {
        Stage::instance().begin();
        paintBound();
    }
    void paintBound()
    {
        QOpenGLPaintDevice device(kFrame);
        QPainter painter(&device);
        m_view.paint(&painter);
    }

private:
    QObject m_player;
    QObject m_loader;
    OrbilensView m_view;
};

void frameAndReadback(benchmark::State &state)
{
    SnapshotScene scene;
    for (auto _ : state) {
        scene.paint();
        Stage::instance().beginSecond();
        scene.paintBound(); // the snapshot's own picture
        benchmark::DoNotOptimize(Stage::instance().readSecond());
    }
}

void frameWithSnapshot(benchmark::State &state)
{
    SnapshotScene scene;
    for (auto _ : state) {
        state.PauseTiming();
        QThreadPool::globalInstance()->waitForDone(); // the files of those before
        scene.paint(); // as in a film: the caches hold the picture again, not the file
        Stage::instance().functions()->glFinish();
        scene.request();
        state.ResumeTiming();
        scene.paint();
        Stage::instance().functions()->glFinish();
    }
    state.counters[kLimit] = 1.15;
}

BENCHMARK(frameAndReadback)
    ->Name("snapshot/baseline")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(frameWithSnapshot)->Name("snapshot/frame")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(bareShader)->Name("shader/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(mainShader, rectilinear, KShaderCodeBuilder::RECTILINEAR)
    ->Name("shader/rectilinear")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(mainShader, orvex, KShaderCodeBuilder::ORVEX)
    ->Name("shader/orvex")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(paintBare)->Name("paint/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(paintView)->Name("paint/view")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

// Every allocation of the process passes here, also those of libraries.
extern "C" void *malloc(size_t size)
{
    ++allocations;
    return __libc_malloc(size);
}

extern "C" void *calloc(size_t count, size_t size)
{
    ++allocations;
    return __libc_calloc(count, size);
}

extern "C" void *realloc(void *block, size_t size)
{
    ++allocations;
    return __libc_realloc(block, size);
}
