// Blocks of frames by a hostile writer: the reader stays inside the block and its target, ends, and
// writes nothing but its own words.

#include "MemoryBlock.h"

#include "input/SharedFrameReader.h"
#include "video/PlaneLayout.h"

#include <cstdlib>

namespace {

constexpr int kTurns = 8;

void takeFrame(SharedFrameReader &reader, test::MemoryBlock &block, std::size_t bytesLeft)
{
    const auto slot = reader.take(block);
    if (!slot)
        return;
    const PlaneLayout layout = PlaneLayout::of(slot->width, slot->height, slot->format);
    if (layout.totalSize == 0 || layout.totalSize > block.size())
        std::abort();
    // Between the choice of a frame and its copy the writer may cut the block short.
    if (bytesLeft < block.bytes.size())
        block.bytes.resize(bytesLeft);
    std::vector<std::uint8_t> target(layout.totalSize);
    if (slot->dataOffset != 0)
        (void)reader.copy(block, *slot, target.data(), layout.pitch[0], layout.planeHeight[0]);
    reader.release(block, *slot);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t *data, std::size_t size)
{
    if (size < 4)
        return 0;
    const std::size_t cut = data[0] | (std::size_t(data[1]) << 8);
    const int cutTurn = data[2] % (2 * kTurns);
    test::MemoryBlock block(size - 4);
    std::copy_n(data + 4, size - 4, block.bytes.begin());

    SharedFaults faults;
    SharedFrameReader reader(&faults);
    if (reader.greet(block, 1) != BlockGreeting::Accepted)
        return 0;
    const int interval = reader.pollInterval(block);
    if (interval < 1 || interval > 1000)
        std::abort();
    for (int turn = 0; turn < kTurns; ++turn) {
        takeFrame(reader, block, turn == cutTurn ? cut : block.bytes.size());
        if (turn % 2 == 1)
            reader.acceptRestart(block);
    }
    (void)faults.text();
    return 0;
}
