#pragma once

// An Application with the peers that a headset's thread reads, a GL context to share with, and what
// the suites of all device families ask of a device.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "hmd/HeadMotion.h"
#include "hmd/HeadsetInterface.h"
#include "hmd/HeadsetScript.h"
#include "hmd/KHmd.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "support/GlStage.h"
#include "support/PanoramaReference.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <algorithm>

namespace test {

/// What one eye of a device sees, as the reference needs it.
struct EyeSight
{
    QVector4D tangents; ///< left, right, up, down
    QMatrix4x4 eyeToHead;
};

/// An interface inside the headset that shows two textures and notes what it is told.
class NotedInterface : public HeadsetInterface
{
public:
    bool isShown() const override { return shown; }
    QMatrix4x4 orientation() const override { return frame; }
    int textureId(int layer) const override { return textures[layer]; }
    QSize textureSize(int) const override { return {256, 128}; }
    bool detectTap(const std::array<float, 3> &, float) override { return nod.exchange(false); }
    void buildGazeEvents(bool tap) override { gazes += tap ? 'T' : 'g'; }
    void buildEvents(int code) override { codes += QByteArray::number(code); }

    std::atomic<bool> shown{false}, nod{false};
    QMatrix4x4 frame;                           // set before a thread asks, as are the textures
    std::array<std::atomic<int>, 2> textures{}; // panel, foreground
    QByteArray codes, gazes;
};

template <class Device>
struct HeadsetFixture : ::testing::Test
{
    using B = KShaderCodeBuilder;

    HeadsetFixture()
    {
        setting("application/hmd/hmdMode", true);
        setting("application/hmd/gazeUI", false);
        setting("application/input/stereoscopy", B::STEREO_2D);
        application->setTextureProvider(
            std::make_unique<KTextureProvider>(application, true, false));
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<B>(application));
        builder = application->shaderBuilder();
        application->globalObject()->setFovLimits();
        application->checkOpenGLVersion(); // with the stage's context current
        show(directionPattern(QSize(512, 512)));
        script.set(HeadsetScript::headLines({}));
    }

    ~HeadsetFixture() override
    {
        application->setHmd(nullptr);
        expectCleanEnd();
        application->setShaderBuilder(nullptr);
        application->setGlobalObject(nullptr);
        application->setTextureProvider(nullptr);
    }

    void setting(const char *key, const QVariant &value)
    {
        application->settings()->set(key, value);
    }

    int upload(const QImage &image)
    {
        const GLuint texture = uploadTexture(image);
        stage.functions()->glFinish(); // other contexts draw from it
        return int(texture);
    }
    void show(const QImage &image)
    {
        pattern = image;
        application->textureProvider()->setTextureId(upload(image));
    }

    KHmd *start()
    {
        application->setHmd(std::make_unique<Device>(application));
        application->hmd()->startThread();
        return application->hmd();
    }
    KHmd *startTracking()
    {
        KHmd *hmd = start();
        EXPECT_SOON(HeadMotion::isPose(hmd->hmdPose())) << hmd->logMessage().toStdString();
        EXPECT_TRUE(hmd->available() && hmd->activated() && builder->hmdMode());
        return hmd;
    }
    bool turnsTo(const QMatrix4x4 &pose)
    {
        return soon([&] {
            const QMatrix4x4 difference = application->hmd()->hmdPose() - pose;
            return std::all_of(difference.constData(), difference.constData() + 16,
                               [](float number) { return std::abs(number) < 1e-5F; });
        });
    }

    void expectOff(KHmd *hmd)
    {
        EXPECT_FALSE(hmd->available() || hmd->activated() || builder->hmdMode());
        EXPECT_FALSE(HeadMotion::isPose(hmd->hmdPose()));
    }
    void expectCleanEnd()
    {
        EXPECT_EQ(script.count("wrong"), 0) << "calls that the runtime would refuse";
        EXPECT_EQ(script.count("unended"), 0);
    }

    void describe(int eye, const EyeSight &sight)
    {
        const QByteArray number = QByteArray::number(eye);
        script.set("frustum" + number + ' ' + HeadsetScript::numbers(sight.tangents) + ";eye" +
                   number + ' ' + HeadsetScript::numbers(sight.eyeToHead));
    }

    /// Both eyes see what the head looks at, whatever the medium. Where the view is shifted the
    /// medium is turned too and the lenses stand to the head as @p rightLens and its mirror.
    void expectBothEyes(const QString &family, const QMatrix4x4 &rightLens)
    {
        constexpr int kSphere = B::EQUIRECTANGULAR;
        constexpr int kOver = B::STEREO_3D_OVERUNDER;
        constexpr int kBeside = B::STEREO_3D_SIDEBYSIDE;
        constexpr int kInverted = B::STEREO_3D_SIDEBYSIDE_INVERTED;
        // The tangents are the left eye's, which the right one has mirrored.
        const std::tuple<const char *, int, int, CameraAngles, float, QVector4D> cases[] = {
            {"straight", kSphere, B::STEREO_2D, {}, 0, {1, 1, 1, 1}},
            {"lens", kSphere, kOver, {0.8F, -0.5F, 0.4F}, 1, {1.4F, 0.9F, 1.1F, 1}},
            {"cubes", B::CUBEMAP, kInverted, {-2.1F, 1.1F, -0.7F}, -2, {1.6F, 0.7F, 0.9F, 1.2F}},
            {"flat", B::STANDARD, kBeside, {0.3F, 0.2F, 0.4F}, 0, {1.2F, 1.2F, 1.08F, 1.08F}},
        };
        for (const auto &[name, source, stereo, angles, shiftYaw, left] : cases) {
            SCOPED_TRACE(name);
            builder->setProjectionSource(source);
            builder->setStereoMode(stereo);
            const QMatrix4x4 head = CameraMath::matrixFromAngles(angles);
            const bool turned = shiftYaw != 0;
            application->globalObject()->setOffsetMatrix(
                CameraMath::matrixFromAngles({turned ? 0.4F : 0, 0, 0}));
            const QMatrix4x4 lens = turned ? rightLens : QMatrix4x4();
            const QVector4D right(left.y(), left.x(), left.z(), left.w());
            const EyeSight sights[] = {{left, lens.inverted()}, {right, lens}};
            script.set("size 160 144;" + HeadsetScript::headLines(head));
            for (int eye = 0; eye < 2; ++eye)
                describe(eye, sights[eye]);
            startTracking()->setShiftYaw(shiftYaw);
            const QMatrix4x4 pose = CameraMath::matrixFromAngles({-shiftYaw, 0, 0}) * head;
            ASSERT_TRUE(turnsTo(pose));
            shader::ShaderKey key;
            key.projectionSource = source;
            key.stereoMode = stereo;
            const auto images = script.eyePictures(family + '-' + name);
            for (std::size_t eye = 0; eye < 2; ++eye)
                expectEye(images[eye], int(eye), sights[eye], pose, key, pattern);
            application->setHmd(nullptr);
        }
    }

    /// Ended while it starts, waits, draws and sleeps.
    void expectEndsInAnyMoment()
    {
        for (int i = 0; i < 20; ++i) {
            KHmd *hmd = start();
            if (i % 4 != 0) {
                EXPECT_SOON(hmd->available());
            }
            if (i % 4 == 2)
                script.eyePictures("straight");
            if (i % 4 == 3)
                hmd->setActivated(false); // from its sleep of a second
            QSignalSpy finished(hmd, &KHmd::workerThreadFinished);
            hmd->stopThread();
            hmd->stopThread();
            EXPECT_EQ(finished.count(), 1);
            expectOff(hmd);
            expectCleanEnd();
        }
    }

    /// @p image must be what an eye with @p sight, in a head with @p pose, sees of @p picture.
    void expectEye(const QImage &image, int eye, const EyeSight &sight, const QMatrix4x4 &pose,
                   shader::ShaderKey key, const QImage &picture, QRgb background = 0xff000000)
    {
        key.forceRectilinear = true;
        PanoramaReference reference;
        reference.key = key;
        const KGlobalObject *state = application->globalObject();
        PanoramaUniforms &uniforms = reference.uniforms;
        uniforms.eye = eye;
        uniforms.viewport = viewportParameters(image.size(), EyeLayout::Single, 1.0);
        // The reference looks through a symmetric square of 90 degrees: shift and scale it.
        const QVector4D &t = sight.tangents;
        const QVector2D ratio = uniforms.viewport.sizeRatio;
        QMatrix4x4 throughEye;
        throughEye(0, 0) = (t.x() + t.y()) / 2 / ratio.x();
        throughEye(0, 2) = (t.x() - t.y()) / 2;
        throughEye(1, 1) = (t.z() + t.w()) / 2 / ratio.y();
        throughEye(1, 2) = (t.w() - t.z()) / 2;
        uniforms.matViewInverse =
            state->offsetMatrix() * pose * HeadMotion::rotationOf(sight.eyeToHead) * throughEye;
        uniforms.fov = key.projectionSource == B::STANDARD ? state->fov() : 90;
        uniforms.cameraYaw = state->yaw();
        uniforms.cameraPitch = state->pitch();
        uniforms.yawMin = state->yawMin();
        uniforms.yawMax = state->yawMax();
        uniforms.pitchMin = state->pitchMin();
        uniforms.pitchMax = state->pitchMax();
        const QString faults = pixelFaults(image, reference, picture, background);
        EXPECT_TRUE(faults.isEmpty()) << faults.toStdString();
    }

    // A message box that is answered before the X server shows it.
    WarningGuard guard{{QStringLiteral("XCB error: 8 .*SetInputFocus")}};
    HeadsetScript script;
    Application *application = static_cast<Application *>(qApp);
    KShaderCodeBuilder *builder = nullptr;
    GlStage stage;
    QImage pattern;
};

} // namespace test
