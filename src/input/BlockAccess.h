#pragma once

// Bytes that another process shares and may change, or cut short, at any moment; seen through
// copies only, so that nothing the other side does can fault in this process. Used on the shared
// memory thread.

#include <QtGlobal>

#include <cstddef>

class BlockAccess
{
public:
    virtual ~BlockAccess() = default;

    /// Bytes that the block has now.
    virtual quint64 size() const = 0;

    /// Copies bytes out. False, with @p to in any state, when the block does not hold all of them.
    [[nodiscard]] virtual bool read(quint64 offset, void *to, std::size_t bytes) const = 0;

    /// Copies bytes in; never makes the block longer. False when they do not lie inside it.
    [[nodiscard]] virtual bool write(quint64 offset, const void *from, std::size_t bytes) = 0;

protected:
    BlockAccess() = default;
    BlockAccess(const BlockAccess &) = delete;
    BlockAccess &operator=(const BlockAccess &) = delete;
};
