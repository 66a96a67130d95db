#pragma once

// An Application with the peers that a headset's thread reads, a GL context to share with, and the
// folder by which a stand-in runtime is scripted; for the suites of all device families.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "hmd/HeadMotion.h"
#include "hmd/HeadsetInterface.h"
#include "hmd/KHmd.h"
#include "render/CameraMath.h"
#include "render/KShaderCodeBuilder.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "support/GlStage.h"
#include "support/PanoramaReference.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QMap>
#include <QMutex>
#include <QSaveFile>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

namespace test {

/// What one eye of a device sees, as the reference needs it.
struct EyeSight
{
    QVector4D tangents; ///< left, right, up, down
    QMatrix4x4 eyeToHead;
};

inline QByteArray numbersOf(const QMatrix4x4 &matrix)
{
    QByteArray text;
    for (int i = 0; i < 12; ++i)
        text += ' ' + QByteArray::number(double(matrix(i / 4, i % 4)), 'g', 9);
    return text;
}

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

class HeadsetFixture : public ::testing::Test
{
protected:
    explicit HeadsetFixture(const char *folderVariable)
    {
        qputenv(folderVariable, folder.path().toLocal8Bit());
        setting("application/hmd/hmdMode", true);
        setting("application/hmd/gazeUI", false);
        setting("application/input/stereoscopy", KShaderCodeBuilder::STEREO_2D);
        application->setTextureProvider(
            std::make_unique<KTextureProvider>(application, true, false));
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<KShaderCodeBuilder>(application));
        builder = application->shaderBuilder();
        application->globalObject()->setFovLimits();
        application->checkOpenGLVersion(); // with the stage's context current
        show(directionPattern(QSize(512, 512)));
    }

    ~HeadsetFixture() override
    {
        application->setHmd(nullptr);
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

    /// Changes lines of the runtime's script.
    void script(const QMap<QByteArray, QByteArray> &changes)
    {
        for (auto line = changes.cbegin(); line != changes.cend(); ++line)
            m_script[line.key()] = line.value();
        QSaveFile file(folder.filePath("script"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        for (auto line = m_script.cbegin(); line != m_script.cend(); ++line)
            file.write(line.key() + ' ' + line.value() + '\n');
        ASSERT_TRUE(file.commit());
    }

    template <class Device>
    KHmd *start()
    {
        application->setHmd(std::make_unique<Device>(application));
        application->hmd()->startThread();
        return application->hmd();
    }

    template <class Condition>
    [[nodiscard]] static bool within(Condition condition)
    {
        return QTest::qWaitFor(condition, 20000);
    }

    /// The pictures of both eyes that the runtime gets from now on; kept as artefacts under @p
    /// name.
    std::array<QImage, 2> eyePictures(const QString &name)
    {
        const QByteArray number = QByteArray::number(++m_pictures);
        script({{"picture", number}});
        const auto path = [&](int eye) {
            return folder.filePath(QStringLiteral("eye%1-%2.ppm").arg(eye).arg(m_pictures));
        };
        EXPECT_TRUE(within([&] { return QFile::exists(path(1)); }));
        const QDir artefacts(QStringLiteral(ORBILENS_BINARY_DIR "/artefacts"));
        artefacts.mkpath(QStringLiteral("."));
        std::array<QImage, 2> images;
        for (int eye = 0; eye < 2; ++eye) {
            images[std::size_t(eye)] = QImage(path(eye)).convertToFormat(QImage::Format_RGB32);
            images[std::size_t(eye)].save(
                artefacts.filePath(QStringLiteral("%1-eye%2.png").arg(name).arg(eye)));
        }
        return images;
    }

    /// How often the runtime was asked for @p what.
    int count(const QByteArray &what)
    {
        QFile file(folder.filePath("counts"));
        if (!file.open(QIODevice::ReadOnly))
            return 0;
        for (const QByteArray &line : file.readAll().split('\n')) {
            if (line.startsWith(what + ' '))
                return line.mid(what.size() + 1).toInt();
        }
        return 0;
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
        uniforms.fov = key.projectionSource == KShaderCodeBuilder::STANDARD ? state->fov() : 90;
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
    QTemporaryDir folder;
    Application *application = static_cast<Application *>(qApp);
    KShaderCodeBuilder *builder = nullptr;
    GlStage stage;
    QImage pattern;

private:
    QMap<QByteArray, QByteArray> m_script;
    int m_pictures = 0;
};

} // namespace test
