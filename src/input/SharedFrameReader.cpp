#include "input/SharedFrameReader.h"

#include "video/PlaneLayout.h"

#include <QtEndian>

#include <algorithm>
#include <array>
#include <atomic>
#include <cstring>

namespace {

constexpr quint16 kYuyvKind = 1;
constexpr int kLongestInterval = 1000; // ms

template <class Number>
std::optional<Number> readNumber(const BlockAccess &block, quint64 offset)
{
    std::array<uchar, sizeof(Number)> bytes{};
    if (!block.read(offset, bytes.data(), bytes.size()))
        return std::nullopt;
    return qFromLittleEndian<Number>(bytes.data());
}

template <class Number>
[[nodiscard]] bool writeNumber(BlockAccess &block, quint64 offset, Number value)
{
    std::array<uchar, sizeof(Number)> bytes{};
    qToLittleEndian(value, bytes.data());
    return block.write(offset, bytes.data(), bytes.size());
}

quint64 slotOffset(int index)
{
    return SharedLayout::kSlots + SharedLayout::kSlotBytes * quint64(index);
}

} // namespace

BlockGreeting SharedFrameReader::greet(BlockAccess &block, quint32 readerHandle)
{
    m_slotIndex = 0;
    m_lastTimestamp = 0;
    m_leftOver.reset();
    m_readerHandle = readerHandle;

    std::array<char, SharedLayout::kVersionBytes> version{};
    if (block.size() < SharedLayout::kSlots ||
        !block.read(SharedLayout::kVersionOffset, version.data(), version.size()) ||
        !writeNumber(block, SharedLayout::kReaderHandle, readerHandle)) {
        m_faults->add(SharedFault::BlockTooSmall);
        return BlockGreeting::NotFilled;
    }
    if (version[0] == '\0')
        return BlockGreeting::NotFilled;
    // The terminator belongs to the comparison: a longer text is another version.
    if (std::memcmp(version.data(), SharedLayout::kVersion, sizeof SharedLayout::kVersion) == 0)
        return BlockGreeting::Accepted;
    m_faults->add(SharedFault::WrongVersion);
    if (!writeNumber(block, SharedLayout::kRejected, quint32(1)))
        m_faults->add(SharedFault::BlockTooSmall);
    return BlockGreeting::Rejected;
}

bool SharedFrameReader::isKnownTo(const BlockAccess &block) const
{
    return readNumber<quint32>(block, SharedLayout::kReaderHandle) == m_readerHandle;
}

int SharedFrameReader::usableSlots(const BlockAccess &block) const
{
    const int claimed = readNumber<quint16>(block, SharedLayout::kSlotCount).value_or(0);
    const quint64 size = block.size();
    if (size < SharedLayout::kSlots)
        return 0;
    const quint64 fitting = (size - SharedLayout::kSlots) / SharedLayout::kSlotBytes;
    return int(std::min<quint64>(quint64(claimed), fitting));
}

int SharedFrameReader::pollInterval(const BlockAccess &block) const
{
    const quint64 slot = slotOffset(0);
    const int top = readNumber<quint16>(block, slot + SharedLayout::kRateNumerator).value_or(0);
    const int bottom =
        readNumber<quint16>(block, slot + SharedLayout::kRateDenominator).value_or(0);
    if (top == 0 || bottom == 0)
        return kDefaultInterval;
    const int frameTime = bottom * 1000 / top;
    return std::clamp(int(float(frameTime) * 0.5F), 1, kLongestInterval);
}

std::optional<SharedSlot> SharedFrameReader::readySlot(const BlockAccess &block, int index) const
{
    const quint64 offset = slotOffset(index);
    if (readNumber<quint16>(block, offset + SharedLayout::kReady).value_or(0) == 0)
        return std::nullopt;
    // What the writer wrote before it set the word is read after it.
    std::atomic_thread_fence(std::memory_order_acquire);

    std::array<uchar, SharedLayout::kSlotBytes> bytes{};
    if (!block.read(offset, bytes.data(), bytes.size()))
        return std::nullopt;
    const auto word = [&bytes](quint64 at) { return qFromLittleEndian<quint16>(&bytes[at]); };
    SharedSlot slot;
    slot.index = index;
    slot.timestamp = qFromLittleEndian<quint64>(&bytes[SharedLayout::kTimestamp]);
    slot.dataOffset = qFromLittleEndian<quint32>(&bytes[SharedLayout::kDataOffset]);
    slot.width = word(SharedLayout::kWidth);
    slot.height = word(SharedLayout::kHeight);
    slot.rowBytes = word(SharedLayout::kRowBytes);
    slot.rateNumerator = word(SharedLayout::kRateNumerator);
    slot.rateDenominator = word(SharedLayout::kRateDenominator);
    slot.format =
        word(SharedLayout::kPixelKind) == kYuyvKind ? VlcPixelFormat::Yuyv : VlcPixelFormat::Bgra;
    return slot;
}

std::optional<SharedSlot> SharedFrameReader::take(BlockAccess &block)
{
    const int count = usableSlots(block);
    if (count == 0 || readNumber<quint16>(block, SharedLayout::kSlotCount) != count)
        m_faults->add(SharedFault::SlotsOutside);
    if (count == 0)
        return std::nullopt;
    if (m_slotIndex >= count)
        m_slotIndex = 0;

    std::optional<SharedSlot> newest = readySlot(block, m_slotIndex);
    if (!newest || newest->timestamp < m_lastTimestamp)
        return std::nullopt;
    // A late reader skips to the newest frame; once round the ring is far enough.
    for (int step = 1; step < count; ++step) {
        const std::optional<SharedSlot> next = readySlot(block, (m_slotIndex + 1) % count);
        if (!next || next->timestamp < newest->timestamp)
            break;
        newest = next;
        m_slotIndex = next->index;
    }

    if (!isShowable(block, *newest)) {
        release(block, *newest);
        advance(block, count);
        return std::nullopt;
    }
    m_lastTimestamp = newest->timestamp;
    advance(block, count);
    return newest;
}

void SharedFrameReader::advance(const BlockAccess &block, int slotCount)
{
    m_slotIndex = (m_slotIndex + 1) % slotCount;
    const std::optional<SharedSlot> slot = readySlot(block, m_slotIndex);
    m_leftOver = slot ? std::optional(slot->timestamp) : std::nullopt;
}

void SharedFrameReader::acceptRestart(const BlockAccess &block)
{
    const std::optional<SharedSlot> slot = readySlot(block, m_slotIndex);
    if (slot && slot->timestamp < m_lastTimestamp && m_leftOver != slot->timestamp)
        m_lastTimestamp = 0;
}

bool SharedFrameReader::isShowable(const BlockAccess &block, const SharedSlot &slot) const
{
    const quint64 size = block.size();
    const PlaneLayout layout = PlaneLayout::of(slot.width, slot.height, slot.format);
    const TextureStorage storage = layout.storage();
    // Memory is spent on no more pixels than the writer has given room for.
    if (layout.totalSize == 0 || layout.totalSize > size || storage.width > m_largestTexture ||
        storage.height > m_largestTexture) {
        m_faults->add(SharedFault::FrameImpossible);
        return false;
    }
    const quint64 bytes = quint64(slot.rowBytes) * slot.height;
    if (slot.dataOffset != 0 && (bytes == 0 || slot.dataOffset + bytes > size)) {
        m_faults->add(SharedFault::FrameOutside);
        return false;
    }
    return true;
}

bool SharedFrameReader::copy(const BlockAccess &block, const SharedSlot &slot, std::uint8_t *target,
                             quint32 pitch, quint32 rows)
{
    const quint32 height = std::min<quint32>(rows, slot.height);
    bool whole = true;
    if (slot.rowBytes == pitch) {
        whole = block.read(slot.dataOffset, target, std::size_t(pitch) * height);
    } else {
        const quint32 used = std::min<quint32>(slot.rowBytes, pitch);
        for (quint32 row = 0; row < height && whole; ++row) {
            std::uint8_t *line = target + std::size_t(pitch) * row;
            whole = block.read(slot.dataOffset + quint64(slot.rowBytes) * row, line, used);
            std::memset(line + used, 0, pitch - used);
        }
    }
    if (!whole)
        m_faults->add(SharedFault::FrameCutShort);
    return whole;
}

void SharedFrameReader::release(BlockAccess &block, const SharedSlot &slot)
{
    // The pixels have been read before the writer may overwrite them.
    std::atomic_thread_fence(std::memory_order_release);
    if (!writeNumber(block, slotOffset(slot.index) + SharedLayout::kReady, quint16(0)))
        m_faults->add(SharedFault::FrameCutShort);
}
