#pragma once

// A block of frames in this process, of bytes as they come.

#include "input/BlockAccess.h"

#include <algorithm>
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

    std::vector<uchar> bytes;
};

} // namespace test
