// The whole program with a stand-in runtime: what the wearer sees of the interface, and how head
// and controllers reach it.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "hmd/HeadsetScript.h"
#include "hmd/KHmd.h"
#include "hmd/KHmdUIManager.h"
#include "render/CameraMath.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "support/GlContext.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QVector3D>

namespace {

constexpr int kEyePixels = 600; // an eye sees 45 degrees to each side
constexpr double kSlope = 4000 * 2 * 0.07919222016226815;
const QColor kSurroundings(40, 90, 120);

struct InterfaceEyes : ::testing::Test
{
    InterfaceEyes()
    {
        const QByteArray size = QByteArray::number(kEyePixels);
        script.set("size " + size + ' ' + size);
        turnHead(0);
        const std::pair<const char *, QVariant> values[] = {{"application/hmd/sdk", "openvr"},
                                                            {"application/hmd/hmdMode", true},
                                                            {"application/hmd/gazeUI", true}};
        for (const auto &[key, value] : values)
            application->settings()->set(key, value);
        application->init();
    }

    ~InterfaceEyes() override
    {
        application->hmd()->stopThread(); // it writes into the folder of the script
    }

    void turnHead(float yaw)
    {
        head = CameraMath::matrixFromAngles({yaw, 0, 0});
        script.set(test::HeadsetScript::headLines(head));
    }

    /// Where an eye sees a pixel of the panel.
    QPoint inEye(const QPoint &panel, const QMatrix4x4 &frame) const
    {
        const QVector3D inWorld(float((panel.x() - 2000) / kSlope),
                                float((1000 - panel.y()) / kSlope), -1);
        const QVector3D seen = (frame * head).transposed().mapVector(inWorld);
        return {int((1 - seen.x() / seen.z()) * kEyePixels / 2),
                int((1 + seen.y() / seen.z()) * kEyePixels / 2)};
    }

    static int distance(const QColor &a, const QColor &b)
    {
        return std::abs(a.red() - b.red()) + std::abs(a.green() - b.green()) +
               std::abs(a.blue() - b.blue());
    }

    test::WarningGuard guard;
    test::HeadsetScript script;
    QMatrix4x4 head;
    Application *application = static_cast<Application *>(qApp);
};

} // namespace

TEST_F(InterfaceEyes, ThePanelStandsInTheWorldAndTheReticleInTheView)
{
    ASSERT_SOON(application->hmdUiManager() && application->hmd()->available());
    // The headset's thread keeps what it began with; until the end no rest becomes a choice.
    application->settings()->set("application/hmd/gazeUI", false);
    KHmdUIManager *manager = application->hmdUiManager();
    KGlobalObject *camera = application->globalObject();
    QImage still(400, 200, QImage::Format_RGB32);
    still.fill(kSurroundings);
    QStringList files;
    for (const char *name : {"morning.png", "noon.png", "evening.png"}) {
        files.append(script.filePath(name));
        ASSERT_TRUE(still.save(files.last()));
    }
    camera->openFiles(files);
    turnHead(0.5F);
    ASSERT_SOON(std::abs(camera->yaw() - 0.5F) < 1e-4F);
    ASSERT_SOON(manager->textureId(0) > 0 && manager->textureId(1) > 0);

    script.set("controller7 2 0 0"); // the menu button opens the panel
    ASSERT_SOON(manager->isShown());
    ASSERT_SOON(manager->uiState() == KHmdUIManager::Hovered);
    script.set("controller7");
    QTest::qWait(300);
    script.eyePictures("interface-ahead");

    // Beside the pictures, so that nothing is chosen; the panel stays behind to the left.
    turnHead(1.1F);
    ASSERT_SOON(manager->uiState() == KHmdUIManager::Idle);
    const std::tuple<QPoint, bool> points[] = {
        {{2020, 1280}, true}, {{2560, 1280}, true},  {{2200, 1150}, true}, {{2660, 1060}, false},
        {{2200, 770}, false}, {{2200, 1350}, false}, {{2614, 1000}, true}, {{2628, 1200}, false}};
    std::string wrong;
    EXPECT_TRUE(test::soon([&] {
        const QImage eye = script.eyePictures("interface-turned")[0];
        const QImage panel =
            test::downloadTexture(application->sharedGlContext(), manager->textureId(0));
        wrong.clear();
        const auto expect = [&](const QPoint &at, const QColor &expected) {
            if (!eye.rect().contains(at) || distance(eye.pixelColor(at), expected) > 12)
                wrong += QStringLiteral("%1 %2 ").arg(at.x()).arg(at.y()).toStdString();
        };
        for (const auto &[point, onCard] : points)
            expect(inEye(point, manager->orientation()),
                   onCard ? panel.pixelColor(point) : kSurroundings);
        expect({kEyePixels / 2, kEyePixels / 2}, Qt::white);
        return wrong.empty();
    })) << "wrong at "
        << wrong;

    // Back to the middle: resting on the second picture chooses it.
    application->settings()->set("application/hmd/gazeUI", true);
    turnHead(0.5F);
    EXPECT_SOON(camera->playListIndex() == 1);
    EXPECT_FALSE(manager->isShown());
    constexpr int kPlayingState = 1; // of MediaPlayer in the scene
    ASSERT_SOON(camera->mediaPlayer()->property("playbackState").toInt() == kPlayingState &&
                application->textureProvider()->textureId() > 0);
    EXPECT_EQ(
        distance(script.eyePictures("interface-closed")[0].pixelColor(300, 300), kSurroundings), 0);
}
