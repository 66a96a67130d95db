#pragma once

// The byte cursor through which every atom is read and written, and the memory block under it;
// owned by the operation that uses it, on that operation's thread.

#include "MovParserLib/MovStatus.h"

#include <QtEndian>

#include <limits>

namespace Orvex::MovParserLib {

/// A heap of the caller's. Each function gets the table itself first, so that a derived struct
/// can carry state. Allocating functions return null on failure.
struct BufferAllocator
{
    void *(*allocate)(BufferAllocator *self, quint32 size);
    void (*release)(BufferAllocator *self, void *block);
    void *(*allocateAligned)(BufferAllocator *self, quint32 size, quint32 alignment);
    void (*releaseAligned)(BufferAllocator *self, void *block);
};

/// A block of memory that is owned or borrowed. Copying transfers: the newest holder releases the
/// block, the older ones keep a view of it that must not outlive the newest.
class GenericBuffer
{
public:
    GenericBuffer() = default;
    GenericBuffer(GenericBuffer &other);
    GenericBuffer &operator=(GenericBuffer &other);
    virtual ~GenericBuffer();

    /// Hands the block to @p target (whose own is released) and leaves this object empty.
    void moveTo(GenericBuffer &target);

    /// Serves all later allocations. Fails with ERROR_ALLOCATOR_EXISTS when one is set already,
    /// ERROR_INVALID_ARG while a block of another heap is held.
    [[nodiscard]] Status setAllocator(BufferAllocator *allocator);

    char *getBuffer() const { return m_data; }
    quint32 getCapacity() const { return m_capacity; }
    /// 0 for a plain allocation or a borrowed block.
    quint32 getAlignment() const { return m_alignment; }
    bool isBorrowed() const { return m_borrowed != 0; }

protected:
    /// Replaces the block by a new owned one; false (and empty) when there is no memory.
    bool allocate(quint32 size, quint32 alignment);
    /// Releases an owned block, forgets a borrowed one.
    void drop();

    char *m_data = nullptr;
    quint32 m_capacity = 0;
    quint32 m_alignment = 0; ///< Decides which release function is used.
    quint8 m_borrowed = 0;
    BufferAllocator *m_allocator = nullptr;
};

/// Origins of FileBuffer::seek().
enum SeekOrigin : int { FromStart = 0, FromCurrent = 1, FromEnd = 2 };

/// A cursor over a block. After every successful operation position + remaining = dataSize, and
/// the next byte stands at data + dataOffset + position. A failed operation changes nothing,
/// except skip(). All operations return codes of BufferDomain.
class FileBuffer : public GenericBuffer
{
public:
    /// Disks are read in whole sectors of this many bytes.
    static constexpr quint32 kSectorSize = 512;

    FileBuffer() = default;
    FileBuffer(FileBuffer &other) = default;
    FileBuffer &operator=(FileBuffer &other) = default;

    /// Moves block and cursor to @p target and leaves this object empty.
    void moveTo(FileBuffer &target);

    [[nodiscard]] Status read(void *destination, quint64 size);
    [[nodiscard]] Status write(const void *source, quint32 size);
    /// Intended asymmetry: from the start one may seek to the very end, from the current position
    /// only to before it, and from the end only backwards.
    Status seek(qint64 offset, int origin);
    /// Lands at the end, with ERROR_BUFFER_OVER_FLOW, when fewer bytes than @p count are left.
    Status skip(quint64 count);

    /// Makes room for reading @p size bytes at file offset @p offset in whole units of
    /// @p alignment; an owned block that is large enough stays. ERROR_MEM_ALLOC leaves it empty.
    [[nodiscard]] Status prepare(quint32 size, qint64 offset, quint32 alignment);
    /// Works on @p block, which stays the caller's; a null block gives an own one of @p size.
    [[nodiscard]] Status attach(quint32 size, void *block);

    qint64 position() const { return m_position; }
    qint64 remaining() const { return m_remaining; }
    qint64 dataSize() const { return m_dataSize; }
    qint64 blockSize() const { return m_blockSize; }
    qint64 dataOffset() const { return m_dataOffset; }
    /// The first useful byte.
    char *getData() const { return m_data ? m_data + m_dataOffset : nullptr; }

    void getPosition(qint64 *value) const { store(m_position, value); }
    void getRemaining(qint64 *value) const { store(m_remaining, value); }
    void getDataSize(qint64 *value) const { store(m_dataSize, value); }
    void getBlockSize(qint64 *value) const { store(m_blockSize, value); }
    void getDataOffset(qint64 *value) const { store(m_dataOffset, value); }

    // Intended: the setters keep the low 32 bits only.
    void setPosition(qint64 value) { m_position = quint32(value); }
    void setRemaining(qint64 value) { m_remaining = quint32(value); }
    void setDataSize(qint64 value) { m_dataSize = quint32(value); }
    void setBlockSize(qint64 value) { m_blockSize = quint32(value); }
    void setDataOffset(qint64 value) { m_dataOffset = quint32(value); }

    /// Equal size and equal bytes.
    bool operator==(const FileBuffer &other) const;
    bool operator!=(const FileBuffer &other) const { return !(*this == other); }

    /// The next @p size bytes in place, and the cursor behind them; null when they are not there.
    const uchar *take(quint64 size);
    /// Copies the next bytes without moving the cursor or touching the parse limits.
    [[nodiscard]] bool peek(void *destination, quint64 size) const;

    /// Bounds one parse: @p bytes may be read in all and @p visits headers be looked at. Atoms
    /// that lie about their sizes can overlap, and the same bytes would then be kept and scanned
    /// again for each; once a limit is reached every further read() fails.
    void limitParsing(quint64 bytes, quint64 visits);
    void unlimitParsing() { limitParsing(kUnlimited, kUnlimited); }
    /// Counts one look at an atom's header; false when the limit is reached.
    [[nodiscard]] bool visit() { return spend(m_visitsLeft, 1); }

private:
    static constexpr quint64 kUnlimited = std::numeric_limits<quint64>::max();

    static void store(qint64 from, qint64 *to)
    {
        if (to)
            *to = from;
    }
    static bool spend(quint64 &left, quint64 amount);
    bool holds(quint64 size) const;
    void advance(qint64 count);
    bool reusable(quint64 size) const;
    void setCounters(qint64 offset, qint64 block, qint64 size);

    qint64 m_dataOffset = 0;
    qint64 m_blockSize = 0;
    qint64 m_position = 0;
    qint64 m_remaining = 0;
    qint64 m_dataSize = 0;
    quint64 m_bytesLeft = kUnlimited;
    quint64 m_visitsLeft = kUnlimited;
};

/// Reads one big-endian integer.
template <class T>
[[nodiscard]] Status readBig(FileBuffer &buffer, T *value)
{
    uchar bytes[sizeof(T)];
    if (const Status status = buffer.read(bytes, sizeof bytes))
        return status;
    *value = qFromBigEndian<T>(bytes);
    return BufferError::Okay;
}

/// Writes one big-endian integer.
template <class T>
[[nodiscard]] Status writeBig(FileBuffer &buffer, T value)
{
    uchar bytes[sizeof(T)];
    qToBigEndian<T>(value, bytes);
    return buffer.write(bytes, sizeof bytes);
}

} // namespace Orvex::MovParserLib
