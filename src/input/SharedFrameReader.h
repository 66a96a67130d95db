#pragma once

// The reading side of the frames that another process leaves in shared memory: header, ring of
// slots, choice of the newest frame, copying. docs/formats.md describes the block. Decides on
// copies of what the block holds and trusts nothing in it; no GL, no thread of its own. Owned by
// SharedMemoryThread.

#include "input/BlockAccess.h"
#include "input/SharedFaults.h"
#include "video/VlcPixelFormat.h"

#include <QSize>

#include <cstdint>
#include <optional>

/// Where the fields of a block lie, bytes from its start; integers are little-endian.
namespace SharedLayout {
constexpr char kVersion[] = "AVRT_Shared_Memory1.4";
constexpr quint64 kVersionOffset = 0;
constexpr quint64 kVersionBytes = 0x80;
constexpr quint64 kReaderHandle = 0x84;
constexpr quint64 kSlotCount = 0x8C;
constexpr quint64 kRejected = 0x90;
constexpr quint64 kSlots = 0x94;
constexpr quint64 kSlotBytes = 56;

// Inside a slot.
constexpr quint64 kTimestamp = 0;
constexpr quint64 kDataOffset = 0x10;
constexpr quint64 kWidth = 0x18;
constexpr quint64 kHeight = 0x1A;
constexpr quint64 kRowBytes = 0x1C;
constexpr quint64 kRateNumerator = 0x1E;
constexpr quint64 kRateDenominator = 0x20;
constexpr quint64 kPixelKind = 0x22;
constexpr quint64 kReady = 0x30;
} // namespace SharedLayout

/// One slot as it was when its frame was found ready.
struct SharedSlot
{
    int index = 0;
    quint64 timestamp = 0;
    quint32 dataOffset = 0; ///< bytes from the start of the block, 0 for no pixels
    quint16 width = 0;      ///< pixels
    quint16 height = 0;
    quint16 rowBytes = 0;
    quint16 rateNumerator = 0; ///< frames per second
    quint16 rateDenominator = 0;
    VlcPixelFormat format = VlcPixelFormat::Bgra;
};

enum class BlockGreeting {
    Accepted,
    NotFilled, ///< too small yet, or without a version text: its writer is still at work
    Rejected   ///< made for another version; the block has been told
};

class SharedFrameReader
{
public:
    explicit SharedFrameReader(SharedFaults *faults)
        : m_faults(faults)
    {}

    /// Frames that need more texels than this in a row or column are refused.
    void setLargestTexture(int texels) { m_largestTexture = texels; }

    /// Introduces the reader to a block and starts over at its first slot.
    [[nodiscard]] BlockGreeting greet(BlockAccess &block, quint32 readerHandle);

    /// False when a writer has made the header anew since greet().
    [[nodiscard]] bool isKnownTo(const BlockAccess &block) const;

    /// Half the time of a frame by the rate of the first slot, 1 to 1000 ms; kDefaultInterval while
    /// the writer has not told the rate.
    int pollInterval(const BlockAccess &block) const;
    static constexpr int kDefaultInterval = 10; // ms

    /// The newest frame that is ready, from the ring's present slot on, or nothing. The slot stays
    /// the reader's until release(). A slot that cannot be shown is counted and given back.
    [[nodiscard]] std::optional<SharedSlot> take(BlockAccess &block);

    /// Copies the rows of a frame to @p target, @p pitch bytes apart; what a short row leaves is
    /// filled with 0. False when the block does not hold all of it any more.
    [[nodiscard]] bool copy(const BlockAccess &block, const SharedSlot &slot, std::uint8_t *target,
                            quint32 pitch, quint32 rows);

    /// Gives a slot back to the writer.
    void release(BlockAccess &block, const SharedSlot &slot);

    /// For a reader that has waited long: a frame older than the last one has been written since
    /// that was taken, so the writer counts from the beginning again, and so does the reader.
    void acceptRestart(const BlockAccess &block);

    int slotIndex() const { return m_slotIndex; }

private:
    int usableSlots(const BlockAccess &block) const;
    std::optional<SharedSlot> readySlot(const BlockAccess &block, int index) const;
    [[nodiscard]] bool isShowable(const BlockAccess &block, const SharedSlot &slot) const;
    void advance(const BlockAccess &block, int slotCount);

    SharedFaults *m_faults;
    int m_largestTexture = 16384;
    quint32 m_readerHandle = 0;
    int m_slotIndex = 0;
    quint64 m_lastTimestamp = 0;
    /// The frame that lay in the present slot when the ring came to it.
    std::optional<quint64> m_leftOver;
};
