#pragma once

// Four-character codes of atoms and formats; constants only, usable from any thread.

#include <QtGlobal>

namespace Orvex::MovParserLib {

/// In host order, the first character in the most significant byte: "moov" is 0x6D6F6F76.
using FourCC = quint32;

constexpr FourCC fourcc(const char (&text)[5])
{
    return FourCC(quint8(text[0])) << 24 | FourCC(quint8(text[1])) << 16
        | FourCC(quint8(text[2])) << 8 | FourCC(quint8(text[3]));
}

} // namespace Orvex::MovParserLib
