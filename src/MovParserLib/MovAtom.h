#pragma once

// What every atom of a QuickTime or ISO base media file has in common; an atom is a value owned by
// the atom above it, read and asked on one thread.

#include "MovParserLib/Dump.h"
#include "MovParserLib/FileBuffer.h"

#include <map>
#include <string>
#include <vector>

namespace Orvex::MovParserLib {

/// The header of an atom (ISO/IEC 14496-12, 4.2). Operations return codes of AtomDomain.
class MovAtom
{
public:
    explicit MovAtom(FourCC atomType = 0)
        : type(atomType)
    {}
    MovAtom(const MovAtom &other) = default;
    virtual ~MovAtom();

    /// Reads the header and rejects another type, leaving the cursor at the header's start. A size
    /// of 0 passes: such an atom has no content, and its end is its start.
    [[nodiscard]] virtual Status read(FileBuffer &buffer, FourCC expectedType);
    /// The whole atom with its payload; here the header of any type, whose size may not be 0.
    [[nodiscard]] virtual Status read(FileBuffer &buffer);
    /// Computes the size, stores it, and writes header and payload.
    [[nodiscard]] virtual Status write(FileBuffer &buffer);
    virtual MovAtom &operator=(const MovAtom &other);
    /// Dumps to the standard output.
    virtual void print(int indent) const;
    /// Appends the same dump to @p text; null is ignored.
    virtual void print(std::string *text, int indent) const;
    /// The same dump to wherever @p dump leads.
    void dumpTo(const Dump &dump) const;
    /// Bytes that write() takes.
    virtual quint64 computeSize() const;
    virtual FourCC getType() const { return type; }

    quint64 size = 0; ///< The whole atom as read, header included.
    FourCC type = 0;

protected:
    /// The name between the stars of the dump, and the lines between its first and last.
    virtual const char *dumpName() const { return "MovAtom"; }
    virtual void dumpFields(const Dump &dump) const;

private:
    Status readHeader(FileBuffer &buffer, const FourCC *expectedType);
};

/// An atom with version and flags (ISO/IEC 14496-12, 4.2, FullBox).
class MovFullAtom : public MovAtom
{
public:
    using MovAtom::MovAtom;
    using MovAtom::operator=;
    MovFullAtom(const MovFullAtom &other) = default;

    [[nodiscard]] Status read(FileBuffer &buffer, FourCC expectedType) override;
    [[nodiscard]] Status read(FileBuffer &buffer) override;
    [[nodiscard]] Status write(FileBuffer &buffer) override;
    virtual MovFullAtom &operator=(const MovFullAtom &other);
    quint64 computeSize() const override { return MovAtom::computeSize() + 4; }

    quint8 version = 0;
    quint8 flags[3] = {0, 0, 0};

protected:
    void dumpFields(const Dump &dump) const override;

private:
    Status readTail(FileBuffer &buffer, qint64 start);
};

/// A full atom with two times in seconds since 1904. Intended: the 64-bit layout of version 1 is
/// not known, such an atom is read as version 0 and comes out with wrong values.
class MovFullDatedAtom : public MovFullAtom
{
public:
    using MovFullAtom::MovFullAtom;
    using MovFullAtom::operator=;
    MovFullDatedAtom(const MovFullDatedAtom &other) = default;

    [[nodiscard]] Status read(FileBuffer &buffer, FourCC expectedType) override;
    [[nodiscard]] Status read(FileBuffer &buffer) override;
    [[nodiscard]] Status write(FileBuffer &buffer) override;
    virtual MovFullDatedAtom &operator=(const MovFullDatedAtom &other);
    quint64 computeSize() const override { return MovFullAtom::computeSize() + 8; }

    quint32 creationTime = 0;
    quint32 modificationTime = 0;

protected:
    void dumpFields(const Dump &dump) const override;

private:
    Status readTail(FileBuffer &buffer, qint64 start);
};

/// An atom that nothing here knows, kept as it is.
class UnparsedAtom final : public MovAtom
{
public:
    using MovAtom::MovAtom;
    using MovAtom::operator=;
    using MovAtom::read;

    /// ERROR_ZERO_SIZE_ATOM for a size of 0, which ends a list of atoms.
    [[nodiscard]] Status read(FileBuffer &buffer) override;
    [[nodiscard]] Status write(FileBuffer &buffer) override;
    MovAtom &operator=(const MovAtom &other) override;
    quint64 computeSize() const override { return MovAtom::computeSize() + payload.size(); }

    /// With a null @p block only the size goes to @p written. A block that is too small gets
    /// nothing and ERROR_INVALID_ARG.
    [[nodiscard]] Status getData(void *block, quint64 capacity, quint64 *written) const;

    std::vector<quint8> payload;

protected:
    const char *dumpName() const override { return "UnparsedAtom"; }
    void dumpFields(const Dump &dump) const override;
};

/// Atoms nobody knows, by type.
using UnparsedMap = std::map<FourCC, UnparsedAtom>;

/// The type at the cursor, which stays; 0 when the size there is 0 or no header is left.
FourCC peekType(FileBuffer &buffer);

/// Steps over siblings from the cursor to the header of the first one of @p type, over at most
/// @p limit bytes. ERROR_ATOM_NOT_FOUND puts the cursor back. Intended: a sibling of size 0 ends
/// the search although the wanted atom may follow.
[[nodiscard]] Status findChild(FileBuffer &buffer, FourCC type, quint64 limit);

/// Moves the cursor to where an atom that began at @p start ends by its own size.
[[nodiscard]] Status seekAtomEnd(FileBuffer &buffer, qint64 start, quint64 size);

} // namespace Orvex::MovParserLib
