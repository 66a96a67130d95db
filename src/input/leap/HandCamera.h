#pragma once

// Moves the player's camera as the hands ask: within its limits, and back with a bounce where the
// little planet would turn inside out. Owned by KLeap, GUI thread.

#include "input/hands/HandActions.h"

#include <optional>

class Application;
class QObject;

class HandCamera
{
public:
    /// Where the scene is to bring the camera back to: radians and degrees.
    struct Bounce
    {
        double pitch = 0;
        double fov = -1; ///< -1 leaves field of view and roll as they are
        double roll = 0;
    };

    /// How far the little planet gives way beyond its limit, radians.
    static constexpr float kGive = 0.15F;

    explicit HandCamera(Application *application)
        : m_application(application)
    {}

    /// @p headset, where one is active, turns instead of the view; null without one. A returned
    /// bounce is under way until finishBounce(), and no hand moves the camera meanwhile.
    [[nodiscard]] std::optional<Bounce> apply(const HandActions &actions, float seconds,
                                              QObject *headset);
    void finishBounce();

    /// The hands are gone: what they had begun ends, and a view left beyond its limit comes back.
    [[nodiscard]] std::optional<Bounce> release();

    /// The camera is somebody else's now: what the hand had begun is forgotten.
    void forget();

private:
    float limitedPitch(float pitch) const;
    bool givesWay() const; // a little beyond its limits of pitch
    std::optional<Bounce> movePitch(float pitch);
    std::optional<Bounce> settlePitch();
    Bounce bounceTo(float pitch);
    void moveFov(float factor);
    void moveRoll(const std::optional<float> &roll);
    void rememberRest(bool handsSeen);

    Application *m_application;
    bool m_handsSeen = false;
    float m_restFov = 90; // what the view had when the hand came
    float m_restRoll = 0;
    std::optional<float> m_pitch; // where the hand has brought it, while it is at work
    float m_pitchIdle = 0;
    std::optional<float> m_fov;
    float m_fovIdle = 0;
    bool m_rolled = false;
    std::optional<float> m_bouncing; // seconds so far
};
