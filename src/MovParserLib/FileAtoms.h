#pragma once

// The atoms of a file's top level besides the movie; made by whoever writes a file, the reader
// only steps over them.

#include "MovParserLib/AtomOf.h"
#include "MovParserLib/Coding.h"

namespace Orvex::MovParserLib {

/// ftyp: what the file claims to be (ISO/IEC 14496-12, 4.3). The brands are only written.
class FtypAtom final : public MovAtom
{
public:
    static constexpr FourCC kType = fourcc("ftyp");

    FtypAtom()
        : MovAtom(kType)
    {}
    using MovAtom::operator=;

    [[nodiscard]] Status write(FileBuffer &buffer) override;
    quint64 computeSize() const override;

    FourCC majorBrand = fourcc("qt  ");
    quint32 minorVersion = 0;
    std::vector<FourCC> compatibleBrands;

protected:
    const char *dumpName() const override { return "FtypAtom"; }
};

/// Free space: so many bytes without meaning.
struct FreeSpace
{
    quint64 payloadSize = 0;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return payloadSize; }
    void dump(const Dump &dump, const char *label) const;
};

/// free: space that may be overwritten (ISO/IEC 14496-12, 8.1.2).
class FreeAtom final : public AtomOf<FreeAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("free");
    static constexpr const char *kName = "FreeAtom";
    FreeSpace space;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Free Payload Size", a.space);
    }
};

/// wide: eight bytes that give a following mdat room for a 64-bit size (QuickTime file format).
class WideAtom final : public AtomOf<WideAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("wide");
    static constexpr const char *kName = "WideAtom";
};

/// The header alone of mdat, whose content is never brought into memory.
class MdatAtomPrefix final : public AtomOf<MdatAtomPrefix, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("mdat");
    static constexpr const char *kName = "MdatAtomPrefix";
};

} // namespace Orvex::MovParserLib
