// The interface inside the headset in the real scene, with a headset that is a plain object.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "hmd/KHmdUIManager.h"
#include "hmd/KQuickRender.h"
#include "render/CameraMath.h"
#include "render/HeadsetView.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "support/Files.h"
#include "support/GlContext.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QQmlContext>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <cmath>

namespace {

constexpr float kDegree = CameraMath::kPi / 180;
const QSize kSceneSize(4000, 2000);
constexpr int kPlayingState = 1; // of MediaPlayer in the scene

/// The face that the scene and the view see of a headset.
class FakeHeadset : public QObject, public HeadsetView
{
    Q_OBJECT
    Q_PROPERTY(bool available MEMBER available NOTIFY availableChanged)
    Q_PROPERTY(bool activated MEMBER activated NOTIFY activatedChanged)
    Q_PROPERTY(int fps MEMBER fps NOTIFY fpsChanged)
    Q_PROPERTY(QPointF lensCenterLeft MEMBER centre CONSTANT)
    Q_PROPERTY(QPointF lensCenterRight MEMBER centre CONSTANT)
    Q_PROPERTY(QString logMessage MEMBER logMessage CONSTANT)

public:
    Q_INVOKABLE QString sdkType() const { return QStringLiteral("openvr"); }
    Q_INVOKABLE bool isSupported() const { return true; }

    bool isActivated() const override { return activated; }
    std::optional<QMatrix4x4> pose() const override { return head; }
    bool isInterfaceActive() const override { return manager && manager->isShown(); }
    QMatrix4x4 interfaceOrientation() const override { return manager->orientation(); }
    int interfaceTextureId(InterfaceLayer layer) const override
    {
        return manager->textureId(layer);
    }

    bool available = false;
    bool activated = false;
    int fps = 0;
    QPointF centre{0.5, 0.5};
    QString logMessage;
    std::optional<QMatrix4x4> head;
    KHmdUIManager *manager = nullptr;

signals:
    void availableChanged();
    void activatedChanged();
    void fpsChanged();
};

/// Notes what it is asked for; loader and player in one.
class FakeLoader : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *mediaPlayer READ self CONSTANT)
    Q_PROPERTY(QUrl mediaSource MEMBER source)

public:
    QObject *self() { return this; }
    Q_INVOKABLE void playPause() { calls.append("playPause"); }
    Q_INVOKABLE void play() { calls.append("play"); }
    Q_INVOKABLE void pause() { calls.append("pause"); }
    Q_INVOKABLE void seekJumpUp() { calls.append("seekJumpUp"); }
    Q_INVOKABLE void seekJumpDown() { calls.append("seekJumpDown"); }
    Q_INVOKABLE void seekJump(const QVariant &ms) { calls.append("seekJump " + ms.toString()); }

    QStringList calls;
    QUrl source;
};

struct Interface : ::testing::Test
{
    static void SetUpTestSuite()
    {
        auto *app = static_cast<Application *>(qApp);
        // The machine's own headset, should it have one, takes no part.
        app->settings()->set("application/advanced/forceopengl", true);
        app->settings()->set("application/hmd/sdk", "openvr"); // no second family after the first
        app->init();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(app->view()));
        headset = new FakeHeadset;
        headset->setParent(app->view());
        app->setHeadsetView(headset);
        app->view()->rootContext()->setContextProperty("kHmdDevice", headset);
        manager = new KHmdUIManager(app, app->sharedGlContext(), app->view()->engine());
        manager->setParent(app->view());
        headset->manager = manager;
        headset->setProperty("available", true);
        headset->setProperty("activated", true);
        ASSERT_SOON(manager->textureId(1) > 0);
    }

    Interface()
    {
        loader = camera->mediaLoader();
        settings->set("application/hmd/gazeUI", true);
    }
    ~Interface() override
    {
        camera->setMediaLoader(loader);
        manager->setActivated(false);
    }

    void open(const QStringList &files)
    {
        camera->openFiles(files);
        EXPECT_SOON(playing());
    }

    /// Stills of different colours.
    QStringList stills(int count)
    {
        QStringList files;
        for (int i = 0; i < count; ++i) {
            QImage image(400, 200, QImage::Format_RGB32);
            image.fill(QColor::fromHsv((i * 47) % 360, 140, 200));
            files.append(folder.filePath(QStringLiteral("still %1.png").arg(i)));
            EXPECT_TRUE(image.save(files.last()));
        }
        return files;
    }

    void look(float yaw, float pitch)
    {
        headset->head = CameraMath::matrixFromAngles({yaw * kDegree, pitch * kDegree, 0});
        // The first of two frames may still bring the camera where the head was before.
        QSignalSpy frames(view, &QQuickWindow::frameSwapped);
        EXPECT_SOON(frames.count() > 1);
        manager->buildGazeEvents(false);
        QTest::qWait(50);
    }
    static void nod()
    {
        manager->buildGazeEvents(true);
        QTest::qWait(50);
    }

    bool playing() const
    {
        return camera->mediaPlayer()->property("playbackState").toInt() == kPlayingState;
    }

    QQuickItem *item(const char *name) const
    {
        return view->rootObject()
            ->findChild<QQuickItem *>("k_hmdUiLoader")
            ->findChild<QQuickItem *>(name);
    }
    bool ringVisible() const { return item("countdown")->isVisible(); }

    /// The picture of a layer as its texture holds it, kept for the eye.
    void keep(int layer, const QString &name)
    {
        QTest::qWait(300); // for pictures that load
        save(test::downloadTexture(application->sharedGlContext(), manager->textureId(layer)),
             name);
    }

    static void save(const QImage &image, const QString &name)
    {
        const QString path = QStringLiteral(ORBILENS_BINARY_DIR "/artefacts/interface");
        EXPECT_TRUE(QDir().mkpath(path));
        EXPECT_TRUE(image.save(path + '/' + name + ".png"));
    }

    test::WarningGuard guard;
    // Pictures of one test may still load in the next.
    static inline const QTemporaryDir folder;
    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = application->view();
    KGlobalObject *camera = application->globalObject();
    KSettings *settings = application->settings();
    QObject *loader = nullptr;
    static FakeHeadset *headset;
    static KHmdUIManager *manager;
};

FakeHeadset *Interface::headset = nullptr;
KHmdUIManager *Interface::manager = nullptr;

} // namespace

TEST_F(Interface, ANodOpensThePanelStraightAheadAndANodBesideItClosesIt)
{
    settings->set("application/hmd/gazeUI",
                  false); // a gaze that rests on a picture chooses nothing
    open(QStringList{ORBILENS_SOURCE_DIR "/samples/panorama.jpg"} + stills(2));
    look(100, 10);
    EXPECT_EQ(manager->uiState(), KHmdUIManager::Idle); // closed: nothing to rest on
    nod();
    EXPECT_TRUE(manager->isShown());
    EXPECT_FALSE(playing());
    EXPECT_EQ(manager->textureSize(0), kSceneSize);
    EXPECT_EQ(manager->textureSize(1), kSceneSize);

    look(100, 0); // the second of three pictures
    EXPECT_EQ(manager->uiState(), KHmdUIManager::Hovered);
    keep(0, "panel");
    keep(1, "reticle");
    // The panel stays where it opened: over its upper edge, behind its right one and back.
    for (const auto &[yaw, pitch] : {std::pair(100, -50), std::pair(174, 0), std::pair(260, 0)}) {
        look(yaw, pitch);
        EXPECT_EQ(manager->uiState(), KHmdUIManager::Idle) << yaw;
        look(100, 0);
        EXPECT_EQ(manager->uiState(), KHmdUIManager::Hovered);
    }
    save(view->grabWindow(), "mirror");

    look(100, 70);
    nod();
    EXPECT_FALSE(manager->isShown());
    EXPECT_TRUE(playing());
    EXPECT_EQ(camera->playListIndex(), 0);

    headset->head.reset();
    manager->setActivated(true);
    nod(); // nobody knows where it looks
    EXPECT_TRUE(manager->isShown());
}

TEST_F(Interface, AGazeThatRestsChoosesAndOneThatLeavesBeginsAnew)
{
    open(stills(3));
    look(0, 0);
    nod();
    look(0, 0);
    QStringList seen;
    const QQuickItem *countdown = item("countdown");
    const auto watch = [&] {
        const QString now = ringVisible() ? countdown->property("text").toString() : QString("-");
        if (seen.isEmpty() || seen.last() != now)
            seen.append(now);
    };
    ASSERT_FALSE(ringVisible());
    watch();
    ASSERT_TRUE(test::soon([&] {
        watch();
        return seen.last() == "1";
    }));
    keep(1, "ring");
    look(0, -50);
    EXPECT_FALSE(ringVisible());
    EXPECT_EQ(camera->playListIndex(), 0);

    look(0, 0);
    ASSERT_TRUE(test::soon([&] {
        watch();
        return !manager->isShown();
    }));
    EXPECT_EQ(seen, QStringList({"-", "2", "1", "-", "2", "1", "-"}));
    EXPECT_EQ(camera->playListIndex(), 1);
    EXPECT_EQ(manager->uiState(), KHmdUIManager::Idle);
    EXPECT_SOON(playing());
}

TEST_F(Interface, WithoutGazeUiOnlyAControllerChooses)
{
    settings->set("application/hmd/gazeUI", false);
    open(stills(3));
    look(0, 0);
    manager->buildEvents(2);
    ASSERT_TRUE(manager->isShown());
    look(0, 0);
    EXPECT_EQ(manager->uiState(), KHmdUIManager::Hovered);
    EXPECT_FALSE(QTest::qWaitFor([&] { return ringVisible(); }, 1500));
    manager->buildEvents(2);
    EXPECT_FALSE(manager->isShown());
    manager->buildEvents(2);
    manager->buildEvents(1);
    EXPECT_SOON(camera->playListIndex() == 1);
    EXPECT_FALSE(manager->isShown());
}

TEST_F(Interface, ControllersActOnTheMediumWhileThePanelIsClosed)
{
    FakeLoader fake;
    camera->setMediaLoader(&fake);
    const std::tuple<int, const char *> rows[] = {{1, "playPause"},
                                                  {3, "seekJump -1000"},
                                                  {4, "seekJump 1000"},
                                                  {5, "seekJumpUp"},
                                                  {6, "seekJumpDown"},
                                                  {2, "pause"},
                                                  {2, "play"},
                                                  {0, ""},
                                                  {7, ""}};
    for (const auto &[code, call] : rows) {
        manager->buildEvents(code);
        EXPECT_EQ(fake.calls.join(' '), call) << code;
        fake.calls.clear();
    }
    // Without any medium a nod means nothing.
    camera->clearPlayList();
    manager->buildGazeEvents(true);
    EXPECT_FALSE(manager->isShown());
    camera->setMediaLoader(nullptr);
    manager->buildEvents(2);
    EXPECT_FALSE(manager->isShown());
}

TEST_F(Interface, LongListsSlideAndShowWhatTheyHave)
{
    settings->set("application/hmd/gazeUI",
                  false); // a gaze that rests on a picture chooses nothing
    QStringList files = stills(4);
    QImage thumb(400, 240, QImage::Format_RGB32);
    thumb.fill(Qt::darkGreen);
    EXPECT_TRUE(
        thumb.save(folder.filePath("film with a very long name that no panel has room for.png")));
    files.append(folder.filePath("film with a very long name that no panel has room for.mp4"));
    files.append("rtsp://127.0.0.1/stream");
    for (int i = 0; i < 20000; ++i)
        files.append(folder.filePath(QStringLiteral("absent %1.mkv").arg(i)));
    open(files);
    look(0, 0);
    manager->buildEvents(2);
    const QQuickItem *list = item("list");
    const auto position = [list] { return list->property("contentX").toReal(); };
    const auto slid = [&](qreal from) {
        EXPECT_SOON(list->property("flicking").toBool());
        EXPECT_SOON(!list->property("flicking").toBool());
        return position() - from;
    };
    const qreal start = position();
    manager->buildEvents(4);
    EXPECT_GT(slid(start), 50);
    const qreal there = position();
    manager->buildEvents(3);
    EXPECT_LT(slid(there), -50);
    keep(0, "long-list");
    // A gaze on the arrow slides on and on.
    look(41, -4);
    EXPECT_TRUE(item("slideOn")->property("containsMouse").toBool());
    EXPECT_SOON(position() - start > 1000);
    keep(0, "long-list-slid");
}

TEST_F(Interface, ASingleMediumHasNoPlaylistToChooseFrom)
{
    open(stills(1));
    look(0, 0);
    nod();
    ASSERT_TRUE(manager->isShown());
    EXPECT_TRUE(item("emptyText")->isVisible());
    keep(0, "no-playlist");
    // The round button closes by the same wait.
    const QQuickItem *button = item("closeButton");
    EXPECT_TRUE(test::soon([&] {
        // Where it stands is known once the panel is laid out.
        const QPointF centre = button->mapToScene({button->width() / 2, button->height() / 2}) -
                               QPointF(view->width() + 1, 0);
        const double slope = 4000 * 2 * 0.07919222016226815;
        const double yaw = std::atan((centre.x() - 2000) / slope);
        const double pitch = std::atan((centre.y() - 1000) / slope * std::cos(yaw));
        look(float(yaw / double(kDegree)), float(pitch / double(kDegree)));
        return button->property("hovered").toBool();
    }));
    EXPECT_SOON(!manager->isShown());
}

TEST_F(Interface, TheWindowIsGuardedWhileThePanelIsOpen)
{
    open(stills(2));
    look(0, 0);
    nod();
    const float yaw = camera->yaw();
    QTest::mousePress(view, Qt::LeftButton, {}, {300, 300});
    QTest::mouseMove(view, {400, 300});
    EXPECT_EQ(camera->yaw(), yaw);
    QTest::mouseRelease(view, Qt::LeftButton, {}, {400, 300});
    EXPECT_FALSE(manager->isShown()); // a click gives the window back

    manager->setActivated(true);
    headset->setProperty("activated", false); // taken off
    EXPECT_FALSE(manager->isShown());
    headset->setProperty("activated", true);

    // A device that goes takes its scenes along, and one that comes brings them back.
    headset->setProperty("available", false);
    EXPECT_SOON(manager->textureId(0) == 0);
    manager->setActivated(true);
    manager->buildGazeEvents(true);
    headset->setProperty("available", true);
    EXPECT_SOON(manager->textureId(0) > 0);
}

TEST_F(Interface, WorksTheSameWithScenesOfItsOwn)
{
    open(stills(3));
    QQmlContext *context = view->rootContext();
    const char *const names[] = {"textureProviderMain", "textureProviderForeground",
                                 "kHmdUIManager"};
    QVariantList published;
    for (const char *name : names)
        published.append(context->contextProperty(name));
    auto *offScreen = new KHmdUIManager(application, application->sharedGlContext(), view->engine(),
                                        KHmdUIManager::Route::OffScreen);
    ASSERT_SOON(offScreen->textureId(1) > 0);
    EXPECT_EQ(offScreen->textureSize(0), kSceneSize);
    look(0, 0);
    offScreen->buildGazeEvents(true);
    ASSERT_TRUE(offScreen->isShown());
    offScreen->buildGazeEvents(false);
    EXPECT_SOON(offScreen->uiState() == KHmdUIManager::Hovered);
    offScreen->buildEvents(1);
    EXPECT_SOON(camera->playListIndex() == 1);
    delete offScreen;
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    for (int i = 0; i < published.size(); ++i)
        context->setContextProperty(names[i], published.at(i));
}

TEST_F(Interface, ASceneOfItsOwnIsUprightAndFollowedOrSaysWhyThereIsNone)
{
    const struct
    {
        const char *text, *warning; // no warning: there is a scene
    } rows[] = {{"import QtQuick 2.15\nItem { width: 40; height: 20\n"
                 "Rectangle { objectName: 'top'; width: 40; height: 10; color: 'red' }}",
                 nullptr},
                {"import QtQuick 2.15\nItem { nonsense }", "own 1.qml"},
                {"import QtQml 2.15\nQtObject {}", "run: Not a QQuickItem"}};
    for (const auto &row : rows) {
        const QString path = test::writeFile(
            folder.filePath(QStringLiteral("own %1.qml").arg(&row - rows)), row.text);
        const KQuickRender render(application->sharedGlContext(), view->engine(),
                                  QUrl::fromLocalFile(path));
        if (row.warning) {
            QTest::qWait(30); // longer than it takes to draw
            EXPECT_EQ(render.rootItem(), nullptr);
            EXPECT_EQ(render.textureId(), 0);
            EXPECT_TRUE(guard.take().join('\n').contains(row.warning)) << row.warning;
            continue;
        }
        ASSERT_SOON(render.textureId() > 0);
        EXPECT_EQ(render.size(), QSize(40, 20));
        EXPECT_EQ(render.textureSize(), QSize(40, 20));
        const auto pixel = [&](int y) {
            return test::downloadTexture(application->sharedGlContext(), render.textureId())
                .pixelColor(20, y);
        };
        EXPECT_EQ(pixel(2), QColor(Qt::red));
        EXPECT_EQ(pixel(15).alpha(), 0);
        render.rootItem()->findChild<QQuickItem *>("top")->setProperty("color", "blue");
        EXPECT_SOON(pixel(2) == QColor(Qt::blue));
    }
}

#include "InterfaceTest.moc"
