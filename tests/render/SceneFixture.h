#pragma once

// A window with an OrbilensView in it, and the peers that the view reads; for the suites of the
// view and of the texture provider. The window is 160 by 120.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"
#include "settings/KSettings.h"
#include "support/PanoramaReference.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QOpenGLContext>
#include <QOpenGLFunctions>
#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

namespace test {

class SceneFixture : public ::testing::Test
{
protected:
    SceneFixture()
    {
        application->settings()->set("instance/output/projection", KShaderCodeBuilder::RECTILINEAR);
        application->settings()->set("instance/input/projection",
                                     KShaderCodeBuilder::EQUIRECTANGULAR);
        application->settings()->set("instance/input/stereoscopy", KShaderCodeBuilder::STEREO_2D);
        application->settings()->set("instance/output/display", "standard");
        application->setTextureProvider(
            std::make_unique<KTextureProvider>(application, true, false));
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<KShaderCodeBuilder>(application));
        state = application->globalObject();
        builder = application->shaderBuilder();
        provider = application->textureProvider();
        state->setFovLimits();

        makeWindow();
    }

    ~SceneFixture() override
    {
        window.reset();
        application->setHeadsetView(nullptr);
        application->setShaderBuilder(nullptr);
        application->setGlobalObject(nullptr);
        application->setTextureProvider(nullptr);
    }

    /// With a new view in it; the old ones go.
    void makeWindow()
    {
        window = std::make_unique<QQuickView>();
        window->setFlags(Qt::FramelessWindowHint); // window managers widen small framed windows
        window->setGeometry(0, 0, 160, 120);
        view = new OrbilensView(window->contentItem());
        view->setSize(QSizeF(160, 120));
        view->init(application);
    }

    void show()
    {
        window->show();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(window.get()));
    }

    /// The window with the peers as they stand now; else the view only repaints after a swap.
    QImage grab()
    {
        view->update();
        return window->grabWindow();
    }

    /// Uploads @p picture inside the scene graph, as a player would, and returns its name.
    int uploadTexture(const QImage &picture)
    {
        std::atomic<int> name{0};
        const auto upload = connectOnce(&QQuickWindow::beforeSynchronizing, [&name, picture] {
            QOpenGLFunctions *functions = QOpenGLContext::currentContext()->functions();
            GLuint texture = 0;
            functions->glGenTextures(1, &texture);
            functions->glBindTexture(GL_TEXTURE_2D, texture);
            functions->glTexImage2D(GL_TEXTURE_2D, 0, GL_RGBA, picture.width(), picture.height(), 0,
                                    GL_RGBA, GL_UNSIGNED_BYTE, picture.constBits());
            name = int(texture);
        });
        grab();
        QObject::disconnect(upload);
        return name;
    }

    template <class Signal, class Function>
    QMetaObject::Connection connectOnce(Signal signal, Function function)
    {
        auto done = std::make_shared<std::atomic<bool>>(false);
        return QObject::connect(
            window.get(), signal, window.get(),
            [done, function] {
                if (!done->exchange(true))
                    function();
            },
            Qt::DirectConnection);
    }

    /// What the view must show of @p picture in one eye, by the state of the peers.
    void expectPanorama(const QImage &eyeView, const QImage &picture, EyeLayout layout, int eye,
                        const QMatrix4x4 &rotation)
    {
        shader::ShaderKey key;
        key.projection = builder->projection();
        key.projectionSource = builder->projectionSource();
        key.stereoMode = builder->stereoMode();
        PanoramaUniforms uniforms;
        uniforms.viewport = viewportParameters(view->size(), layout, 1.0);
        uniforms.matViewInverse = rotation;
        uniforms.eye = eye;
        uniforms.fov = state->fov();
        uniforms.yawMin = state->yawMin();
        uniforms.yawMax = state->yawMax();
        uniforms.pitchMin = state->pitchMin();
        uniforms.pitchMax = state->pitchMax();
        const auto orvex = KShaderCodeBuilder::orvexProjectionParameters(state->fov());
        uniforms.projScale = orvex.first;
        uniforms.projectionDistance = orvex.second;
        const PixelComparison result =
            comparePixels(eyeView.convertToFormat(QImage::Format_RGB32),
                          PanoramaReference(key, uniforms), picture, 3, kClearColor);
        EXPECT_EQ(result.wrong, 0)
            << "first at " << result.firstWrong.x() << "," << result.firstWrong.y();
        EXPECT_LE(result.onEdges, 0.12 * result.pixels);
    }

    static constexpr QRgb kClearColor = 0xff222222;

    WarningGuard guard;
    Application *application = static_cast<Application *>(qApp);
    KGlobalObject *state = nullptr;
    KShaderCodeBuilder *builder = nullptr;
    KTextureProvider *provider = nullptr;
    std::unique_ptr<QQuickView> window;
    OrbilensView *view = nullptr;
    const QImage pattern = directionPattern(QSize(512, 512));
};

} // namespace test
