#pragma once

// Counts what is wrong with a block of frames and words it for the log; owned by
// SharedMemoryThread, used on its thread.

#include <QString>

#include <array>

enum class SharedFault {
    BlockTooSmall,   ///< shorter than its own header
    WrongVersion,    ///< written for another reader
    SlotsOutside,    ///< the table of slots leaves the block, or has no slot
    FrameOutside,    ///< pixels that do not lie inside the block
    FrameImpossible, ///< a size that no picture or texture has, or more than the block could hold
    FrameCutShort,   ///< the block shrank while its pixels were copied
    NoTexture,       ///< the driver gave no memory for the picture
    Count
};

class SharedFaults
{
public:
    void add(SharedFault fault);
    int count(SharedFault fault) const { return m_counts[std::size_t(fault)]; }

    int total() const;

    /// True once after a kind of fault was met for the first time.
    [[nodiscard]] bool takeNews();

    /// A line for each kind that was met, with its count; empty without faults.
    QString text() const;

private:
    std::array<int, std::size_t(SharedFault::Count)> m_counts{};
    bool m_news = false;
};
