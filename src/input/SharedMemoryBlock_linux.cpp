#include "input/SharedMemoryBlock.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>

// The block is never mapped: touching a page behind the end of a block that its writer cut short
// is a fatal signal, reading there through the descriptor is a short read.
struct SharedMemoryBlock::Native
{
    explicit Native(int descriptor)
        : descriptor(descriptor)
    {}
    ~Native() { ::close(descriptor); }
    Native(const Native &) = delete;
    Native &operator=(const Native &) = delete;

    int descriptor;
    dev_t device = 0;
    ino_t inode = 0;
};

QString SharedMemoryBlock::defaultName()
{
    return QStringLiteral("/AVRT_Shared_Memory");
}

SharedMemoryBlock::SharedMemoryBlock() = default;
SharedMemoryBlock::~SharedMemoryBlock() = default;

bool SharedMemoryBlock::open(const QString &name)
{
    const int descriptor = ::shm_open(name.toLocal8Bit().constData(), O_RDWR | O_CLOEXEC, 0);
    if (descriptor < 0)
        return false;
    auto native = std::make_unique<Native>(descriptor);
    struct stat status = {};
    if (::fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode))
        return false;
    native->device = status.st_dev;
    native->inode = status.st_ino;
    m_native = std::move(native);
    return true;
}

void SharedMemoryBlock::close()
{
    m_native.reset();
}

bool SharedMemoryBlock::isReplaced(const QString &name) const
{
    SharedMemoryBlock now;
    if (!m_native || !now.open(name))
        return false;
    return now.m_native->device != m_native->device || now.m_native->inode != m_native->inode;
}

quint32 SharedMemoryBlock::readerHandle() const
{
    // A descriptor means nothing outside this process; its number lets a writer see it live.
    return quint32(::getpid());
}

quint64 SharedMemoryBlock::size() const
{
    struct stat status = {};
    if (!m_native || ::fstat(m_native->descriptor, &status) != 0 || status.st_size < 0)
        return 0;
    return quint64(status.st_size);
}

bool SharedMemoryBlock::read(quint64 offset, void *to, std::size_t bytes) const
{
    if (!m_native)
        return false;
    auto *target = static_cast<char *>(to);
    while (bytes > 0) {
        const ssize_t got = ::pread(m_native->descriptor, target, bytes, off_t(offset));
        if (got < 0 && errno == EINTR)
            continue;
        if (got <= 0)
            return false;
        target += got;
        offset += quint64(got);
        bytes -= std::size_t(got);
    }
    return true;
}

bool SharedMemoryBlock::write(quint64 offset, const void *from, std::size_t bytes)
{
    const quint64 end = size();
    if (offset > end || bytes > end - offset)
        return false;
    return ::pwrite(m_native->descriptor, from, bytes, off_t(offset)) == ssize_t(bytes);
}
