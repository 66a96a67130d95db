#pragma once

// A hand tracker and a depth camera that tests hold in their hands. Lives in a library of its own,
// which the test and the plug-in share.

#include "input/hands/HandFrame.h"
#include "input/realsense/DepthFrame.h"

namespace test::standin {

/// The next three call the player back on a thread of their own, as the tracker's library does.
void plugTracker();
void unplugTracker();
void show(const HandFrame &frame);

/// The camera sees @p frame next; waits until it was taken.
void show(const DepthFrame &frame);
void loseCamera();

} // namespace test::standin
