#pragma once

// What the buttons and sticks of Oculus controllers ask for; a value of the headset's worker
// thread.
//
//   select, A, X           1  click in the open interface, else play or pause
//   back, B, Y             2  open or close the interface
//   left, right            3, 4  slide the list, else seek a second back or on
//   up, down               5, 6  seek a twentieth of the medium on or back
//
// Select, back and the four directions are the small remote's keys; a game pad has them too. Each
// stick of the hand controllers and the game pad stands for the four directions.

#include "hmd/OvrTypes.h"

class OculusControls
{
public:
    /// Adds to @p sum what another controller of the same moment holds down.
    static void merge(ovrInputState *sum, const ovrInputState &other);

    /// The code of what is held down, 0 for nothing. Of several the first in the order above.
    int command(const ovrInputState &input);

private:
    /// The directions of @p stick as buttons. One that stood for a direction leaves it later than
    /// it took it, or a hand that rests near the border would repeat it.
    static std::uint32_t directions(const ovrVector2f &stick, std::uint32_t before);

    std::uint32_t m_directions[ovrHand_Count] = {};
};
