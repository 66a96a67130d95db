#include "input/hands/HandAnalysis.h"
#include "input/hands/HandGenerator.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

using namespace test;

namespace {

constexpr float kPi = 3.14159265F;
const QVector3D kMiddle(0, 200, 0);

/// All that a recording asked of the player.
struct Sum
{
    float yaw = 0;
    float pitch = 0;
    float fovFactor = 1;
    float roll = 0; // the last one
    int seeks = 0;  // net, as are the next two
    int projections = 0;
    int playPauses = 0;
    int menus = 0;
    int presses = 0;
    int releases = 0;
    int edges = 0;
    int cameraMoves = 0;
    QVector4D pointer;
};

Sum analyse(const std::vector<HandFrame> &frames, const HandOptions &options = {})
{
    HandAnalysis analysis;
    Sum sum;
    for (const HandFrame &frame : frames) {
        const auto actions = analysis.update(frame, options);
        if (!actions)
            continue;
        sum.yaw += actions->yaw;
        sum.pitch += actions->pitch;
        sum.fovFactor *= actions->fovFactor;
        sum.roll = actions->roll.value_or(sum.roll);
        sum.seeks += actions->seekSteps;
        sum.projections += actions->projectionStep;
        sum.playPauses += actions->playPause ? 1 : 0;
        sum.menus += actions->menuToggled ? 1 : 0;
        sum.presses += actions->pressed ? 1 : 0;
        sum.releases += actions->released ? 1 : 0;
        sum.edges |= actions->outZone;
        sum.cameraMoves += actions->cameraMoves ? 1 : 0;
        if (actions->pointer.w() > 0)
            sum.pointer = actions->pointer;
    }
    return sum;
}

float eased(double t, double begin, double length)
{
    const double x = std::clamp((t - begin) / length, 0.0, 1.0);
    return float(x * x * (3 - 2 * x));
}

using Actor = std::function<std::vector<Hand>(double)>;

/// A circle of a pointing finger, @p turns of it, one a second.
Actor circle(float radius, double turns)
{
    return [=](double t) {
        const double angle = std::min(t, std::abs(turns)) * 2 * double(kPi) * (turns > 0 ? 1 : -1);
        const QVector3D palm =
            kMiddle + radius * QVector3D(float(std::sin(angle)), float(std::cos(angle)), 0);
        return std::vector<Hand>{makeHand(1, Shape::Pointing, palm)};
    };
}

/// A sweep of @p way millimetres in @p time seconds of a hand on edge, and back slowly.
Actor sweep(float way, double time, float roll = kPi / 2)
{
    return [=](double t) {
        const float x = -way / 2 + way * (eased(t, 0.4, time) - eased(t, 1.2 + time, 1.5));
        return std::vector<Hand>{makeHand(1, Shape::Open, kMiddle + QVector3D(x, 0, 0), {0, roll})};
    };
}

/// Two hands that meet to @p gap in @p time seconds and part again, palms turned by @p roll.
Actor meeting(float gap, double time, float roll = kPi / 2, bool hides = false)
{
    return [=](double t) {
        const float apart = 240 - (240 - gap) * (eased(t, 0.4, time) - eased(t, 0.5 + time, 0.5));
        std::vector<Hand> hands{
            makeHand(1, Shape::Open, kMiddle - QVector3D(apart / 2, 0, 0), {0, -roll}),
            makeHand(2, Shape::Open, kMiddle + QVector3D(apart / 2, 0, 0), {0, roll})};
        if (hides && apart < 110)
            hands.pop_back();
        return hands;
    };
}

/// A hand that comes up before the screen for @p time seconds, going @p speed aside meanwhile.
Actor stop(double time, float speed = 0)
{
    return [=](double t) {
        const QVector3D palm = kMiddle + QVector3D(speed * float(t), 0, 0);
        const bool up = t > 0.3 && t < 0.3 + time;
        return std::vector<Hand>{up ? stopHand(1, palm) : makeHand(1, Shape::Open, palm)};
    };
}

/// A hand that goes to and fro.
Actor sway(Shape shape, float way, double rate, const Attitude &attitude = {})
{
    return [=](double t) {
        const QVector3D palm = kMiddle + QVector3D(way * float(std::sin(rate * t)), 0, 0);
        return std::vector<Hand>{makeHand(1, shape, palm, attitude)};
    };
}

struct Event
{
    const char *name;
    double seconds;
    Actor actor;
    int seeks, projections, playPauses, menus;
};

const Event kEvents[] = {
    {"circle clockwise", 2, circle(35, 1.25), 1, 0, 0, 0},
    {"circle the other way", 2, circle(35, -1.25), -1, 0, 0, 0},
    {"three circles", 4, circle(45, 3.25), 3, 0, 0, 0},
    {"half a circle", 2, circle(35, 0.5), 0, 0, 0, 0},
    {"tiny circle", 2, circle(4, 1.5), 0, 0, 0, 0},
    {"finger to and fro", 3, sway(Shape::Pointing, 60, 5), 0, 0, 0, 0},
    {"swipe to the right", 4, sweep(260, 0.3), 0, 1, 0, 0},
    {"swipe to the left", 4, sweep(-260, 0.3), 0, -1, 0, 0},
    {"slow sweep", 4, sweep(260, 1.5), 0, 0, 0, 0},
    {"short jerk", 4, sweep(60, 0.12), 0, 0, 0, 0},
    {"quick move of a level hand", 4, sweep(260, 0.3, 0), 0, 0, 0, 0},
    {"clap", 3, meeting(40, 0.3), 0, 0, 0, 1},
    {"clap that hides a hand", 3, meeting(40, 0.3, kPi / 2, true), 0, 0, 0, 1},
    {"hands that come together slowly", 4, meeting(40, 2), 0, 0, 0, 0},
    {"hands that stop short", 3, meeting(140, 0.3), 0, 0, 0, 0},
    {"level hands that meet", 3, meeting(40, 0.3, 0), 0, 0, 0, 0},
    {"hold", 2.5, stop(1.5), 0, 0, 1, 0},
    {"long hold", 4, stop(3.5), 0, 0, 1, 0},
    {"short hold", 2, stop(0.4), 0, 0, 0, 0},
    {"palm to the screen that waves", 2.5, stop(1.5, 150), 0, 0, 0, 0},
    {"level hand that rests", 3, sway(Shape::Open, 0, 0), 0, 0, 0, 0},
    {"fist that moves", 3, sway(Shape::Fist, 80, 4, {0, kPi / 2}), 0, 0, 0, 0}};

} // namespace

TEST(HandGestures, EachIsSeenOnceAndNearMissesAreNot)
{
    const std::tuple<double, Trouble> conditions[] = {{30, {0.3F, 0, false}},
                                                      {60, {0.5F, 0.02F, false}},
                                                      {115, {0.5F, 0.05F, false}},
                                                      {115, {0.4F, 0, true}},
                                                      {1000, {0.1F, 0.02F, false}}};
    for (const Event &event : kEvents) {
        for (const auto &[rate, trouble] : conditions) {
            for (const unsigned seed : {1U, 2U, 3U}) {
                SCOPED_TRACE(testing::Message()
                             << event.name << " at " << rate << " frames a second, seed " << seed);
                Recording recording(rate, trouble, seed);
                recording.play(event.seconds, event.actor).pause(0.5);
                const Sum sum = analyse(recording.frames());
                EXPECT_EQ(sum.seeks, event.seeks);
                EXPECT_EQ(sum.projections, event.projections);
                EXPECT_EQ(sum.playPauses, event.playPauses);
                EXPECT_EQ(sum.menus, event.menus);
            }
        }
    }
}

TEST(HandGestures, ThoseSwitchedOffDoNothing)
{
    HandOptions options;
    options.seek = options.playPause = options.zoom = false;
    for (const Actor &actor : {circle(35, 1.25), stop(1.5), meeting(140, 1, 0)}) {
        const Sum sum = analyse(Recording(60, {}).play(3, actor).frames(), options);
        EXPECT_EQ(sum.seeks, 0);
        EXPECT_EQ(sum.playPauses, 0);
        EXPECT_EQ(sum.fovFactor, 1);
    }
}

namespace {

/// A hand of some shape that goes @p way in two seconds, starting and ending at rest.
Actor carry(Shape shape, const QVector3D &way, const Attitude &attitude = {})
{
    return [=](double t) {
        return std::vector<Hand>{makeHand(1, shape, kMiddle + way * eased(t, 0.3, 1.5), attitude)};
    };
}

struct Path
{
    const char *name;
    Shape shape;
    QVector3D way;
    Attitude attitude;
    HandOptions options;
    float yaw, pitch; // radians
};

HandOptions optionsOf(HandCameraMode mode, double sensitivity = 0.2)
{
    HandOptions options;
    options.mode = mode;
    options.sensitivity = sensitivity;
    options.window = {800, 600};
    return options;
}

} // namespace

TEST(HandMotion, TheViewFollowsTheIntendedWay)
{
    constexpr float kUsual = 0.2F * Steering::kRadiansPerMillimetre;
    const float tilted = 2.3F * Steering::tiltRate(kPi / 2 - 0.4F); // nearly all of 2.4 seconds
    const QVector3D aside(80, 0, 0);
    const HandOptions quick = optionsOf(HandCameraMode::Hands, 0.8);
    const HandOptions whole = optionsOf(HandCameraMode::Translation);
    const HandOptions finger = optionsOf(HandCameraMode::Finger);
    HandOptions inverted;
    inverted.yawInverted = inverted.pitchInverted = true;
    const Path rows[] = {
        {"aside", Shape::Open, aside, {}, {}, 80 * kUsual, 0},
        {"aside, inverted", Shape::Open, aside, {}, inverted, -80 * kUsual, 0},
        {"aside, quick view", Shape::Open, aside / 2, {}, quick, 160 * kUsual, 0},
        {"up and to the screen", Shape::Open, {0, 60, -60}, {}, {}, 0, 0},
        {"fingers up", Shape::Open, {}, {0.4F, 0}, {}, 0, tilted},
        {"fingers down", Shape::Open, {}, {-0.4F, 0}, {}, 0, -tilted},
        {"nearly level", Shape::Open, {}, {0.07F, 0}, {}, 0, 0},
        {"pinch", Shape::Pinch, {50, 30, 0}, {}, {}, -50 * kUsual, 30 * kUsual},
        {"fist", Shape::Fist, {80, 40, 0}, {}, {}, 0, 0},
        {"pointing", Shape::Pointing, aside, {}, {}, 0, 0},
        {"translation", Shape::Open, {50, 40, 0}, {}, whole, 50 * kUsual, -40 * kUsual},
        {"pushing finger", Shape::Pointing, {30, 20, 0}, {}, finger, -30 * kUsual, 20 * kUsual}};
    for (const Path &row : rows) {
        for (const double rate : {12.0, 30.0, 115.0, 1000.0}) {
            SCOPED_TRACE(testing::Message() << row.name << " at " << rate);
            const float noise = rate > 500 ? 0.1F : 0.3F;
            Recording recording(rate, {noise, 0, false});
            recording.play(2.5, carry(row.shape, row.way, row.attitude)).pause(0.3);
            const Sum sum = analyse(recording.frames(), row.options);
            EXPECT_NEAR(sum.yaw, row.yaw, 0.05F + 0.06F * std::abs(row.yaw));
            EXPECT_NEAR(sum.pitch, row.pitch, 0.05F + 0.1F * std::abs(row.pitch));
            // Each move restarts an animation of 200 ms.
            EXPECT_LE(sum.cameraMoves, 2.8 / 0.02 + 1);
        }
    }
}

TEST(HandMotion, IsSmoothAndRestsWithTheHand)
{
    HandAnalysis analysis;
    const auto recording = Recording(100, {0.5F, 0, false}).play(4, carry(Shape::Open, {80, 0, 0}));
    float rest = 0;
    float largest = 0;
    for (std::size_t i = 0; i < recording.frames().size(); ++i) {
        const auto actions = analysis.update(recording.frames()[i], {});
        largest = std::max(largest, std::abs(actions->yaw));
        if (i > 300) // it has arrived
            rest += actions->yaw;
    }
    EXPECT_LT(std::abs(rest), 0.01F);
    EXPECT_LT(largest, 0.03F); // radians in 20 ms, of 0.64 in 1.5 s
}

TEST(HandMotion, TwoHandsZoomAndTurnTheHorizonOnlyWhenAsked)
{
    // From 240 mm to 120 and no further: half as far apart, twice the field of view.
    const Actor together = [](double t) {
        const float apart = 240 - 120 * eased(t, 0.4, 1);
        return std::vector<Hand>{makeHand(1, Shape::Open, {-apart / 2, 200, 0}),
                                 makeHand(2, Shape::Open, {apart / 2, 200, 0})};
    };
    for (const double rate : {30.0, 115.0})
        EXPECT_NEAR(
            analyse(Recording(rate, {0.1F, 0, false}).play(2.5, together).frames()).fovFactor,
            1.85F, 0.2F);

    for (const float roll : {0.5F, -0.5F}) {
        const auto recording = Recording(60, {}).play(1.5, carry(Shape::Open, {}, {0, roll}));
        EXPECT_EQ(analyse(recording.frames()).roll, 0);
        HandOptions options;
        options.roll = true;
        EXPECT_NEAR(analyse(recording.frames(), options).roll, roll - std::copysign(0.15F, roll),
                    0.05F);
    }
}

TEST(HandMotion, OfWhichTheTrackerIsNotSureIsNotBelieved)
{
    auto frames = Recording(60, {}).play(2.5, carry(Shape::Open, {80, 0, 0})).frames();
    for (HandFrame &frame : frames) {
        for (Hand &hand : frame.hands)
            hand.rotationProbability = 0.7F;
    }
    EXPECT_EQ(analyse(frames).yaw, 0);
    const Actor side = [](double t) {
        const float x = 60 * eased(t, 0.3, 1);
        return std::vector<Hand>{makeHand(1, Shape::Open, {x - 90, 200, 0}),
                                 makeHand(2, Shape::Open, {x + 90, 200, 0})};
    };
    auto pair = Recording(60, {0.05F, 0, false}).play(2, side).frames();
    EXPECT_NEAR(analyse(pair).yaw, 60 * 0.008F, 0.05F);
    for (HandFrame &frame : pair)
        frame.translationProbability = 0.98F;
    EXPECT_EQ(analyse(pair).yaw, 0);
}

TEST(HandMotion, ATrackerOnTheHeadSeesTheSameHands)
{
    auto frames =
        Recording(60, {0.1F, 0, false}).play(2.5, carry(Shape::Open, {80, 0, 0})).frames();
    for (HandFrame &frame : frames)
        frame = Hands::fromHead(frame); // its own inverse
    EXPECT_NEAR(analyse(frames, optionsOf(HandCameraMode::Head)).yaw, 80 * 0.008F, 0.05F);
}

TEST(HandPointer, GoesWhereTheFingerPointsAndPushesOnce)
{
    // The index's tip is 30 mm left of the palm and 112 before it.
    const Actor push = [](double t) {
        const float z = 150 - 110 * (eased(t, 0.5, 0.4) - eased(t, 1.5, 0.4));
        return std::vector<Hand>{makeHand(1, Shape::Pointing, {80, 160, z})};
    };
    const HandOptions options = optionsOf(HandCameraMode::Finger);
    const Sum sum = analyse(Recording(60, {}).play(3, push).pause(0.3).frames(), options);
    EXPECT_NEAR(sum.pointer.x(), 400 + 50 * 4, 12);
    EXPECT_NEAR(sum.pointer.y(), 300 + 36 * 4, 12);
    EXPECT_EQ(sum.presses, 1);
    EXPECT_EQ(sum.releases, 1);
    // A hand that goes while it pushes lets go.
    const Sum lost = analyse(Recording(60, {}).play(1.2, push).pause(0.5).frames(), options);
    EXPECT_EQ(lost.presses, 1);
    EXPECT_EQ(lost.releases, 1);
    EXPECT_EQ(analyse(Recording(60, {}).play(3, push).frames(), {}).pointer.w(), 0);
}

TEST(TrackingZone, TellsWhichEdgeIsNear)
{
    const std::tuple<QVector3D, QVector3D, int> rows[] = {
        {{0, 200, 0}, {0, 0, -300}, 0},
        {{-101, 200, 0}, {-101, 0, -300}, HandZone::Left},
        {{101, 200, 0}, {101, 0, -300}, HandZone::Right},
        {{0, 49, 0}, {0, -101, -300}, HandZone::Bottom},
        {{0, 401, 0}, {0, 51, -300}, HandZone::Top},
        {{120, 30, 0}, {120, -130, -300}, HandZone::Right | HandZone::Bottom}};
    for (const auto &[desk, head, edges] : rows) {
        EXPECT_EQ(TrackingZone().update(desk, false), edges);
        EXPECT_EQ(TrackingZone().update(head, true), edges);
    }
    TrackingZone zone;
    zone.update({-101, 200, 0}, false);
    EXPECT_EQ(zone.update({-90, 200, 0}, false), HandZone::Left) << "it does not flicker";
    EXPECT_EQ(zone.update({-80, 200, 0}, false), 0);
}

TEST(HandFrames, BadOnesDoNoHarm)
{
    constexpr float kNaN = std::numeric_limits<float>::quiet_NaN();
    constexpr float kInf = std::numeric_limits<float>::infinity();
    const auto good = Recording(60, {}).play(1, carry(Shape::Open, {40, 0, 0})).frames();
    const std::function<void(HandFrame &)> faults[] = {
        [](HandFrame &f) { f.hands.clear(); },
        [](HandFrame &f) { f.hands[0].palm.setX(kNaN); },
        [](HandFrame &f) { f.hands[0].normal = {}; },
        [](HandFrame &f) { f.hands[0].direction = QVector3D(kInf, 0, 0); },
        [](HandFrame &f) { f.hands[0].translation = QVector3D(kNaN, 0, 0); },
        [](HandFrame &f) { f.hands[0].translation = QVector3D(1e30F, 0, 0); },
        [](HandFrame &f) { f.hands[0].fingers[1].tip = QVector3D(kNaN, 0, 0); },
        [](HandFrame &f) { f.hands[0].fingers = FingerList(10000, f.hands[0].fingers[1]); },
        [](HandFrame &f) { f.hands.assign(10000, f.hands[0]); },
        [](HandFrame &f) { f.hands[0].translationProbability = kNaN; },
        [](HandFrame &f) { f.scaleFactor = 0, f.scaleProbability = 1; },
        [](HandFrame &f) { f.scaleFactor = kNaN, f.scaleProbability = 1; },
        [](HandFrame &f) { f.timestamp = std::numeric_limits<qint64>::max(); },
        [](HandFrame &f) { f.timestamp = std::numeric_limits<qint64>::min(); },
        [](HandFrame &f) { f.timestamp -= 500000; },
        [](HandFrame &f) { f.timestamp = 0; },
        [](HandFrame &f) { f.hands[0].id = int(f.timestamp % 997); }};
    for (const HandCameraMode mode : {HandCameraMode::Finger, HandCameraMode::Hands}) {
        for (std::size_t i = 0; i < std::size(faults); ++i) {
            for (const std::size_t every : {std::size_t(1), std::size_t(7)}) {
                SCOPED_TRACE(testing::Message() << "fault " << i << " every " << every);
                auto frames = good;
                for (std::size_t f = 0; f < frames.size(); f += every)
                    faults[i](frames[f]);
                const Sum sum = analyse(frames, optionsOf(mode));
                EXPECT_LT(std::abs(sum.yaw) + std::abs(sum.pitch), 2);
                EXPECT_GT(sum.fovFactor, 0.2F);
                EXPECT_LT(sum.fovFactor, 5);
                EXPECT_EQ(sum.seeks + sum.projections + sum.playPauses, 0);
            }
        }
    }
}

TEST(FrameClock, TakesEachMomentOnceAndBelievesARestart)
{
    FrameClock clock;
    // -1 seconds for a frame that is left out.
    const std::tuple<qint64, float> rows[] = {{1000000, 0},  {1010000, 0.01F}, {1010000, -1},
                                              {1005000, -1}, {1020000, 0.01F}, {2000000, 0},
                                              {500, -1},     {1500, -1},       {2500, -1},
                                              {3500, -1},    {4500, 0},        {14500, 0.01F}};
    for (const auto &[timestamp, seconds] : rows)
        EXPECT_NEAR(clock.advance(timestamp).value_or(-1), seconds, 1e-6) << timestamp;
}
