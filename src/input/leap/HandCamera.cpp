#include "input/leap/HandCamera.h"

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/KShaderCodeBuilder.h"

#include <QObject>
#include <QVariant>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kGlideMs = 200;
// After this long without a motion the hand takes up the camera where it is then, seconds.
constexpr float kIdle = 0.3F;
// A scene that never ends its bounce must not hold the camera for ever.
constexpr float kLongestBounce = 1.5F;
constexpr float kNoTurn = 1e-5F;      // radians
constexpr float kRollTremble = 0.01F; // radians

} // namespace

float HandCamera::limitedPitch(float pitch) const
{
    const KGlobalObject *camera = m_application->globalObject();
    if (m_application->shaderBuilder()->projectionSource() == KShaderCodeBuilder::STANDARD)
        return camera->clampPitch(pitch);
    return std::max(camera->pitchMin(), std::min(pitch, camera->pitchMax()));
}

bool HandCamera::givesWay() const
{
    const KShaderCodeBuilder *shader = m_application->shaderBuilder();
    return shader->projection() == KShaderCodeBuilder::LITTLE_PLANET &&
           shader->projectionSource() != KShaderCodeBuilder::STANDARD;
}

void HandCamera::rememberRest(bool handsSeen)
{
    if (handsSeen && !m_handsSeen) {
        m_restFov = m_application->globalObject()->fov();
        m_restRoll = m_application->globalObject()->roll();
    }
    m_handsSeen = handsSeen;
}

std::optional<HandCamera::Bounce> HandCamera::apply(const HandActions &actions, float seconds,
                                                    QObject *headset)
{
    KGlobalObject *camera = m_application->globalObject();
    if (!camera || !m_application->shaderBuilder())
        return {};
    rememberRest(actions.handsSeen);
    if (m_bouncing) {
        *m_bouncing += seconds;
        if (*m_bouncing > kLongestBounce)
            finishBounce();
        return {};
    }
    if (headset) {
        // A head looks up and down by itself; the hand turns the chair.
        if (actions.yaw != 0)
            headset->setProperty("shiftYaw",
                                 headset->property("shiftYaw").toDouble() - double(actions.yaw));
        return {};
    }
    m_pitchIdle += seconds;
    m_fovIdle += seconds;
    if (!actions.cameraMoves)
        return {};
    if (actions.yaw != 0)
        camera->interpolateValue("yaw", actions.yaw, kGlideMs, true);
    moveFov(actions.fovFactor);
    moveRoll(actions.roll);
    return movePitch(actions.pitch);
}

std::optional<HandCamera::Bounce> HandCamera::movePitch(float pitch)
{
    KGlobalObject *camera = m_application->globalObject();
    if (std::abs(pitch) < kNoTurn)
        return m_pitchIdle < kIdle ? std::nullopt : settlePitch();
    const float wanted = m_pitch.value_or(camera->pitch()) + pitch;
    const float limited = limitedPitch(wanted);
    m_pitchIdle = 0;
    const bool planet = givesWay();
    if (planet && std::abs(wanted - limited) > kGive)
        return bounceTo(limited);
    m_pitch = planet ? wanted : limited;
    camera->interpolateValue("pitch", *m_pitch, kGlideMs);
    return {};
}

std::optional<HandCamera::Bounce> HandCamera::settlePitch()
{
    const std::optional<float> left = m_pitch;
    m_pitch.reset();
    if (!left || !givesWay() || limitedPitch(*left) == *left)
        return {};
    return bounceTo(limitedPitch(*left));
}

HandCamera::Bounce HandCamera::bounceTo(float pitch)
{
    KGlobalObject *camera = m_application->globalObject();
    const bool changed = std::abs(camera->fov() - m_restFov) > 0.5F ||
                         std::abs(camera->roll() - m_restRoll) > kRollTremble;
    const Bounce bounce{pitch, changed ? double(m_restFov) : -1.0, m_restRoll};
    // The scene's animation is to be the only one.
    camera->stopCameraAnimation();
    camera->interpolateValue("fov", camera->fov(), 0);
    camera->interpolateValue("roll", camera->roll(), 0);
    forget();
    m_bouncing = 0.0F;
    return bounce;
}

void HandCamera::moveFov(float factor)
{
    KGlobalObject *camera = m_application->globalObject();
    if (factor == 1) {
        if (m_fovIdle > kIdle)
            m_fov.reset();
        return;
    }
    m_fovIdle = 0;
    const float wanted = m_fov.value_or(camera->fov()) * factor;
    m_fov = std::max(camera->fovLimitMin(), std::min(wanted, camera->fovLimitMax()));
    camera->interpolateValue("fov", *m_fov, kGlideMs);
}

void HandCamera::moveRoll(const std::optional<float> &roll)
{
    if (!roll && !m_rolled)
        return;
    KGlobalObject *camera = m_application->globalObject();
    const float wanted = m_restRoll + roll.value_or(0);
    if (std::abs(wanted - camera->roll()) > kRollTremble)
        camera->interpolateValue("roll", wanted, kGlideMs);
    m_rolled = roll.has_value();
}

void HandCamera::finishBounce()
{
    m_bouncing.reset();
}

std::optional<HandCamera::Bounce> HandCamera::release()
{
    const std::optional<float> underWay = m_bouncing;
    const bool standing = m_application->globalObject() && m_application->shaderBuilder();
    const std::optional<Bounce> bounce = standing ? settlePitch() : std::nullopt;
    if (!bounce) {
        forget();
        m_bouncing = underWay;
    }
    return bounce;
}

void HandCamera::forget()
{
    m_pitch.reset();
    m_fov.reset();
    m_rolled = false;
    m_bouncing.reset();
    m_pitchIdle = m_fovIdle = 0;
}
