#pragma once

// Makes up what a hand tracker would see of hands that move as a test says: with noise, lost
// fingers and lost hands, at any frame rate. The same seed gives the same frames.

#include "input/hands/HandFrame.h"

#include <functional>
#include <random>
#include <vector>

namespace test {

enum class Shape { Open, Fist, Pinch, Pointing };

/// How a hand is held, from level with the fingers to the screen.
struct Attitude
{
    float tilt = 0; ///< radians that the fingers point up by
    float roll = 0; ///< radians clockwise, as the user sees it
};

Hand makeHand(int id, Shape shape, const QVector3D &palm, const Attitude &attitude = {});

/// The palm to the screen, fingers up.
Hand stopHand(int id, const QVector3D &palm);

struct Trouble
{
    float noise = 0.4F;  ///< millimetres of tremble
    float lostHands = 0; ///< share of the frames in which a hand is not seen, 0 to 1
    bool jumpingIds = false;
};

class Recording
{
public:
    Recording(double framesPerSecond, const Trouble &trouble, unsigned seed = 1);

    /// Goes on for @p seconds with the hands that @p actor gives for the time since then, seconds.
    Recording &play(double seconds, const std::function<std::vector<Hand>(double)> &actor);
    /// Nothing in sight.
    Recording &pause(double seconds);

    const std::vector<HandFrame> &frames() const { return m_frames; }

private:
    void append(std::vector<Hand> hands);

    const double m_rate;
    const Trouble m_trouble;
    std::mt19937 m_random;
    std::vector<HandFrame> m_frames;
    double m_time = 1;
};

} // namespace test
