// A host application in small: makes the block, plays a pattern or a raw clip into it, and does on
// demand what a faulty one does. It knows the layout by its own numbers, not by the reader's.
//
// Reads commands from standard input, a line each, and answers each with a line:
//   create NAME SLOTS BYTES [VERSION]   a new block under the name
//   frame SLOT TIMESTAMP WIDTH HEIGHT KIND SEED    one frame of the pattern
//   play COUNT WIDTH HEIGHT KIND MS [FILE]  frames at this pace, from a raw file or of the pattern
//   poke OFFSET BYTES VALUE / peek OFFSET BYTES     any number of the block
//   truncate BYTES / shake COUNT / unlink / exit    cut, cut and mend repeatedly, take away, end

#include "input/WriterPattern.h"

#include <fcntl.h>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <unistd.h>

#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <sstream>
#include <string>
#include <thread>

namespace {

constexpr std::size_t kSlotTable = 0x94;
constexpr std::size_t kSlotSize = 56;

class Writer
{
public:
    ~Writer() { unmap(); }

    void create(const std::string &name, std::uint16_t slots, std::size_t bytes,
                const std::string &version)
    {
        unmap();
        m_name = name;
        m_slots = slots;
        shm_unlink(name.c_str());
        m_descriptor = shm_open(name.c_str(), O_CREAT | O_EXCL | O_RDWR, 0600);
        resize(bytes);
        put(0x8C, slots);
        std::memcpy(m_block, version.c_str(), version.size() + 1);
    }

    void resize(std::size_t bytes)
    {
        if (m_block)
            munmap(m_block, m_bytes);
        m_block = nullptr;
        m_bytes = bytes;
        if (ftruncate(m_descriptor, off_t(bytes)) != 0)
            std::abort();
        if (bytes > 0)
            m_block = static_cast<char *>(
                mmap(nullptr, bytes, PROT_READ | PROT_WRITE, MAP_SHARED, m_descriptor, 0));
    }

    void unlinkName() { shm_unlink(m_name.c_str()); }

    template <class Number>
    void put(std::size_t offset, Number value)
    {
        std::memcpy(m_block + offset, &value, sizeof value);
    }
    std::uint64_t peek(std::size_t offset, std::size_t bytes) const
    {
        std::uint64_t value = 0;
        std::memcpy(&value, m_block + offset, bytes);
        return value;
    }
    void poke(std::size_t offset, std::size_t bytes, std::uint64_t value)
    {
        std::memcpy(m_block + offset, &value, bytes);
    }

    bool isReady(int slot) const
    {
        std::uint16_t ready = 0;
        std::memcpy(&ready, m_block + kSlotTable + kSlotSize * std::size_t(slot) + 0x30, 2);
        std::atomic_thread_fence(std::memory_order_acquire);
        return ready != 0;
    }

    void frame(int slot, std::uint64_t timestamp, std::uint16_t width, std::uint16_t height,
               std::uint16_t kind, const std::vector<std::uint8_t> &pixels)
    {
        const std::size_t at = kSlotTable + kSlotSize * std::size_t(slot);
        const std::size_t room = (m_bytes - kSlotTable - kSlotSize * m_slots) / m_slots;
        const std::size_t data = kSlotTable + kSlotSize * m_slots + room * std::size_t(slot);
        put(at + 0x30, std::uint16_t(0));
        std::atomic_thread_fence(std::memory_order_seq_cst);
        put(at, timestamp);
        put(at + 0x10, std::uint32_t(data));
        put(at + 0x18, width);
        put(at + 0x1A, height);
        put(at + 0x1C, std::uint16_t(test::patternRowBytes(width, kind)));
        put(at + 0x1E, std::uint16_t(50));
        put(at + 0x20, std::uint16_t(1));
        put(at + 0x22, kind);
        std::memcpy(m_block + data, pixels.data(), std::min(pixels.size(), room));
        std::atomic_thread_fence(std::memory_order_release);
        put(at + 0x30, std::uint16_t(1));
    }

    void play(int count, std::uint16_t width, std::uint16_t height, std::uint16_t kind,
              int milliseconds, const std::string &file)
    {
        std::ifstream clip(file, std::ios::binary);
        int last = -1;
        for (int i = 1; i <= count; ++i) {
            const int slot = i % m_slots;
            // What the reader skipped may be overwritten, once it has taken the newest.
            while (last >= 0 && isReady(slot) && isReady(last))
                std::this_thread::yield();
            std::vector<std::uint8_t> pixels = test::patternPixels(width, height, kind, i);
            if (!file.empty() &&
                !clip.read(reinterpret_cast<char *>(pixels.data()), std::streamsize(pixels.size())))
                break;
            frame(slot, std::uint64_t(i), width, height, kind, pixels);
            last = slot;
            std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
        }
    }

private:
    void unmap()
    {
        if (m_block)
            munmap(m_block, m_bytes);
        if (m_descriptor >= 0)
            close(m_descriptor);
        m_block = nullptr;
        m_descriptor = -1;
    }

    std::string m_name;
    std::uint16_t m_slots = 1;
    std::size_t m_bytes = 0;
    int m_descriptor = -1;
    char *m_block = nullptr;
};

std::string answer(Writer &writer, std::istringstream &words)
{
    std::string command;
    words >> command;
    if (command == "create") {
        std::string name;
        std::string version = "AVRT_Shared_Memory1.4";
        std::uint16_t slots = 0;
        std::size_t bytes = 0;
        words >> name >> slots >> bytes;
        std::string other;
        if (words >> other)
            version = other;
        writer.create(name, slots, bytes, version);
    } else if (command == "frame") {
        int slot = 0;
        int seed = 0;
        std::uint64_t timestamp = 0;
        std::uint16_t width = 0;
        std::uint16_t height = 0;
        std::uint16_t kind = 0;
        words >> slot >> timestamp >> width >> height >> kind >> seed;
        writer.frame(slot, timestamp, width, height, kind,
                     test::patternPixels(width, height, kind, seed));
    } else if (command == "play") {
        int count = 0;
        int milliseconds = 0;
        std::uint16_t width = 0;
        std::uint16_t height = 0;
        std::uint16_t kind = 0;
        std::string file;
        words >> count >> width >> height >> kind >> milliseconds >> file;
        writer.play(count, width, height, kind, milliseconds, file);
    } else if (command == "poke") {
        std::size_t offset = 0;
        std::size_t bytes = 0;
        std::uint64_t value = 0;
        words >> offset >> bytes >> value;
        writer.poke(offset, bytes, value);
    } else if (command == "peek") {
        std::size_t offset = 0;
        std::size_t bytes = 0;
        words >> offset >> bytes;
        return std::to_string(writer.peek(offset, bytes));
    } else if (command == "truncate") {
        std::size_t bytes = 0;
        words >> bytes;
        writer.resize(bytes);
    } else if (command == "shake") {
        int count = 0;
        std::size_t bytes = 0;
        words >> count >> bytes;
        for (int i = 0; i < count; ++i) {
            writer.resize(std::size_t(i * 7919) % bytes);
            writer.resize(bytes);
        }
    } else if (command == "unlink") {
        writer.unlinkName();
    } else {
        return "unknown";
    }
    return "ok";
}

} // namespace

int main()
{
    prctl(PR_SET_PDEATHSIG, SIGKILL); // a reader that died takes no frame any more
    Writer writer;
    std::string line;
    while (std::getline(std::cin, line) && line != "exit") {
        std::istringstream words(line);
        std::cout << answer(writer, words) << std::endl;
    }
}
