#pragma once

// The C library's heap as the whole program uses it. Its ways are set by main before any thread
// exists; the rest is for any thread.

#include <cstddef>

namespace KHeap {

/// A film starts dozens of short-lived threads. The C library would set a heap of its own aside for
/// each, and none of them shrinks again: after some hundred films half a gigabyte lies idle.
void ShareBetweenThreads();

/// To be told of memory of many megabytes before it is first written, all of which will be: it
/// then comes in large pages, where each small one would cost an interrupt.
void UseWhole(void *memory, std::size_t bytes);

} // namespace KHeap
