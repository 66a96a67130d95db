#include "SceneFixture.h"
#include "render/CameraMath.h"
#include "render/HeadsetView.h"
#include "support/Soon.h"

#include <QDir>
#include <QTemporaryDir>
#include <QThreadPool>

namespace {

using B = KShaderCodeBuilder;

class FakeHeadset : public HeadsetView
{
public:
    bool isActivated() const override { return activated; }
    std::optional<QMatrix4x4> pose() const override { return head; }
    bool isInterfaceActive() const override { return interfaceActive; }
    QMatrix4x4 interfaceOrientation() const override { return orientation; }
    int interfaceTextureId(InterfaceLayer layer) const override { return layers[layer]; }

    bool activated = false, interfaceActive = false;
    std::optional<QMatrix4x4> head;
    QMatrix4x4 orientation;
    int layers[2] = {0, 0};
};

struct View : test::SceneFixture
{
    void showPattern()
    {
        show();
        provider->setTextureId(uploadTexture(pattern));
    }

    /// Gives the view state a player with a medium, as the scene's loader does.
    void openMedium(const QString &source)
    {
        player.setProperty("mediaSource", source);
        player.setProperty("fileMetadata", QVariantMap{{"Texture size", QSize(1440, 720)}});
        loader.setProperty("mediaPlayer", QVariant::fromValue(&player));
        state->setMediaLoader(&loader);
        setting("application/general/printSavePath", QUrl::fromLocalFile(shots).toString());
    }

    /// The one picture that a request leaves, if any, and its name.
    QImage snapshot(int kind, QString *name = nullptr)
    {
        view->setPrintScreenRequested(kind);
        EXPECT_SOON(view->printScreenRequested() == 0);
        QThreadPool::globalInstance()->waitForDone();
        const QFileInfoList files = QDir(shots).entryInfoList(QDir::Files);
        EXPECT_LE(files.size(), 1);
        QImage image;
        for (const QFileInfo &file : files) {
            image.load(file.filePath());
            QFile::remove(file.filePath());
            if (name)
                *name = file.fileName();
        }
        return image;
    }

    QTemporaryDir folder;
    const QString shots = folder.path() + "/new/shots";
    QObject player, loader;
};

TEST_F(View, FollowsTheViewStateAndTheBuilder)
{
    show();
    EXPECT_EQ(grab().pixel(80, 60), kClearColor) << "without a picture";
    showPattern();
    state->setYaw(0.6F);
    state->setPitch(-0.3F);
    state->setRoll(0.2F);
    expectPanorama(grab(), pattern, state->rotationMatrix());

    builder->setProjection(B::FISHEYE);
    state->setFov(300);
    const float whole = state->yawMax();
    for (const float yawMax : {whole, 0.3F, whole}) {
        state->setYawMax(yawMax);
        expectPanorama(grab(), pattern, state->rotationMatrix());
    }
    view->setSize(QSizeF(80, 120));
    expectPanorama(grab().copy(0, 0, 80, 120), pattern, state->rotationMatrix());
}

TEST_F(View, LaysBothEyesSideBySide)
{
    showPattern();
    builder->setStereoMode(B::STEREO_3D_SIDEBYSIDE);
    for (const auto &[display, layout] :
         {std::pair("split", EyeLayout::Split), std::pair("3d", EyeLayout::SplitTelevision)}) {
        setting("instance/output/display", display);
        const QImage image = grab();
        for (const int eye : {0, 1})
            expectPanorama(image.copy(80 * eye, 0, 80, 120), pattern, {}, layout, eye);
    }
}

TEST_F(View, CountsItsFrames)
{
    showPattern();
    QSignalSpy changed(view, &OrbilensView::fpsChanged);
    // The first change closes the second in which counting began.
    ASSERT_SOON(changed.count() >= 2);
    EXPECT_GT(view->fps(), 1);
}

TEST_F(View, SnapshotsAreWrittenAsPngFiles)
{
    showPattern();
    openMedium("file:///film.mp4");
    state->setYaw(0.4F);
    const QImage before = grab();
    QString name;
    const QImage snap = snapshot(1, &name);
    EXPECT_TRUE(name.startsWith("ORBLP_snap_")) << name.toStdString();
    EXPECT_EQ(snap.size(), QSize(160, 120));
    expectPanorama(snap, pattern, state->rotationMatrix());
    EXPECT_EQ(grab(), before) << "the item's own framebuffer is drawn into again";

    // 90 of 180 degrees of 720 rows, and a third more of columns.
    const QImage render = snapshot(2, &name);
    EXPECT_TRUE(name.startsWith("ORBLP_render_")) << name.toStdString();
    EXPECT_EQ(render.size(), QSize(480, 360));
    expectPanorama(render, pattern, state->rotationMatrix());

    setting("instance/output/display", "split");
    builder->setStereoMode(B::STEREO_3D_OVERUNDER);
    const QImage both = snapshot(2);
    ASSERT_EQ(both.size(), QSize(720, 540)); // two eyes of 80 by 120
    for (const int eye : {0, 1})
        expectPanorama(both.copy(360 * eye, 0, 360, 540), pattern, state->rotationMatrix(),
                       EyeLayout::Split, eye);
}

TEST_F(View, WithoutAMediumASnapshotDoesNothing)
{
    show();
    openMedium(QString());
    EXPECT_TRUE(snapshot(1).isNull()) << "without a picture";
    provider->setTextureId(uploadTexture(pattern));
    EXPECT_TRUE(snapshot(2).isNull()) << "with one";
}

TEST_F(View, AHeadsetTurnsTheView)
{
    showPattern();
    FakeHeadset headset;
    headset.head = CameraMath::matrixFromAngles({0.5F, 0.2F, -0.3F});
    application->setHeadsetView(&headset);
    expectPanorama(grab(), pattern, {});
    headset.activated = true;
    expectPanorama(grab(), pattern, *headset.head);
    EXPECT_SOON(qAbs(state->yaw() - 0.5F) < 1e-4F);
    headset.head.reset(); // lost from sight: what it last told stays
    expectPanorama(grab(), pattern, state->rotationMatrix());
}

TEST_F(View, TheInterfaceStandsBeforeTheBlurredView)
{
    QImage panel(64, 64, QImage::Format_RGBA8888), reticle(64, 64, QImage::Format_RGBA8888);
    panel.fill(Qt::green);
    reticle.fill(Qt::transparent);
    for (int i = 0; i < 64; ++i)
        reticle.setPixelColor(28 + i % 8, 28 + i / 8, Qt::white);
    showPattern();
    FakeHeadset headset;
    headset.layers[HeadsetView::Panel] = uploadTexture(panel);
    headset.layers[HeadsetView::Foreground] = uploadTexture(reticle);
    headset.orientation = CameraMath::matrixFromAngles({-0.35F, 0, 0}); // undoes the camera's turn
    application->setHeadsetView(&headset);
    state->setYaw(0.35F);
    state->setFov(130);
    const QImage plain = grab();
    headset.interfaceActive = true;

    const QRgb green = QColor(Qt::green).rgb(), white = QColor(Qt::white).rgb();
    for (const int eyes : {1, 2, 1}) { // each change makes the blur's buffers anew
        setting("instance/output/display", eyes == 2 ? "split" : "standard");
        const QImage image = grab();
        for (int eye = 0; eye < eyes; ++eye) {
            const QPoint centre((2 * eye + 1) * 80 / eyes, 60);
            EXPECT_EQ(image.pixel(centre), white) << eyes << eye;
            EXPECT_EQ(image.pixel(centre - QPoint(20, 0)), green) << eyes << eye;
            const QRgb behind = image.pixel(centre - QPoint(0, 55));
            EXPECT_TRUE(behind != green && behind != kClearColor) << eyes << eye;
        }
        EXPECT_NE(image.copy(0, 0, 160, 20), plain.copy(0, 0, 160, 20)) << "it is blurred";
    }
    // The panel stays where it is when the head turns on, the reticle turns with it.
    state->setYaw(2.5F);
    const QImage away = grab();
    EXPECT_EQ(away.pixel(80, 60), white);
    EXPECT_NE(away.pixel(60, 60), green);
}

} // namespace
