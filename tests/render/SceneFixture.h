#pragma once

// A window with an OrbilensView in it, and the peers that the view reads; for the suites of the
// view and of the texture provider. The window is 160 by 120.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "render/OrbilensView.h"
#include "settings/KSettings.h"
#include "support/GlStage.h"
#include "support/PanoramaReference.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QQuickView>
#include <QSignalSpy>
#include <QTest>

namespace test {

struct SceneFixture : ::testing::Test
{
    SceneFixture()
    {
        setting("instance/output/projection", KShaderCodeBuilder::RECTILINEAR);
        setting("instance/input/projection", KShaderCodeBuilder::EQUIRECTANGULAR);
        setting("instance/input/stereoscopy", KShaderCodeBuilder::STEREO_2D);
        setting("instance/output/display", "standard");
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

    void setting(const char *key, const QVariant &value)
    {
        application->settings()->set(key, value);
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

    /// Runs @p function on the render thread, where the scene graph's context is current.
    template <class Function>
    int onRenderThread(Function function)
    {
        std::atomic<int> result{0};
        const auto once = QObject::connect(
            window.get(), &QQuickWindow::beforeSynchronizing, window.get(),
            [&] { result = result ? int(result) : function(); }, Qt::DirectConnection);
        grab();
        QObject::disconnect(once);
        return result;
    }

    int uploadTexture(const QImage &picture)
    {
        return onRenderThread([&] { return int(test::uploadTexture(picture)); });
    }

    /// @p eyeView must show @p picture by the state of the peers.
    void expectPanorama(const QImage &eyeView, const QImage &picture, const QMatrix4x4 &rotation,
                        EyeLayout layout = EyeLayout::Single, int eye = 0)
    {
        PanoramaReference reference;
        reference.key.projection = builder->projection();
        reference.key.stereoMode = builder->stereoMode();
        PanoramaUniforms &uniforms = reference.uniforms;
        uniforms.viewport = viewportParameters(view->size(), layout, 1.0);
        uniforms.matViewInverse = rotation;
        uniforms.eye = eye;
        uniforms.fov = state->fov();
        uniforms.yawMin = state->yawMin();
        uniforms.yawMax = state->yawMax();
        uniforms.pitchMin = state->pitchMin();
        uniforms.pitchMax = state->pitchMax();
        const QString faults = pixelFaults(eyeView.convertToFormat(QImage::Format_RGB32), reference,
                                           picture, kClearColor);
        EXPECT_TRUE(faults.isEmpty()) << faults.toStdString();
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
