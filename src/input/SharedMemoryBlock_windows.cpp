#include "input/SharedMemoryBlock.h"

#include <windows.h>

#include <cstring>

// A mapping keeps its size and its pages as long as anybody holds it, so that, other than a POSIX
// block, it cannot shrink under its reader.
struct SharedMemoryBlock::Native
{
    Native(HANDLE mapping, char *view, quint64 bytes)
        : mapping(mapping)
        , view(view)
        , bytes(bytes)
    {}
    ~Native()
    {
        ::UnmapViewOfFile(view);
        ::CloseHandle(mapping);
    }
    Native(const Native &) = delete;
    Native &operator=(const Native &) = delete;

    HANDLE mapping;
    char *view;
    quint64 bytes;
};

namespace {

constexpr DWORD kAllAccess = 0xF001F; // FILE_MAP_ALL_ACCESS

} // namespace

QString SharedMemoryBlock::defaultName()
{
    return QStringLiteral("AVRT_Shared_Memory");
}

SharedMemoryBlock::SharedMemoryBlock() = default;
SharedMemoryBlock::~SharedMemoryBlock() = default;

bool SharedMemoryBlock::open(const QString &name)
{
    const HANDLE mapping = ::OpenFileMappingA(kAllAccess, false, name.toLocal8Bit().constData());
    if (!mapping)
        return false;
    void *view = ::MapViewOfFile(mapping, kAllAccess, 0, 0, 0);
    if (!view) {
        ::CloseHandle(mapping);
        return false;
    }
    MEMORY_BASIC_INFORMATION region = {};
    const bool measured = ::VirtualQuery(view, &region, sizeof region) != 0;
    m_native = std::make_unique<Native>(mapping, static_cast<char *>(view),
                                        measured ? quint64(region.RegionSize) : 0);
    return true;
}

void SharedMemoryBlock::close()
{
    m_native.reset();
}

bool SharedMemoryBlock::isReplaced(const QString &) const
{
    // The name stands for the same mapping as long as this process holds it.
    return false;
}

quint32 SharedMemoryBlock::readerHandle() const
{
    return m_native ? quint32(reinterpret_cast<quintptr>(m_native->mapping)) : 0;
}

quint64 SharedMemoryBlock::size() const
{
    return m_native ? m_native->bytes : 0;
}

bool SharedMemoryBlock::read(quint64 offset, void *to, std::size_t bytes) const
{
    const quint64 end = size();
    if (offset > end || bytes > end - offset)
        return false;
    std::memcpy(to, m_native->view + offset, bytes);
    return true;
}

bool SharedMemoryBlock::write(quint64 offset, const void *from, std::size_t bytes)
{
    const quint64 end = size();
    if (offset > end || bytes > end - offset)
        return false;
    std::memcpy(m_native->view + offset, from, bytes);
    return true;
}
