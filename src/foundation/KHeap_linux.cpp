#include "foundation/KHeap.h"

#include <cstdint>

#include <malloc.h>
#include <sys/mman.h>

void KHeap::ShareBetweenThreads()
{
    constexpr int kHeaps = 2;
    mallopt(M_ARENA_MAX, kHeaps);
}

void KHeap::UseWhole(void *memory, std::size_t bytes)
{
    constexpr std::uintptr_t kLargePage = std::uintptr_t(2) << 20;
    const auto begin =
        (reinterpret_cast<std::uintptr_t>(memory) + kLargePage - 1) & ~(kLargePage - 1);
    const auto end = (reinterpret_cast<std::uintptr_t>(memory) + bytes) & ~(kLargePage - 1);
    // Advice: where it is not taken, all is as before.
    if (begin < end)
        madvise(reinterpret_cast<void *>(begin), end - begin, MADV_HUGEPAGE);
}
