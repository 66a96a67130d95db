// A headset eye against the main view at the same size, both as a finished frame: cleared target,
// uniforms, one draw. Both look at the same picture through a flat window of the same field of
// view.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "hmd/KHmd.h"
#include "hmd/WorkerThreadVR.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"

#include <benchmark/benchmark.h>

#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QOpenGLFramebufferObject>
#include <QOpenGLFunctions>
#include <QOpenGLPaintDevice>
#include <QPainter>
#include <QSemaphore>

namespace {

constexpr QSize kFrame(1080, 1200); // of one eye of common devices
constexpr int kRequest = 1;

/// A device without a runtime, whose thread draws one eye each time it is asked.
class BenchWorker : public WorkerThreadVR
{
public:
    using WorkerThreadVR::WorkerThreadVR;

    void drawOne()
    {
        m_asked.release(kRequest);
        m_drawn.acquire(kRequest);
    }
    void end()
    {
        stop();
        m_asked.release(kRequest);
        wait();
    }

protected:
    void run() override
    {
        if (makeCurrent())
            renderLoop();
        releaseGraphics();
    }
    void renderLoop() override
    {
        QMatrix4x4 projection;
        projection.perspective(90, float(kFrame.width()) / float(kFrame.height()), 0.1F, 30);
        setEye(0, projection, {}, kFrame);
        QOpenGLFramebufferObject target(kFrame);
        for (;;) {
            m_asked.acquire(kRequest);
            if (isInterruptionRequested())
                return;
            target.bind();
            renderEye(0);
            glContext()->functions()->glFinish();
            m_drawn.release(kRequest);
        }
    }
    void headVelocity(float[3]) override {}
    int controllerCommand() override { return 0; }

private:
    QSemaphore m_asked;
    QSemaphore m_drawn;
};

class BenchHmd : public KHmd
{
public:
    using KHmd::KHmd;
    void startThread() override {}
    void stopThread() override {}
};

/// What both draw from, in a context of this thread.
class Stage
{
public:
    Stage()
    {
        m_surface.create();
        m_context.create();
        m_context.makeCurrent(&m_surface);
        application()->checkOpenGLVersion();
        QImage picture(2048, 1024, QImage::Format_RGBA8888);
        for (int y = 0; y < picture.height(); ++y)
            for (int x = 0; x < picture.width(); ++x)
                picture.setPixel(x, y, qRgb(x / 8, y / 4, (x ^ y) & 255));
        GLuint texture = 0;
        functions()->glGenTextures(1, &texture);
        functions()->glBindTexture(GL_TEXTURE_2D, texture);
        functions()->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width(), picture.height(), 0,
                                  GL_RGBA, GL_UNSIGNED_BYTE, picture.constBits());
        functions()->glFinish();
        application()->textureProvider()->setTextureId(int(texture));
        application()->shaderBuilder()->setProjection(KShaderCodeBuilder::RECTILINEAR);
    }

    static Stage &instance()
    {
        static auto *stage = new Stage; // the application ends before it
        return *stage;
    }
    static Application *application() { return static_cast<Application *>(qApp); }

    QOpenGLFunctions *functions() { return m_context.functions(); }

private:
    QOffscreenSurface m_surface;
    QOpenGLContext m_context;
};

void mainView(benchmark::State &state)
{
    Stage &stage = Stage::instance();
    QOpenGLFramebufferObject target(kFrame);
    target.bind();
    stage.functions()->glViewport(0, 0, kFrame.width(), kFrame.height());
    QOpenGLPaintDevice device(kFrame);
    OrbilensView view;
    view.setSize(kFrame);
    view.init(Stage::application());
    const auto draw = [&] {
        QPainter painter(&device);
        view.paint(&painter);
        painter.end();
        stage.functions()->glFinish();
    };
    draw(); // builds its programs
    for (auto _ : state)
        draw();
}

void eye(benchmark::State &state)
{
    Stage::instance();
    BenchHmd hmd(Stage::application());
    BenchWorker worker(&hmd);
    if (!worker.prepareContext(Stage::application()->sharedGlContext())) {
        state.SkipWithError("no context");
        return;
    }
    worker.start();
    worker.drawOne(); // builds its programs
    for (auto _ : state)
        worker.drawOne();
    worker.end();
    state.counters["limit"] = 1.25;
}

BENCHMARK(mainView)->Name("headset/baseline")->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(eye)->Name("headset/eye")->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
