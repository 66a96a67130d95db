#pragma once

// Start and end of the process-wide services of this folder; main calls both, on the GUI thread.

namespace KFoundation {

/// Makes the services, before any window and any other thread exists. A second call does nothing.
void Initialize();

/// Ends them in reverse order, after the event loop and after every thread that uses them.
void Shutdown();

} // namespace KFoundation
