#pragma once

// A host application in small: a block of frames that a test writes as such an application does, or
// as a faulty one does. It knows the layout by its own numbers, not by the reader's.

#include <gtest/gtest.h>

#include <QCoreApplication>

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstring>
#include <functional>
#include <thread>
#include <vector>

namespace test {

/// The pictures that the writer leaves: every byte depends on its place and on a seed, so that no
/// two frames and no two places are alike.
inline std::uint8_t patternByte(std::size_t column, std::size_t row, int seed)
{
    return std::uint8_t(column * 7 + row * 13 + std::size_t(seed) * 29 + (column ^ row));
}

inline std::vector<std::uint8_t> patternPixels(int width, int height, int kind, int seed)
{
    const std::size_t rowBytes = std::size_t(width) * (kind == 1 ? 2 : 4);
    std::vector<std::uint8_t> bytes(rowBytes * std::size_t(height));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = patternByte(i % rowBytes, i / rowBytes, seed);
    return bytes;
}

class SharedWriter
{
public:
    /// @p name is the block's, with its leading slash; by default one of this process alone.
    explicit SharedWriter(const QString &name = QStringLiteral("/orbilens-test-%1")
                                                    .arg(QCoreApplication::applicationPid()))
        : m_name(name)
    {}
    ~SharedWriter()
    {
        leave();
        unlink();
    }

    QString name() const { return m_name; }
    void create(int slotCount, std::size_t bytes, const char *version = "AVRT_Shared_Memory1.4")
    {
        leave();
        unlink();
        m_slots = std::size_t(slotCount);
        m_descriptor = shm_open(m_name.toLatin1(), O_CREAT | O_EXCL | O_RDWR, 0600);
        resize(bytes);
        put(0x8C, std::uint16_t(slotCount));
        std::memcpy(m_block, version, std::strlen(version) + 1);
    }
    /// As a crash does it: nothing is tidied up.
    void leave()
    {
        if (m_block)
            munmap(m_block, m_bytes);
        if (m_descriptor >= 0)
            close(m_descriptor);
        m_block = nullptr;
        m_descriptor = -1;
    }
    void unlink() { shm_unlink(m_name.toLatin1()); }
    void resize(std::size_t bytes)
    {
        if (m_block)
            munmap(m_block, m_bytes);
        m_block = nullptr;
        m_bytes = bytes;
        ASSERT_EQ(ftruncate(m_descriptor, off_t(bytes)), 0);
        if (bytes > 0)
            m_block = static_cast<char *>(
                mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, m_descriptor, 0));
    }

    template <class Number>
    void put(std::size_t offset, Number value)
    {
        std::memcpy(m_block + offset, &value, sizeof value);
    }
    template <class Number>
    Number get(std::size_t offset) const
    {
        Number value = 0;
        std::memcpy(&value, m_block + offset, sizeof value);
        std::atomic_thread_fence(std::memory_order_acquire);
        return value;
    }
    static std::size_t slotAt(int slot) { return 0x94 + 56 * std::size_t(slot); }
    bool isReady(int slot) const { return get<std::uint16_t>(slotAt(slot) + 0x30) != 0; }

    void frame(int slot, std::uint64_t timestamp, int width, int height, int kind,
               const std::vector<std::uint8_t> &pixels)
    {
        const std::size_t at = slotAt(slot);
        const std::size_t end = slotAt(int(m_slots));
        const std::size_t room = (m_bytes - end) / m_slots;
        const std::size_t data = end + room * std::size_t(slot);
        put(at + 0x30, std::uint16_t(0));
        std::atomic_thread_fence(std::memory_order_seq_cst);
        put(at, timestamp);
        put(at + 0x10, std::uint32_t(data));
        const int numbers[] = {width, height, width * (kind == 1 ? 2 : 4), 50, 1, kind};
        for (std::size_t i = 0; i < std::size(numbers); ++i)
            put(at + 0x18 + 2 * i, std::uint16_t(numbers[i]));
        std::memcpy(m_block + data, pixels.data(), std::min(pixels.size(), room));
        std::atomic_thread_fence(std::memory_order_release);
        put(at + 0x30, std::uint16_t(1));
    }
    void frame(int slot, std::uint64_t timestamp, int width, int height, int kind, int seed)
    {
        frame(slot, timestamp, width, height, kind, patternPixels(width, height, kind, seed));
    }

    /// Frames of the pattern, each with its number as timestamp and seed, as fast as they are read.
    void play(int count, int width, int height, int kind)
    {
        int last = -1;
        for (int i = 1; i <= count; ++i) {
            const int slot = i % int(m_slots);
            // What the reader skipped may be overwritten, once it has taken the newest.
            while (last >= 0 && isReady(slot) && isReady(last))
                std::this_thread::yield();
            frame(slot, std::uint64_t(i), width, height, kind, i);
            last = slot;
        }
    }

private:
    QString m_name;
    std::size_t m_slots = 1, m_bytes = 0;
    int m_descriptor = -1;
    char *m_block = nullptr;
};

/// Something that runs in a process of its own, which ends with the object at the latest.
class InOtherProcess
{
public:
    explicit InOtherProcess(const std::function<void()> &work)
        : m_process(fork())
    {
        if (m_process != 0)
            return;
        prctl(PR_SET_PDEATHSIG, SIGKILL); // a reader that died takes no frame any more
        work();
        _exit(0);
    }
    ~InOtherProcess()
    {
        if (m_process > 0)
            kill(m_process, SIGKILL);
        (void)ended();
    }
    /// Waits for the end; whether that was a good one.
    [[nodiscard]] bool ended()
    {
        int status = -1;
        if (m_process > 0)
            waitpid(m_process, &status, 0);
        m_process = -1;
        return status == 0;
    }

private:
    pid_t m_process;
};

} // namespace test
