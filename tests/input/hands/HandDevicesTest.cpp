// The hand devices in the real scene, with plug-ins whose devices the test holds in its hands.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "input/hands/HandGenerator.h"
#include "input/hands/standin/DeviceStandIn.h"
#include "input/leap/KLeap.h"
#include "input/realsense/KRealSense.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QPainter>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

#include <cmath>

using namespace test;

namespace {

const QVector3D kMiddle(0, 200, 0);

struct HandDevices : ::testing::Test
{
    static void SetUpTestSuite()
    {
        QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/tests/standins"));
        auto *application = static_cast<Application *>(qApp);
        application->init();
        ASSERT_NE(application->view()->rootObject(), nullptr);
        ASSERT_TRUE(QTest::qWaitForWindowExposed(application->view()));
        application->globalObject()->openFile(
            QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg"));
    }

    HandDevices()
    {
        settings->set("instance/output/projection", KShaderCodeBuilder::ORVEX);
        camera->resetYawPitchRollFov();
        leap->setCameraMode(int(HandCameraMode::Hands));
        plug();
    }

    ~HandDevices() override
    {
        realSense->setActivated(false);
        leap->setActivated(false);
    }

    void plug()
    {
        EXPECT_TRUE(test::soon([this] {
            if (!leap->available())
                standin::plugTracker();
            QTest::qWait(20);
            return leap->available();
        }));
    }

    /// What the tracker sees of the hands that @p actor gives; each frame is taken before the next.
    void act(
        double seconds, const std::function<std::vector<Hand>(double)> &actor,
        HandFrame (*seen)(HandFrame) = [](HandFrame frame) { return frame; })
    {
        Recording recording(60, {0.2F, 0, false});
        recording.play(seconds, actor);
        for (const HandFrame &frame : recording.frames()) {
            HandFrame now = seen(frame);
            now.timestamp = clock += 16000;
            standin::show(now);
            QTest::qWait(2);
        }
    }

    void showStill(const std::vector<Hand> &hands, double seconds = 0.4)
    {
        act(seconds, [&hands](double) { return hands; });
    }

    /// An open hand turns the view upwards, by 1/120 radian with each frame.
    void pushUp(int frames)
    {
        showStill({makeHand(1, Shape::Open, kMiddle, {-0.5F, 0})}, frames / 60.0);
    }

    /// The window, with @p hands before the tracker until that moment.
    QImage picture(const char *name, const std::vector<Hand> &hands = {})
    {
        if (hands.empty())
            QTest::qWait(300);
        else
            showStill(hands);
        view->update();
        const QImage image = view->grabWindow();
        const QString folder = QStringLiteral(ORBILENS_BINARY_DIR "/artefacts");
        QDir().mkpath(folder);
        image.save(QStringLiteral("%1/hands-%2.png").arg(folder, QLatin1String(name)));
        return image;
    }

    QQuickItem *item(const char *name) const
    {
        return view->rootObject()->findChild<QQuickItem *>(QLatin1String(name));
    }

    void call(const char *name, const char *method) const
    {
        QMetaObject::invokeMethod(item(name), method);
    }

    test::WarningGuard guard;
    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = application->view();
    KGlobalObject *camera = application->globalObject();
    KSettings *settings = application->settings();
    KLeap *leap = application->leap();
    KRealSense *realSense = application->realSense();
    qint64 clock = QDateTime::currentMSecsSinceEpoch() * 1000;
};

int differentPixels(const QImage &a, const QImage &b)
{
    int count = 0;
    for (int y = 0; y < a.height(); ++y) {
        for (int x = 0; x < a.width(); ++x)
            count += std::abs(qGray(a.pixel(x, y)) - qGray(b.pixel(x, y))) > 16 ? 1 : 0;
    }
    return count;
}

DepthFrame depthFrame(qint64 timestamp, double x)
{
    DepthFrame frame;
    frame.timestamp = timestamp;
    frame.handSeen = true;
    frame.position = {x, 0.5};
    frame.depth = 420;
    frame.openness = 1;
    frame.image = QImage(160, 120, QImage::Format_Grayscale8);
    frame.image.fill(Qt::black);
    QPainter painter(&frame.image);
    painter.setBrush(QColor(190, 190, 190));
    painter.drawEllipse(QPointF(x * 160, 70), 24, 28);
    for (int i = -2; i <= 2; ++i) {
        painter.drawRoundedRect(QRectF(x * 160 + i * 12 - 5, 12 + std::abs(i) * 6, 10, 50), 5, 5);
        frame.points.append({x + i * 0.075, 0.14 + std::abs(i) * 0.05});
        frame.points.append({x + i * 0.06, 0.4});
    }
    return frame;
}

} // namespace

TEST_F(HandDevices, TheTrackerComesAndGoesWhileItIsUsed)
{
    EXPECT_EQ(leap->logMessage(), "Leap Motion Device found.\n");
    leap->setActivated(true);
    showStill({makeHand(1, Shape::Open, kMiddle)});
    EXPECT_TRUE(item("k_leapPointer")->isVisible());
    standin::unplugTracker();
    EXPECT_SOON(!leap->available());
    EXPECT_FALSE(leap->activated());
    EXPECT_EQ(leap->logMessage(),
              "Leap Motion device not found.\n\nWarning : Leap Motion SDK must be installed.");
    EXPECT_FALSE(item("k_leapPointer")->isVisible());
    leap->setActivated(true);
    EXPECT_FALSE(leap->activated());
    call("k_bar", "leapOnOff");
    EXPECT_FALSE(leap->activated()) << "the key does nothing";
    plug();
    call("k_bar", "leapOnOff");
    EXPECT_TRUE(leap->activated());
}

TEST_F(HandDevices, SwitchingOneOnSwitchesItsRivalOff)
{
    ASSERT_TRUE(realSense->available());
    call("k_bar", "realSenseOnOff");
    EXPECT_TRUE(realSense->activated());
    call("k_bar", "leapOnOff");
    EXPECT_TRUE(leap->activated());
    EXPECT_FALSE(realSense->activated());
    call("k_bar", "realSenseOnOff");
    EXPECT_FALSE(leap->activated());
    EXPECT_TRUE(realSense->activated());
    call("k_bar", "gyroOnOff");
    EXPECT_FALSE(realSense->activated());
    picture("bar");
}

TEST_F(HandDevices, AHandTurnsTheViewAndIsPainted)
{
    leap->setActivated(true);
    act(1.5, [](double t) {
        return std::vector<Hand>{
            makeHand(1, Shape::Open, kMiddle + QVector3D(40 * float(t), 0, 0))};
    });
    EXPECT_SOON(std::abs(camera->yaw() - 60 * 0.008F) < 0.06F) << camera->yaw();
    const std::vector<Hand> open{makeHand(1, Shape::Open, kMiddle + QVector3D(60, 0, 0))};
    const QImage painted = picture("open", open);
    settings->set("application/leapmotion/ghostHands", false);
    EXPECT_FALSE(leap->drawHand());
    EXPECT_GT(differentPixels(painted, picture("unpainted", open)), 5000);
    settings->set("application/leapmotion/ghostHands", true);
    picture("two",
            {makeHand(1, Shape::Open, {-70, 200, 0}), makeHand(2, Shape::Pointing, {80, 210, 20})});
}

TEST_F(HandDevices, AFingerPointsAndTheZoneWarns)
{
    leap->setActivated(true);
    leap->setCameraMode(1);
    picture("pointer", {makeHand(1, Shape::Pointing, {20, 230, 120})});
    const QQuickItem *pointer = item("pointer");
    const double side = 200 * (1 - double(leap->pointer().z()));
    EXPECT_TRUE(pointer->isVisible());
    EXPECT_NEAR(pointer->width(), side, 1e-3);
    const QPointF centre = pointer->mapToScene(QPointF(side / 2, side / 2));
    EXPECT_NEAR(centre.x(), double(leap->pointer().x()), 1e-2);
    EXPECT_NEAR(centre.y(), double(leap->pointer().y()), 1e-2);
    EXPECT_SOON(leap->pointer().w() == 0) << "silence hides it";

    showStill({makeHand(1, Shape::Pointing, {20, 130, 120})});
    EXPECT_TRUE(leap->menuState()) << "at the bar the finger means the bar";
    EXPECT_SOON(item("k_bar")->property("state") == "On");
    picture("zone", {makeHand(1, Shape::Open, {-130, 30, 0})});
    EXPECT_EQ(leap->handOutZone(), HandZone::Left | HandZone::Bottom);
    leap->setCameraMode(3);
    EXPECT_EQ(leap->handOutZone(), 0);
}

TEST_F(HandDevices, TheKeySwitchesTheTrackerAndAFingerPressesAButton)
{
    view->requestActivate();
    ASSERT_TRUE(QTest::qWaitForWindowActive(view));
    QTest::keyClick(view, Qt::Key_M);
    ASSERT_SOON(leap->activated());
    leap->setCameraMode(1);
    const QQuickItem *button = item("loopButton");
    // The palm of a hand whose index points there: its tip is 30 mm left of the palm and 4 above.
    const auto pointingAt = [this](const QPointF &at, float z) {
        const float across = 200 * float(at.x()) / float(view->width()) - 100;
        const float up = 75 - 150 * float(at.y()) / float(view->height());
        return std::vector<Hand>{makeHand(1, Shape::Pointing, {across + 30, 196 + up, z})};
    };
    const auto centre = [button] {
        return button->mapToScene(QPointF(button->width() / 2, button->height() / 2));
    };
    showStill(pointingAt({centre().x(), view->height() - 30.0}, 150));
    ASSERT_SOON(centre().y() < view->height() - 25) << "the bar is up";
    const int before = camera->loopMode();
    const QPointF at = centre();
    act(2, [&](double t) { return pointingAt(at, t > 0.5 && t < 1.3 ? 40 : 150); });
    EXPECT_SOON(camera->loopMode() == (before + 1) % 3);
    QTest::keyClick(view, Qt::Key_M);
    EXPECT_SOON(!leap->activated());
}

TEST_F(HandDevices, ThePlanetBouncesAndAGestureChangesTheProjection)
{
    leap->setActivated(true);
    QSignalSpy bounces(leap, &KLeap::pitchBounce);
    QSignalSpy icons(leap, &KLeap::iconProjChange);
    settings->set("instance/output/projection", KShaderCodeBuilder::LITTLE_PLANET);
    EXPECT_EQ(icons.count(), 0) << "not by a gesture";
    const auto atTheLimit = [this] { return std::abs(camera->pitch() - 1.5708F) < 1e-3F; };
    camera->setPitch(1.5F);
    for (int i = 0; i < 60 && bounces.isEmpty(); ++i)
        pushUp(1);
    ASSERT_FALSE(bounces.isEmpty()) << "far beyond";
    EXPECT_NEAR(bounces[0][0].toDouble(), 1.5708, 1e-3);
    EXPECT_EQ(bounces[0][1].toDouble(), -1);
    const float fov = camera->fov();
    camera->setFov(fov + 10);
    EXPECT_TRUE(test::soon(atTheLimit)) << camera->pitch();
    EXPECT_EQ(camera->fov(), fov + 10) << "the pitch alone comes back";
    camera->setFov(fov);
    // While the view swings back no hand moves it, so a push may come too early.
    EXPECT_TRUE(test::soon([&] {
        pushUp(15);
        return QTest::qWaitFor([&] { return bounces.count() > 1; }, 1000);
    })) << "back when the hands are gone";
    EXPECT_TRUE(test::soon(atTheLimit)) << camera->pitch();

    act(1.5, [](double t) {
        const double x = std::min(1.0, std::max(0.0, (t - 0.5) / 0.25)) * 240 - 120;
        return std::vector<Hand>{
            makeHand(1, Shape::Open, kMiddle + QVector3D(float(x), 0, 0), {0, 1.57F})};
    });
    EXPECT_EQ(icons.count(), 1);
    EXPECT_EQ(application->shaderBuilder()->projection(), KShaderCodeBuilder::FISHEYE);
}

TEST_F(HandDevices, TheTutorialShowsEachPageUntilItsGestureIsMade)
{
    leap->setActivated(true);
    leap->setTutoState(-2);
    EXPECT_EQ(leap->tutoState(), 0);
    const QQuickItem *tutorial = item("tutorial");
    EXPECT_TRUE(tutorial->isVisible());
    act(3.5, [](double t) {
        return std::vector<Hand>{
            makeHand(1, Shape::Open, kMiddle + QVector3D(60 * float(std::sin(2 * t)), 0, 0))};
    });
    EXPECT_EQ(leap->tutoState(), 20);
    for (const int page : {0, 1, 2, 3, 4, 5, 6, 7, 10, 20}) {
        leap->setTutoState(page);
        EXPECT_EQ(leap->tutoState(), page);
        const auto *loader = tutorial->findChild<QQuickItem *>("picture");
        EXPECT_SOON(loader->property("status").toInt() == 1) << page;
        QTest::qWait(400);
        picture(qPrintable(QStringLiteral("tutorial-%1").arg(page)));
    }
    leap->setTutoState(99);
    EXPECT_EQ(leap->tutoState(), -1);
    leap->setTutoState(-2);
    int pages = 0;
    while (leap->tutoState() != -1 && ++pages < 20)
        leap->nextTutorialPage();
    EXPECT_EQ(pages, 8); // all but "turn" and "finger"
}

TEST_F(HandDevices, CancelledOptionsComeBackAndNonsenseIsRefused)
{
    leap->setActivated(true);
    QMetaObject::invokeMethod(view->rootObject(), "onDisplayPopup",
                              Q_ARG(QVariant, "qrc:/qml/popup/PopupLeapOptions.qml"),
                              Q_ARG(QVariant, QVariant()));
    EXPECT_SOON(item("cancelButton") != nullptr);
    QTest::qWait(400);
    picture("options");
    const std::vector<std::pair<const char *, QVariant>> wishes{
        {"sensitivityYawPitch", 5},  {"sensitivitySeekJump", 30000},
        {"pitchInv", true},          {"yawInv", true},
        {"cameraMode", 1},           {"pointerInterpolation", 200},
        {"rollMode", true},          {"fovMode", false},
        {"playPauseGesture", false}, {"seekGesture", false},
        {"drawHand", false}};
    std::vector<QVariant> before;
    for (const auto &wish : wishes) {
        before.push_back(leap->property(wish.first));
        leap->setProperty(wish.first, wish.second);
        EXPECT_NE(leap->property(wish.first), before.back()) << wish.first;
    }
    EXPECT_EQ(leap->sensitivityYawPitch(), 0.8);
    EXPECT_EQ(leap->sensitivitySeekJump(), 10000);
    EXPECT_EQ(leap->pointerInterpolation(), 10);
    leap->setCameraMode(4);
    leap->setSensitivityYawPitch(std::nan(""));
    EXPECT_EQ(leap->cameraMode(), 1);
    EXPECT_EQ(leap->sensitivityYawPitch(), 0.8);
    QMetaObject::invokeMethod(item("cancelButton"), "clicked");
    for (std::size_t i = 0; i < wishes.size(); ++i)
        EXPECT_EQ(leap->property(wishes[i].first), before[i]) << wishes[i].first;
}

TEST_F(HandDevices, WithAHeadsetEachEyeSeesTheHandsAndTheChairTurns)
{
    QQmlComponent component(view->engine());
    component.setData("import QtQuick 2.15\n"
                      "QtObject {\n"
                      "    property bool available: true\n"
                      "    property bool activated: false\n"
                      "    property real shiftYaw: 0\n"
                      "    property real fps: 0\n"
                      "    property string logMessage\n"
                      "    property point lensCenterLeft: Qt.point(0.25, 0.5)\n"
                      "    property point lensCenterRight: Qt.point(0.75, 0.5)\n"
                      "    function sdkType() { return 'openvr' }\n"
                      "    function isSupported() { return true }\n"
                      "}\n",
                      {});
    const std::unique_ptr<QObject> headset(component.create());
    ASSERT_NE(headset, nullptr) << component.errorString().toStdString();
    QQmlContext *context = view->rootContext();
    const QVariant before = context->contextProperty("kHmdDevice");
    context->setContextProperty("kHmdDevice", headset.get());
    leap->setActivated(true);
    call("k_bar", "hmdOnOff");
    EXPECT_TRUE(headset->property("activated").toBool());
    EXPECT_EQ(leap->cameraMode(), 2);
    EXPECT_TRUE(leap->activated());
    leap->setTutoState(0);

    const float yaw = camera->yaw();
    // Before the head, 350 mm away and below the eyes; turning a frame to the head's is its own
    // inverse.
    const auto hands = [](double t) {
        return std::vector<Hand>{makeHand(1, Shape::Open, {40 * float(t) - 30, -90, -350})};
    };
    act(1.5, hands, Hands::fromHead);
    EXPECT_NEAR(headset->property("shiftYaw").toDouble(), -60 * 0.008, 0.06);
    EXPECT_EQ(camera->yaw(), yaw);
    picture("headset");

    call("k_bar", "hmdOnOff");
    EXPECT_EQ(leap->cameraMode(), 1);
    context->setContextProperty("kHmdDevice", before);
}

TEST_F(HandDevices, TheDepthCameraSteersAndShowsItsPicture)
{
    EXPECT_EQ(realSense->logMessage(),
              "Intel Real Sense is ready to use.\nBuilt with SDK 7.0.25.4.");
    realSense->setActivated(true);
    EXPECT_EQ(realSense->calibrationState(), KRealSense::Calibrating);
    picture("calibrating");
    const auto play = [this](double seconds, double x, const DepthGesture &gesture = {}) {
        for (int i = 0; i < seconds * 30; ++i) {
            DepthFrame frame = depthFrame(clock += 33000, x);
            if (i == 0 && !gesture.name.isEmpty())
                frame.gestures.append(gesture);
            standin::show(frame);
            QTest::qWait(10);
        }
    };
    play(1.8, 0.5);
    EXPECT_EQ(realSense->calibrationState(), KRealSense::Calibrated);
    play(1, 0.8);
    EXPECT_SOON(camera->yaw() > 0.3F) << camera->yaw();
    const QImage strip = picture("strip");
    // The hand is bright where the camera's picture stands.
    const QQuickItem *shown = item("camera");
    const QPoint palm =
        shown->mapToScene(QPointF(0.8 * shown->width(), 0.62 * shown->height())).toPoint();
    EXPECT_GT(qGray(strip.pixel(palm)), 150);
    EXPECT_LT(qGray(strip.pixel(palm - QPoint(int(0.6 * shown->width()), 0))), 40);

    play(0.5, 0.7, {"full_pinch", DepthGesture::Begins});
    EXPECT_EQ(realSense->uiState(), KRealSense::SeekMode);
    picture("seek");
    play(0.2, 0.7, {"full_pinch", DepthGesture::Ends});
    EXPECT_EQ(realSense->uiState(), KRealSense::ControlViewMode);
    const double volume = settings->get("application/volume").toDouble();
    play(0.3, 0.5, {"thumb_down", DepthGesture::Begins});
    EXPECT_LT(settings->get("application/volume").toDouble(), volume);
    picture("volume");

    settings->set("application/realsense/feedbackScreen", false);
    EXPECT_FALSE(realSense->feedbackScreen());
    EXPECT_SOON(!item("strip")->isVisible());
    settings->set("application/realsense/feedbackScreen", true);
}

TEST_F(HandDevices, ZALostCameraIsOffForGood)
{
    realSense->setActivated(true);
    standin::loseCamera();
    EXPECT_SOON(!realSense->available());
    EXPECT_FALSE(realSense->activated());
    EXPECT_EQ(item("strip"), nullptr);
    realSense->setActivated(true);
    EXPECT_FALSE(realSense->activated());
}
