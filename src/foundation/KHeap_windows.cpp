#include "foundation/KHeap.h"

// All threads have one heap here.
void KHeap::ShareBetweenThreads() {}
