#pragma once

// A hand tracker as KLeap sees it. Made by a plug-in on KLeap's own thread, owned by KLeap; frame()
// is called where KLeap lives.

#include "input/hands/HandFrame.h"

class QObject;

class HandTracker
{
public:
    virtual ~HandTracker() = default;

    /// Emits frameArrive() and leapConnected(bool), on any thread.
    virtual QObject *notifier() = 0;

    /// Begins to listen; what is connected already is told then.
    virtual void open() = 0;

    /// The newest frame, with the motions since the frame that the call before returned.
    virtual HandFrame frame() = 0;
};
