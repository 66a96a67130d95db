#include "hmd/HmdMode.h"

HmdModeChange decideHmdMode(const HmdModeFacts &facts)
{
    if (facts.forceOpenGL || facts.hostFrames || facts.hmdMode == facts.detected)
        return HmdModeChange::None;
    return facts.detected ? HmdModeChange::SwitchOn : HmdModeChange::SwitchOff;
}

QString reasonOf(HmdModeChange change)
{
    switch (change) {
    case HmdModeChange::None:
        break;
    case HmdModeChange::SwitchOff:
        return QStringLiteral("off");
    case HmdModeChange::SwitchOn:
        return QStringLiteral("on");
    }
    return {};
}

bool mayRestart(HmdModeChange change, const QString &lastReason)
{
    return change != HmdModeChange::None && reasonOf(change) != lastReason;
}
