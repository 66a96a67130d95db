#include "MovParserLib/MovBytes.h"
#include "support/Files.h"

#include <QTemporaryDir>

namespace test {

Bytes u8(unsigned value)
{
    return Bytes(1, char(value));
}

Bytes u16(unsigned value)
{
    return u8(value >> 8) + u8(value);
}

Bytes u32(quint32 value)
{
    return u16(value >> 16) + u16(value & 0xFFFF);
}

Bytes u64(quint64 value)
{
    return u32(quint32(value >> 32)) + u32(quint32(value));
}

Bytes zeros(size_t count)
{
    return Bytes(count, '\0');
}

Bytes hex(const char *text)
{
    return QByteArray::fromHex(text).toStdString();
}

Bytes code(const Bytes &type)
{
    return (type + zeros(4)).substr(0, 4);
}

Bytes lyingAtom(quint32 size, const Bytes &type, const Bytes &payload)
{
    return u32(size) + code(type) + payload;
}

Bytes atom(const Bytes &type, const Bytes &payload)
{
    return lyingAtom(quint32(8 + payload.size()), type, payload);
}

Bytes fullAtom(const Bytes &type, const Bytes &payload)
{
    return atom(type, u32(0) + payload);
}

Bytes videoEntry(const Bytes &children, unsigned width, unsigned height)
{
    return atom("avc1",
                zeros(6) + u16(1) + zeros(16) + u16(width) + u16(height) + zeros(50) + children);
}

Bytes stsd(const Bytes &entry, quint32 count)
{
    return fullAtom("stsd", u32(count) + entry);
}

Bytes defaultTables(const Bytes &descriptionChildren)
{
    return stsd(videoEntry(descriptionChildren)) +
           fullAtom("stsz", u32(0) + u32(3) + u32(10) + u32(20) + u32(30)) +
           fullAtom("stsc", u32(1) + u32(1) + u32(3) + u32(1)) +
           fullAtom("stco", u32(1) + u32(4096)) + fullAtom("stts", u32(1) + u32(3) + u32(100));
}

Bytes track(const TrackParts &parts)
{
    const Bytes tables =
        parts.tables.empty() ? defaultTables(parts.descriptionChildren) : parts.tables;
    const Bytes minf =
        atom("minf", parts.mediaHeader + (parts.hasTable ? atom("stbl", tables) : Bytes()));
    const Bytes media = atom(
        "mdia", fullAtom("mdhd", zeros(8) + u32(parts.timeScale) + u32(parts.duration) + zeros(4)) +
                    fullAtom("hdlr", code("mhlr") + code(parts.handler) + zeros(12) + parts.name) +
                    minf);
    const Bytes header =
        fullAtom("tkhd", zeros(8) + u32(parts.id) + zeros(4) + u32(parts.duration) + zeros(60));
    return atom("trak", header + media + parts.edits + parts.extra);
}

Bytes movie(const Bytes &children)
{
    return atom("moov", fullAtom("mvhd", zeros(96)) + children);
}

std::string fileOf(const Bytes &bytes, const char *name)
{
    static QTemporaryDir folder;
    return writeFile(folder.filePath(QString::fromLatin1(name)), QByteArray::fromStdString(bytes))
        .toStdString();
}

} // namespace test
