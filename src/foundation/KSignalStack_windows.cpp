// Windows runs handlers on the stack that ran out, but keeps back what a thread asks for.

#include "foundation/KSignalStack.h"

#include <windows.h>

namespace {

constexpr ULONG kHandlerBytes = 64 * 1024;

} // namespace

struct KSignalStack::Native
{
};

KSignalStack::KSignalStack()
{
    ULONG bytes = kHandlerBytes;
    SetThreadStackGuarantee(&bytes);
}

// The guarantee ends with its thread.
KSignalStack::~KSignalStack() = default;
