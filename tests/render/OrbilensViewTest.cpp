#include "SceneFixture.h"
#include "render/CameraMath.h"
#include "render/HeadsetView.h"

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

    bool activated = false;
    bool interfaceActive = false;
    std::optional<QMatrix4x4> head;
    QMatrix4x4 orientation;
    int layers[2] = {0, 0};
};

class View : public test::SceneFixture
{
protected:
    void showPattern()
    {
        show();
        provider->setTextureId(uploadTexture(pattern));
    }

    /// Gives the view state a player with a medium, as the scene's loader does.
    void openMedium(const QString &source, const QSize &size)
    {
        player.setProperty("mediaSource", source);
        player.setProperty("fileMetadata", QVariantMap{{"Texture size", size}});
        loader.setProperty("mediaPlayer", QVariant::fromValue(&player));
        state->setMediaLoader(&loader);
        application->settings()->set("application/general/printSavePath",
                                     QUrl::fromLocalFile(folder.path() + "/new/shots").toString());
    }

    /// Asks for a snapshot and waits for the files that it leaves.
    QFileInfoList snapshot(int kind)
    {
        view->setPrintScreenRequested(kind);
        EXPECT_EQ(view->printScreenRequested(), kind);
        EXPECT_TRUE(QTest::qWaitFor([&] { return view->printScreenRequested() == 0; }));
        QThreadPool::globalInstance()->waitForDone();
        return QDir(folder.path() + "/new/shots").entryInfoList(QDir::Files);
    }

    QTemporaryDir folder;
    QObject player;
    QObject loader;
};

TEST_F(View, ShowsTheClearColourWithoutAPicture)
{
    show();
    const QImage image = grab();
    EXPECT_EQ(image.pixel(3, 3), kClearColor);
    EXPECT_EQ(image.pixel(80, 60), kClearColor);
}

TEST_F(View, FollowsTheViewStateAndTheBuilder)
{
    showPattern();
    state->setYaw(0.6F);
    state->setPitch(-0.3F);
    state->setRoll(0.2F);
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());

    builder->setProjection(B::FISHEYE);
    state->setFov(300);
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());

    view->setSize(QSizeF(80, 120));
    expectPanorama(grab().copy(0, 0, 80, 120), pattern, EyeLayout::Single, 0,
                   state->rotationMatrix());
}

TEST_F(View, TakesTheLimitsOfEachMedium)
{
    showPattern();
    const float whole = state->yawMax();
    for (const float yawMax : {0.3F, whole, 0.5F}) {
        state->setYawMax(yawMax);
        expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
    }
}

TEST_F(View, LaysBothEyesSideBySide)
{
    const struct
    {
        const char *display;
        EyeLayout layout;
    } cases[] = {{"split", EyeLayout::Split}, {"3d", EyeLayout::SplitTelevision}};
    showPattern();
    for (const auto &c : cases) {
        application->settings()->set("instance/output/display", c.display);
        for (const int stereo : {B::STEREO_2D, B::STEREO_3D_SIDEBYSIDE}) {
            builder->setStereoMode(stereo);
            const QImage image = grab();
            for (const int eye : {0, 1})
                expectPanorama(image.copy(80 * eye, 0, 80, 120), pattern, c.layout, eye,
                               state->rotationMatrix());
        }
    }
}

TEST_F(View, CountsItsFrames)
{
    showPattern();
    QSignalSpy changed(view, &OrbilensView::fpsChanged);
    // The first change closes the second in which counting began.
    ASSERT_TRUE(QTest::qWaitFor([&] { return changed.count() >= 2; }, 5000));
    EXPECT_GT(view->fps(), 1);
}

TEST_F(View, SnapshotsAreWrittenAsPngFiles)
{
    showPattern();
    openMedium("file:///film.mp4", {1440, 720});
    state->setYaw(0.4F);
    const QImage before = grab();

    const QFileInfoList snaps = snapshot(1);
    ASSERT_EQ(snaps.size(), 1);
    EXPECT_TRUE(snaps[0].fileName().contains(QRegularExpression(
        "^ORBLP_snap_\\d{4}-\\d\\d-\\d\\d_\\d\\d_\\d\\d_\\d\\d_\\d{1,3}\\.png$")))
        << qPrintable(snaps[0].fileName());
    const QImage snap(snaps[0].filePath());
    EXPECT_EQ(snap.size(), QSize(160, 120));
    expectPanorama(snap, pattern, EyeLayout::Single, 0, state->rotationMatrix());
    EXPECT_EQ(grab(), before) << "the item's own framebuffer is drawn into again";

    QFile::remove(snaps[0].filePath());
    const QFileInfoList renders = snapshot(2);
    ASSERT_EQ(renders.size(), 1);
    EXPECT_TRUE(renders[0].fileName().startsWith("ORBLP_render_"));
    // 90 of 180 degrees of 720 rows, and a third more of columns.
    const QImage render(renders[0].filePath());
    EXPECT_EQ(render.size(), QSize(480, 360));
    expectPanorama(render, pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

TEST_F(View, SnapshotsHoldBothEyes)
{
    showPattern();
    openMedium("file:///film.mp4", {1440, 720});
    application->settings()->set("instance/output/display", "split");
    builder->setStereoMode(B::STEREO_3D_OVERUNDER);
    const QFileInfoList renders = snapshot(2);
    ASSERT_EQ(renders.size(), 1);
    const QImage image(renders[0].filePath());
    ASSERT_EQ(image.size(), QSize(720, 540)); // two eyes of 80 by 120 in 90 degrees
    for (const int eye : {0, 1})
        expectPanorama(image.copy(360 * eye, 0, 360, 540), pattern, EyeLayout::Split, eye,
                       state->rotationMatrix());
}

TEST_F(View, WithoutAMediumASnapshotDoesNothing)
{
    show();
    openMedium(QString(), {});
    EXPECT_TRUE(snapshot(1).isEmpty()) << "without a picture";
    provider->setTextureId(uploadTexture(pattern));
    EXPECT_TRUE(snapshot(2).isEmpty()) << "with one";
}

TEST_F(View, AHeadsetTurnsTheView)
{
    showPattern();
    FakeHeadset headset;
    headset.head = CameraMath::matrixFromAngles({0.5F, 0.2F, -0.3F});
    application->setHeadsetView(&headset);
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, QMatrix4x4());

    headset.activated = true;
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, *headset.head);
    EXPECT_TRUE(QTest::qWaitFor([&] { return qAbs(state->yaw() - 0.5F) < 1e-4F; }));
    EXPECT_NEAR(state->pitch(), 0.2F, 1e-4);

    headset.head.reset(); // lost from sight: what it last told stays
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

TEST_F(View, TheInterfaceStandsBeforeTheBlurredView)
{
    QImage stripes(160, 120, QImage::Format_RGBA8888);
    for (int x = 0; x < stripes.width(); ++x)
        for (int y = 0; y < stripes.height(); ++y)
            stripes.setPixel(x, y, x % 2 ? qRgb(255, 0, 0) : qRgb(0, 0, 255));
    QImage panel(64, 64, QImage::Format_RGBA8888);
    panel.fill(QColor(0, 255, 0));
    QImage reticle(64, 64, QImage::Format_RGBA8888);
    reticle.fill(Qt::transparent);
    for (int x = 28; x < 36; ++x)
        for (int y = 28; y < 36; ++y)
            reticle.setPixelColor(x, y, Qt::white);

    show();
    provider->setTextureId(uploadTexture(stripes));
    FakeHeadset headset;
    headset.layers[HeadsetView::Panel] = uploadTexture(panel);
    headset.layers[HeadsetView::Foreground] = uploadTexture(reticle);
    headset.interfaceActive = true;
    headset.orientation = CameraMath::matrixFromAngles({-0.35F, 0, 0}); // undoes the camera's turn
    application->setHeadsetView(&headset);
    state->setYaw(0.35F);
    state->setFov(130);

    const auto isGreen = [](QRgb c) { return qGreen(c) > 250 && qRed(c) < 5 && qBlue(c) < 5; };
    for (const char *display : {"standard", "split"}) {
        application->settings()->set("instance/output/display", display);
        const int eyes = state->splitView() ? 2 : 1;
        for (int eye = 0; eye < eyes; ++eye) {
            const QImage image = grab().copy(160 / eyes * eye, 0, 160 / eyes, 120);
            const QPoint centre = image.rect().center();
            EXPECT_EQ(image.pixel(centre), qRgb(255, 255, 255)) << display << eye;
            EXPECT_TRUE(isGreen(image.pixel(centre - QPoint(20, 0)))) << display << eye;
            const QColor corner = image.pixelColor(centre.x(), 5);
            EXPECT_FALSE(isGreen(corner.rgb())) << display << eye;
        }
    }

    // The panel stays where it is when the head turns on, the reticle turns with it.
    application->settings()->set("instance/output/display", "standard");
    state->setYaw(2.5F);
    const QImage away = grab();
    EXPECT_EQ(away.pixel(80, 60), qRgb(255, 255, 255));
    EXPECT_FALSE(isGreen(away.pixel(60, 60)));

    headset.interfaceActive = false;
    const QImage plain = grab();
    EXPECT_NE(plain.pixel(80, 60), qRgb(255, 255, 255));
}

TEST_F(View, ComesBackWithASceneGraphMadeAnew)
{
    showPattern();
    window->setPersistentOpenGLContext(false);
    window->setPersistentSceneGraph(false);
    window->hide();
    provider->setTextureId(0);
    show();
    provider->setTextureId(uploadTexture(pattern));
    expectPanorama(grab(), pattern, EyeLayout::Single, 0, state->rotationMatrix());
}

} // namespace
