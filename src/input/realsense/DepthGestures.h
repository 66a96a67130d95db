#pragma once

// Turns the frames of a depth camera into what the player is asked to do: the library recognises
// the hand's shapes, this tells when each counts and how often. No device, no window, no clock but
// the frames' own. Owned by KRealSense, called on the GUI thread. docs/hands.md tells the design.

#include "input/hands/FrameClock.h"
#include "input/hands/OneEuroFilter.h"
#include "input/hands/Settled.h"
#include "input/realsense/DepthFrame.h"

#include <optional>

enum class DepthCalibration { Idle = 0, Calibrating = 1, Calibrated = 2 };

struct DepthActions
{
    QVector<QByteArray> fired;            ///< gesture ids for the scene
    bool seeking = false;                 ///< the timeline is in the hand, else the view is
    std::optional<float> seekProgression; ///< 0 to 1, a new value
    bool seekEnds = false;                ///< go there now
    bool playPause = false;
    int volumeSteps = 0;
    bool moving = false; ///< an open hand has hold of the view
    float yaw = 0;       ///< radians to turn the view by
    float pitch = 0;
    std::optional<float> fov; ///< degrees
};

class DepthGestures
{
public:
    /// Radians that a step turns for a hand at the edge of the picture.
    static constexpr float kStep = 0.125F;
    static constexpr float kStepTime = 0.05F; // seconds

    /// A hand this far away, millimetres, gives the narrowest view; each millimetre nearer widens
    /// it by a degree, up to the widest.
    static constexpr float kFarthestHand = 400;
    static constexpr float kNarrowest = 80; // degrees
    static constexpr float kWidest = 300;

    /// A drag along the timeline counts from the first of these to before the second.
    static constexpr float kLeastSeek = 0.25F;
    static constexpr float kMostSeek = 1;

    /// Seconds between two uses of the sign that starts and pauses, and between two steps of the
    /// volume at first and later.
    static constexpr float kSignPause = 1.5F;
    static constexpr float kFirstRepeat = 0.5F;
    static constexpr float kNextRepeat = 0.25F;

    /// Begins with a hand that has yet to show where its middle is.
    void start();
    void stop();
    DepthCalibration calibration() const { return m_calibration; }

    /// Field of view for a hand at @p depth millimetres.
    static float fovOf(float depth);

    /// @p progress is the played share of the medium, @p fov the view's degrees. Nothing for a
    /// frame that is to be left out.
    std::optional<DepthActions> update(const DepthFrame &frame, float progress, float fov);

private:
    /// A shape of the hand that lasts.
    struct Held
    {
        bool on = false;
        float time = 0;
        float sinceFired = 0;
    };

    void release();
    void track(const DepthFrame &frame, float seconds);
    void calibrate(const DepthFrame &frame, float seconds);
    void takeEvents(const DepthFrame &frame);
    void seek(float progress, float seconds, DepthActions &actions);
    void volume(Held &thumb, int step, const char *id, float seconds, DepthActions &actions);
    void moveCamera(const DepthFrame &frame, float fov, float seconds, DepthActions &actions);

    FrameClock m_clock;
    DepthCalibration m_calibration = DepthCalibration::Idle;
    OneEuroFilter m_filter{1.5F, 4.0F};
    QVector3D m_position; // of the hand, smoothed; z is unused
    QVector3D m_centre{0.5F, 0.5F, 0};
    float m_still = 0;
    float m_unseen = 0;

    Held m_pinch;
    Held m_thumbUp;
    Held m_thumbDown;
    Held m_open;
    TwoThresholds m_openness{0.7F, 0.5F};
    bool m_signBegins = false;
    bool m_pinchEnded = false;
    float m_sinceSign = kSignPause;
    float m_pinchX = 0;
    float m_pinchStart = 0;
    float m_progression = 0;
    float m_stepTime = 0;
    std::optional<float>
        m_fovSide; // of the hand's field of view against the view's, until they met
};
