#pragma once

// A block of frames in this process, with the fields a writer sets, for tests and fuzzing.

#include "input/BlockAccess.h"
#include "input/SharedFrameReader.h"

#include <QtEndian>

#include <algorithm>
#include <cstring>
#include <vector>

namespace test {

class MemoryBlock : public BlockAccess
{
public:
    explicit MemoryBlock(std::size_t bytes)
        : bytes(bytes)
    {}

    quint64 size() const override { return bytes.size(); }
    bool read(quint64 offset, void *to, std::size_t count) const override
    {
        if (offset > bytes.size() || count > bytes.size() - offset)
            return false;
        std::copy_n(bytes.begin() + std::ptrdiff_t(offset), count, static_cast<uchar *>(to));
        return true;
    }
    bool write(quint64 offset, const void *from, std::size_t count) override
    {
        if (offset > bytes.size() || count > bytes.size() - offset)
            return false;
        std::copy_n(static_cast<const uchar *>(from), count,
                    bytes.begin() + std::ptrdiff_t(offset));
        return true;
    }

    template <class Number>
    void set(quint64 offset, Number value)
    {
        qToLittleEndian(value, &bytes[offset]);
    }
    template <class Number>
    Number get(quint64 offset) const
    {
        return qFromLittleEndian<Number>(&bytes[offset]);
    }

    void setHeader(const char *version, quint16 slotCount)
    {
        std::memcpy(bytes.data(), version, std::strlen(version) + 1);
        set(SharedLayout::kSlotCount, slotCount);
    }
    static quint64 slot(int index)
    {
        return SharedLayout::kSlots + SharedLayout::kSlotBytes * quint64(index);
    }
    /// A frame of 4 by 2 pixels, BGRA, whose pixels begin at @p dataOffset.
    void setFrame(int index, quint64 timestamp, quint32 dataOffset)
    {
        const quint64 at = slot(index);
        set(at + SharedLayout::kTimestamp, timestamp);
        set(at + SharedLayout::kDataOffset, dataOffset);
        set(at + SharedLayout::kWidth, quint16(4));
        set(at + SharedLayout::kHeight, quint16(2));
        set(at + SharedLayout::kRowBytes, quint16(16));
        set(at + SharedLayout::kReady, quint16(1));
    }
    bool isReady(int index) const { return get<quint16>(slot(index) + SharedLayout::kReady) != 0; }

    std::vector<uchar> bytes;
};

} // namespace test
