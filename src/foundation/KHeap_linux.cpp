#include "foundation/KHeap.h"

#include <malloc.h>

void KHeap::ShareBetweenThreads()
{
    constexpr int kHeaps = 2;
    mallopt(M_ARENA_MAX, kHeaps);
}
