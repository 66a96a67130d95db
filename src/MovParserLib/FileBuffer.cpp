#include "MovParserLib/FileBuffer.h"

#include <cstdlib>
#include <cstring>
#include <new>

namespace Orvex::MovParserLib {

GenericBuffer::GenericBuffer(GenericBuffer &other)
    : m_data(other.m_data)
    , m_capacity(other.m_capacity)
    , m_alignment(other.m_alignment)
    , m_borrowed(other.m_borrowed)
    , m_allocator(other.m_allocator)
{
    other.m_borrowed = 1;
}

GenericBuffer &GenericBuffer::operator=(GenericBuffer &other)
{
    if (this == &other)
        return *this;
    // Two views of one block: the block must survive while its ownership changes hands.
    if (m_data == other.m_data && !m_borrowed)
        other.m_borrowed = 0;
    else
        drop();
    m_data = other.m_data;
    m_capacity = other.m_capacity;
    m_alignment = other.m_alignment;
    m_borrowed = other.m_borrowed;
    m_allocator = other.m_allocator;
    other.m_borrowed = 1;
    return *this;
}

GenericBuffer::~GenericBuffer()
{
    drop();
}

void GenericBuffer::moveTo(GenericBuffer &target)
{
    if (this == &target)
        return;
    target = *this;
    m_data = nullptr;
    m_capacity = 0;
    m_alignment = 0;
    m_borrowed = 0;
}

Status GenericBuffer::setAllocator(BufferAllocator *allocator)
{
    if (m_allocator)
        return BufferError::AllocatorExists;
    if (m_data && !m_borrowed)
        return BufferError::InvalidArg;
    m_allocator = allocator;
    return BufferError::Okay;
}

bool GenericBuffer::allocate(quint32 size, quint32 alignment)
{
    drop();
    void *block = nullptr;
    if (m_allocator) {
        block = alignment ? m_allocator->allocateAligned(m_allocator, size, alignment)
                          : m_allocator->allocate(m_allocator, size);
    } else {
        block = alignment ? ::operator new(size, std::align_val_t(alignment), std::nothrow)
                          : std::malloc(size);
    }
    if (!block)
        return false;
    m_data = static_cast<char *>(block);
    m_capacity = size;
    m_alignment = alignment;
    return true;
}

void GenericBuffer::drop()
{
    if (m_data && !m_borrowed) {
        if (m_allocator && m_alignment)
            m_allocator->releaseAligned(m_allocator, m_data);
        else if (m_allocator)
            m_allocator->release(m_allocator, m_data);
        else if (m_alignment)
            ::operator delete(m_data, std::align_val_t(m_alignment));
        else
            std::free(m_data);
    }
    m_data = nullptr;
    m_capacity = 0;
    m_alignment = 0;
    m_borrowed = 0;
}

void FileBuffer::moveTo(FileBuffer &target)
{
    if (this == &target)
        return;
    target = *this;
    GenericBuffer::moveTo(target);
    setCounters(0, 0, 0);
}

bool FileBuffer::spend(quint64 &left, quint64 amount)
{
    if (left == kUnlimited)
        return true;
    if (amount > left) {
        left = 0;
        return false;
    }
    left -= amount;
    return true;
}

bool FileBuffer::holds(quint64 size) const
{
    // The second bound matters only where a caller has set the counters by hand.
    return size <= quint64(m_remaining)
        && size <= m_capacity
        && quint64(m_dataOffset) + quint64(m_position) + size <= m_capacity;
}

void FileBuffer::advance(qint64 count)
{
    m_position += count;
    m_remaining -= count;
}

Status FileBuffer::read(void *destination, quint64 size)
{
    if (size == 0)
        return BufferError::Okay;
    const uchar *bytes = take(size);
    if (!bytes)
        return BufferError::BufferEmpty;
    std::memcpy(destination, bytes, size_t(size));
    return BufferError::Okay;
}

const uchar *FileBuffer::take(quint64 size)
{
    if (!m_data || !holds(size) || !spend(m_bytesLeft, size))
        return nullptr;
    const char *bytes = m_data + m_dataOffset + m_position;
    advance(qint64(size));
    return reinterpret_cast<const uchar *>(bytes);
}

bool FileBuffer::peek(void *destination, quint64 size) const
{
    if (!m_data || !holds(size))
        return false;
    std::memcpy(destination, m_data + m_dataOffset + m_position, size_t(size));
    return true;
}

Status FileBuffer::write(const void *source, quint32 size)
{
    if (size == 0)
        return BufferError::Okay;
    if (!m_data || !holds(size))
        return BufferError::BufferFull;
    std::memcpy(m_data + m_dataOffset + m_position, source, size);
    advance(size);
    return BufferError::Okay;
}

Status FileBuffer::seek(qint64 offset, int origin)
{
    switch (origin) {
    case FromStart:
        if (offset < 0)
            return BufferError::BufferUnderFlow;
        if (offset > m_dataSize)
            return BufferError::BufferOverFlow;
        m_position = offset;
        m_remaining = m_dataSize - offset;
        return BufferError::Okay;
    case FromCurrent:
        if (offset >= 0 && offset >= m_remaining)
            return BufferError::BufferOverFlow;
        if (offset < 0 && m_position + offset < 0)
            return BufferError::BufferUnderFlow;
        advance(offset);
        return BufferError::Okay;
    case FromEnd:
        if (offset >= 0)
            return BufferError::BufferOverFlow;
        if (m_dataSize + offset < 0)
            return BufferError::BufferUnderFlow;
        m_position = m_dataSize + offset;
        m_remaining = -offset;
        return BufferError::Okay;
    default:
        return BufferError::InvalidArg;
    }
}

Status FileBuffer::skip(quint64 count)
{
    if (count <= quint64(m_remaining)) {
        advance(qint64(count));
        return BufferError::Okay;
    }
    advance(m_remaining);
    return BufferError::BufferOverFlow;
}

bool FileBuffer::reusable(quint64 size) const
{
    return m_data && !m_borrowed && size <= m_capacity && m_alignment >= kSectorSize;
}

void FileBuffer::setCounters(qint64 offset, qint64 block, qint64 size)
{
    m_dataOffset = offset;
    m_blockSize = block;
    m_position = 0;
    m_remaining = size;
    m_dataSize = size;
}

Status FileBuffer::prepare(quint32 size, qint64 offset, quint32 alignment)
{
    if (alignment == 0 || offset < 0) {
        setCounters(0, 0, 0);
        return BufferError::InvalidArg;
    }
    const quint64 pad = quint64(offset) % alignment;
    const quint64 transfer = (quint64(size) + alignment + pad - 1) / alignment * alignment;
    const bool enough = transfer == 0 || reusable(transfer);
    if (!enough
        && (transfer > std::numeric_limits<quint32>::max()
            || !allocate(quint32(transfer), kSectorSize))) {
        drop();
        setCounters(0, 0, 0);
        return BufferError::MemAlloc;
    }
    setCounters(qint64(pad), qint64(transfer), size);
    return BufferError::Okay;
}

Status FileBuffer::attach(quint32 size, void *block)
{
    if (block) {
        drop();
        m_data = static_cast<char *>(block);
        m_capacity = size;
        m_borrowed = 1;
    } else if (!reusable(size) && !allocate(size, kSectorSize)) {
        setCounters(0, 0, 0);
        return BufferError::MemAlloc;
    }
    setCounters(0, size, size);
    return BufferError::Okay;
}

bool FileBuffer::operator==(const FileBuffer &other) const
{
    if (m_dataSize != other.m_dataSize)
        return false;
    const quint64 size = quint64(m_dataSize);
    return size == 0
        || (m_data && other.m_data && quint64(m_dataOffset) + size <= m_capacity
            && quint64(other.m_dataOffset) + size <= other.m_capacity
            && std::memcmp(getData(), other.getData(), size_t(size)) == 0);
}

void FileBuffer::limitParsing(quint64 bytes, quint64 visits)
{
    m_bytesLeft = bytes;
    m_visitsLeft = visits;
}

} // namespace Orvex::MovParserLib
