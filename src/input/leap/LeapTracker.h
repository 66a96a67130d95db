#pragma once

// The Leap Motion tracker by its maker's library: turns that library's frames into ours and nothing
// more. Made by LeapPlugin, owned by KLeap.

#include "input/leap/HandTracker.h"
#include "input/leap/LeapListener.h"

class LeapTracker final : public HandTracker
{
public:
    ~LeapTracker() override;

    QObject *notifier() override { return &m_listener; }
    void open() override;
    HandFrame frame() override;

private:
    LeapListener m_listener;
    Leap::Controller m_controller;
    Leap::Frame m_previous;
};
