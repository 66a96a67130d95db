#include "foundation/KHeap.h"

// All threads have one heap here.
void KHeap::ShareBetweenThreads() {}

void KHeap::UseWhole(void *, std::size_t)
{
    // Windows gives large pages only to those with a privilege.
}
