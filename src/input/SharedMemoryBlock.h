#pragma once

// A named block of shared memory that another process made, opened for reading frames and writing
// a few words back; owned by SharedMemoryThread, used on its thread. The reader never makes one.

#include "input/BlockAccess.h"

#include <QString>

#include <memory>

class SharedMemoryBlock final : public BlockAccess
{
public:
    /// What the host application calls its block on this platform.
    static QString defaultName();

    SharedMemoryBlock();
    ~SharedMemoryBlock() override;

    /// Opens the block that @p name stands for now, in place of the one held. False when there is
    /// none; then the one held stays.
    [[nodiscard]] bool open(const QString &name);
    void close();
    bool isOpen() const { return m_native != nullptr; }

    /// Whether @p name stands for another block than the one held: its writer came back.
    [[nodiscard]] bool isReplaced(const QString &name) const;

    /// What tells the writer who reads.
    quint32 readerHandle() const;

    quint64 size() const override;
    [[nodiscard]] bool read(quint64 offset, void *to, std::size_t bytes) const override;
    [[nodiscard]] bool write(quint64 offset, const void *from, std::size_t bytes) override;

private:
    struct Native;
    std::unique_ptr<Native> m_native;
};
