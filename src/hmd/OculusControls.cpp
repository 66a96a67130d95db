#include "hmd/OculusControls.h"

#include <cmath>

namespace {

constexpr float kTaken = 0.5F;
constexpr float kLeft = 0.3F;

constexpr struct
{
    std::uint32_t buttons;
    int code;
} kCodes[] = {
    {ovrButton_Enter | ovrButton_A | ovrButton_X, 1},
    {ovrButton_Back | ovrButton_B | ovrButton_Y, 2},
    {ovrButton_Left, 3},
    {ovrButton_Right, 4},
    {ovrButton_Up, 5},
    {ovrButton_Down, 6},
};

} // namespace

void OculusControls::merge(ovrInputState *sum, const ovrInputState &other)
{
    sum->Buttons |= other.Buttons;
    for (int hand = 0; hand < ovrHand_Count; ++hand) {
        ovrVector2f &stick = sum->Thumbstick[hand];
        const ovrVector2f &added = other.Thumbstick[hand];
        if (std::hypot(added.x, added.y) > std::hypot(stick.x, stick.y))
            stick = added;
    }
}

std::uint32_t OculusControls::directions(const ovrVector2f &stick, std::uint32_t before)
{
    const struct
    {
        float deflection;
        std::uint32_t button;
    } sides[] = {{-stick.x, ovrButton_Left},
                 {stick.x, ovrButton_Right},
                 {stick.y, ovrButton_Up},
                 {-stick.y, ovrButton_Down}};
    std::uint32_t held = 0;
    for (const auto &side : sides) {
        if (side.deflection > ((before & side.button) != 0 ? kLeft : kTaken))
            held |= side.button;
    }
    return held;
}

int OculusControls::command(const ovrInputState &input)
{
    std::uint32_t held = input.Buttons;
    for (int hand = 0; hand < ovrHand_Count; ++hand) {
        m_directions[hand] = directions(input.Thumbstick[hand], m_directions[hand]);
        held |= m_directions[hand];
    }
    for (const auto &row : kCodes) {
        if ((held & row.buttons) != 0)
            return row.code;
    }
    return 0;
}
