#include "input/realsense/DepthGestures.h"
#include "input/realsense/DepthCamera.h"
#include "input/realsense/DepthCameraStart.h"
#include "input/realsense/PxcRuntime.h"

#include <gtest/gtest.h>

#include <functional>
#include <limits>
#include <random>

namespace {

/// A camera whose start fails at a step.
class FailingCamera : public DepthCamera
{
public:
    enum Step { Drivers, Manager, Module, Gestures, Nothing };
    explicit FailingCamera(Step failing)
        : m_failing(failing)
    {}
    QStringList enabled;

    bool driversFound() override { return m_failing != Drivers; }
    bool createManager() override { return m_failing != Manager; }
    bool enableHandModule() override { return m_failing != Module; }
    bool enableGestures(const QStringList &names) override
    {
        enabled = names;
        return m_failing != Gestures;
    }
    std::array<int, 4> version() override { return {7, 0, 25, 4}; }
    Acquired acquire(DepthFrame *) override { return Acquired::Nothing; }

private:
    Step m_failing;
};

const std::function<void(double)> kNothing = [](double) {};

/// An open hand in the middle, 400 mm away, on whose calibration all else stands.
struct DepthHand : ::testing::TestWithParam<double>
{
    struct Sum
    {
        float yaw = 0, pitch = 0;
        int playPauses = 0, volumeSteps = 0, seeks = 0;
        float progression = -1;
        std::optional<float> fov;
        QVector<QByteArray> fired;
        bool seeking = false;
    };

    DepthHand()
    {
        gestures.start();
        frame.handSeen = true;
        frame.position = {0.5, 0.5};
        frame.depth = 400;
        frame.openness = 1;
        play(1.5, kNothing);
        EXPECT_EQ(gestures.calibration(), DepthCalibration::Calibrated);
    }

    Sum play(double seconds, const std::function<void(double)> &move, float progress = 0.4F,
             float fov = 80)
    {
        std::normal_distribution<double> noise(0, 0.002);
        Sum sum;
        for (double t = 0; t < seconds; t += 1 / GetParam()) {
            move(t);
            time += 1 / GetParam();
            DepthFrame shown = frame;
            shown.timestamp = qint64(time * 1e6);
            shown.position += QPointF(noise(random), noise(random));
            frame.gestures.clear();
            const auto actions = gestures.update(shown, progress, fov);
            if (!actions)
                continue;
            sum.yaw += actions->yaw;
            sum.pitch += actions->pitch;
            sum.playPauses += actions->playPause ? 1 : 0;
            sum.volumeSteps += actions->volumeSteps;
            sum.seeks += actions->seekEnds ? 1 : 0;
            sum.progression = actions->seekProgression.value_or(sum.progression);
            sum.fov = actions->fov ? actions->fov : sum.fov;
            sum.seeking = actions->seeking;
            sum.fired += actions->fired;
        }
        return sum;
    }

    void event(const char *name, DepthGesture::Phase phase)
    {
        frame.gestures.append({name, phase});
    }

    DepthGestures gestures;
    DepthFrame frame;
    double time = 1;
    std::mt19937 random{7};
};

INSTANTIATE_TEST_SUITE_P(Rates, DepthHand, ::testing::Values(15.0, 30.0, 60.0, 500.0));

} // namespace

TEST(DepthCameraStart, SaysWhereItEnded)
{
    const QString module = "Failed to initialize Hand module.\n"
                           "Ensure you have installed Hand module drivers.\n";
    const std::tuple<FailingCamera::Step, QString> rows[] = {
        {FailingCamera::Drivers, "RealSense drivers required : "},
        {FailingCamera::Manager, "Failed to initialize PXCSenseManager.\n"},
        {FailingCamera::Module, module},
        {FailingCamera::Gestures, module},
        {FailingCamera::Nothing, "Intel Real Sense is ready to use.\nBuilt with SDK 7.0.25.4."}};
    for (const auto &[failing, text] : rows) {
        FailingCamera camera(failing);
        const DepthCameraStart start = DepthCameraStart::run(&camera);
        EXPECT_EQ(start.logMessage, text);
        EXPECT_EQ(start.available, failing == FailingCamera::Nothing);
        EXPECT_EQ(start.driversMissing, failing == FailingCamera::Drivers);
        EXPECT_EQ(camera.enabled.isEmpty(), failing < FailingCamera::Gestures);
    }
    EXPECT_TRUE(DepthCameraStart::run(nullptr).driversMissing);
}

TEST(PxcRuntime, FindsTheLibraryByFolderOrName)
{
    const char *const rows[][2] = {
        {"", ""},
        {"  ", ""},
        {R"(C:\Intel\RSSDK)", R"(C:\Intel\RSSDK\bin\win32\libpxcsession.dll)"},
        {R"(C:\Intel\RSSDK\)", R"(C:\Intel\RSSDK\bin\win32\libpxcsession.dll)"},
        {R"(D:\rt\LibPxcSession.DLL)", R"(D:\rt\LibPxcSession.DLL)"}};
    for (const auto &[value, path] : rows)
        EXPECT_EQ(PxcRuntime::libraryPath(value).toStdString(), path);
}

TEST_P(DepthHand, LooksAroundByTheHandsOffset)
{
    EXPECT_EQ(play(1, kNothing).yaw, 0) << "a hand in the middle rests";
    frame.position = {0.9, 0.4};
    const Sum sum = play(1, kNothing);
    // Offsets of 0.8 and -0.2 less the rest, twenty steps a second.
    EXPECT_NEAR(sum.yaw, 20 * 0.125F * 0.773F, 0.2F);
    EXPECT_NEAR(sum.pitch, -20 * 0.125F * 0.091F, 0.1F);
    EXPECT_GE(sum.fired.count("move_camera"), 2);
    frame.openness = 0;
    play(0.1, kNothing);
    EXPECT_EQ(play(1, kNothing).yaw, 0) << "a fist rests";
    frame.openness = 1;
    frame.handSeen = false;
    EXPECT_EQ(play(1, kNothing).yaw, 0);
}

TEST_P(DepthHand, TakesHoldOfTheFieldOfViewWhereTheTwoMeet)
{
    for (const auto &row : std::vector<std::pair<float, float>>{
             {500, 80}, {400, 80}, {300, 180}, {180, 300}, {100, 300}})
        EXPECT_EQ(DepthGestures::fovOf(row.first), row.second);
    frame.openness = 0;
    play(0.2, kNothing);
    frame.openness = 1;
    frame.depth = 300;
    EXPECT_FALSE(play(0.3, kNothing, 0, 90).fov) << "no leap";
    const auto away = [this](double t) { frame.depth = 300 + 120 * float(t); };
    EXPECT_NEAR(play(1, away, 0, 90).fov.value_or(0), 80, 9);
    const auto near = [this](double t) { frame.depth = 400 - 100 * float(t); };
    EXPECT_NEAR(play(1, near, 0, 90).fov.value_or(0), 180, 8);
}

TEST_P(DepthHand, SeeksByAPinchThatGoesFarEnough)
{
    const std::tuple<float, double, double, float, int> rows[] = {
        {0.4F, 0.2, 1, 0.7F, 1},  {0.4F, -0.05, 1, 0.325F, 1}, {0.4F, -0.2, 1, 0.1F, 0},
        {0.9F, 0.2, 1, 1, 0},     {0, 0.1, 1, 0.15F, 0},       {0.4F, 0.02, 0.05, 0.4F, 0},
        {0.9F, -0.1, 1, 0.75F, 1}};
    for (const auto &[progress, way, seconds, progression, seeks] : rows) {
        frame.position = {0.5, 0.5};
        play(0.5, kNothing);
        event("full_pinch", DepthGesture::Begins);
        const auto drag = [&, far = way, time = seconds](double t) {
            frame.position.setX(0.5 + far * std::min(1.0, t / time));
        };
        EXPECT_TRUE(play(seconds > 0.5 ? 1.5 : seconds, drag, progress).seeking);
        event("full_pinch", DepthGesture::Ends);
        const Sum end = play(0.2, kNothing, progress);
        EXPECT_EQ(end.seeks, seeks) << progress << ' ' << way;
        EXPECT_NEAR(end.progression, progression, 0.05F);
        EXPECT_FALSE(end.seeking);
    }
    event("full_pinch", DepthGesture::Begins);
    EXPECT_TRUE(play(0.5, kNothing).seeking);
    frame.handSeen = false;
    const Sum lost = play(0.6, kNothing);
    EXPECT_FALSE(lost.seeking) << "out of sight the view is in hand again";
    EXPECT_EQ(lost.seeks, 0);
}

TEST_P(DepthHand, PacesWhatRepeats)
{
    Sum sum = play(1.2, [this](double t) {
        if (int(t * 10) % 3 == 0)
            event("v_sign", DepthGesture::Begins);
    });
    EXPECT_EQ(sum.playPauses, 1) << "a sign that flickers";
    play(1.5, kNothing);
    event("v_sign", DepthGesture::Begins);
    sum = play(0.5, kNothing);
    EXPECT_EQ(sum.playPauses, 1);
    EXPECT_EQ(sum.fired.count("v_sign"), 1);

    for (const int step : {1, -1}) {
        const char *name = step > 0 ? "thumb_up" : "thumb_down";
        event(name, DepthGesture::Begins);
        sum = play(1.4, kNothing);
        // At once, after half a second, then each quarter.
        EXPECT_NEAR(sum.volumeSteps, step * 5, 1);
        EXPECT_EQ(sum.fired.count(name), std::abs(sum.volumeSteps));
        EXPECT_EQ(sum.yaw, 0);
        event(name, DepthGesture::Ends);
        EXPECT_EQ(play(1, kNothing).volumeSteps, 0);
    }
    for (const char *none : {"fist", "spreadfingers", "swipe_left", "swipe_right", ""}) {
        event(none, DepthGesture::Begins);
        sum = play(0.3, kNothing);
        EXPECT_EQ(sum.playPauses + sum.volumeSteps + sum.seeks, 0);
    }
}

TEST_P(DepthHand, NumbersThatAreNoneDoNoHarm)
{
    const float kNaN = std::numeric_limits<float>::quiet_NaN();
    for (int fault = 0; fault < 4; ++fault) {
        const DepthFrame good = frame;
        if (fault == 0)
            frame.position = {double(kNaN), 0.5};
        else if (fault == 1)
            frame.position = {1e30, 0.5};
        else if (fault == 2)
            frame.depth = kNaN;
        else
            frame.openness = kNaN;
        const Sum sum = play(0.5, kNothing);
        EXPECT_EQ(sum.yaw, 0);
        EXPECT_FALSE(sum.fov);
        frame = good;
    }
}
