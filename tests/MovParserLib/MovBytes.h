#pragma once

// Builds the bytes of atoms and small movies for tests, which may lie about sizes and counts.

#include "MovParserLib/FourCC.h"

#include <string>

namespace test {

using Bytes = std::string;

Bytes u8(unsigned value);
Bytes u16(unsigned value);
Bytes u32(quint32 value);
Bytes u64(quint64 value);
Bytes zeros(size_t count);
/// "00 01ab" to three bytes.
Bytes hex(const char *text);
/// 4 bytes, of a shorter text with zeros behind.
Bytes code(const Bytes &type);

Bytes atom(const Bytes &type, const Bytes &payload);
/// With version 0 and flags 0.
Bytes fullAtom(const Bytes &type, const Bytes &payload);
/// With a size field that need not be true.
Bytes lyingAtom(quint32 size, const Bytes &type, const Bytes &payload);

/// What a track is made of; empty parts are left out.
struct TrackParts
{
    Bytes handler = "vide";
    Bytes name = Bytes("VideoHandler") + '\0';
    quint32 id = 1;
    quint32 timeScale = 1000;
    quint32 duration = 300;
    Bytes edits;                                    ///< edts.
    Bytes extra;                                    ///< Further children of trak.
    Bytes mediaHeader = fullAtom("vmhd", zeros(8)); ///< First child of minf.
    Bytes tables; ///< Children of stbl; by default three samples and one description.
    Bytes descriptionChildren;
    bool hasTable = true;
};

Bytes videoEntry(const Bytes &children, unsigned width = 64, unsigned height = 32);
Bytes stsd(const Bytes &entry, quint32 count = 1);
Bytes defaultTables(const Bytes &descriptionChildren);
Bytes track(const TrackParts &parts = {});
Bytes movie(const Bytes &children);

/// A file of these bytes in the test's temporary folder; the path in UTF-8.
std::string fileOf(const Bytes &bytes, const char *name = "movie.mp4");

} // namespace test
