// A stack of its own for the thread's signal handlers; the system's shared one is the stack that
// just ran out.

#include "foundation/KSignalStack.h"

#include <algorithm>

#include <csignal>
#include <unistd.h>

namespace {

// The writer of dumps asks for 16 KiB; the frame of a signal holds the processor's whole state.
constexpr long kHandlerBytes = 32 * 1024;

} // namespace

struct KSignalStack::Native
{
    std::unique_ptr<char[]> memory;
    stack_t before = {};
};

KSignalStack::KSignalStack()
{
    const auto size = std::size_t(std::max(sysconf(_SC_SIGSTKSZ), 0L) + kHandlerBytes);
    auto native = std::make_unique<Native>();
    native->memory.reset(new char[size]);
    stack_t stack = {};
    stack.ss_sp = native->memory.get();
    stack.ss_size = size;
    if (sigaltstack(&stack, &native->before) == 0)
        m_native = std::move(native);
}

KSignalStack::~KSignalStack()
{
    if (m_native)
        sigaltstack(&m_native->before, nullptr);
}
