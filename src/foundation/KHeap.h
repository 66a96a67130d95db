#pragma once

// The C library's heap as the whole program uses it; set by main before any thread exists.

namespace KHeap {

/// A film starts dozens of short-lived threads. The C library would set a heap of its own aside for
/// each, and none of them shrinks again: after some hundred films half a gigabyte lies idle.
void ShareBetweenThreads();

} // namespace KHeap
