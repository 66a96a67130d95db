#pragma once

// Room for what has to run after a thread has used up its stack, so that such a crash leaves a dump
// too. Made at the top of a worker thread's function, owned by it, used on that thread alone. The
// main thread has the crash handler's own.

#include <memory>

class KSignalStack
{
public:
    KSignalStack();
    /// Gives back what the thread had before.
    ~KSignalStack();
    KSignalStack(const KSignalStack &) = delete;
    KSignalStack &operator=(const KSignalStack &) = delete;

private:
    struct Native;
    std::unique_ptr<Native> m_native;
};
