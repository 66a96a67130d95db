#pragma once

// What the player answers when libvlc's video thread announces a picture format. Plain functions.

#include "video/VlcPixelFormat.h"

#include <QSize>

enum class ChromaAnswer { Kept, Replaced };

/// The format for libvlc's four-character @p chroma. A chroma that we do not take is overwritten
/// with "BGRA", which makes libvlc convert.
VlcPixelFormat acceptChroma(char *chroma, ChromaAnswer *answer = nullptr);

enum class FramePath {
    Interop, ///< try the graphics card's own conversion first, then let libvlc convert to BGRA
    Upload   ///< keep the format and upload it
};

/// Drivers with Intel's mapped textures take only RGBA, so YUV never goes to our shaders there.
FramePath chooseFramePath(bool shaderColorConversion, bool hasIntelMapTexture);

/// The size of a frame: the track's when it is known, since the proposed one carries the decoder's
/// padding. A track that claims far more than the decoder delivers is not believed.
QSize chooseFrameSize(QSize proposed, QSize track);

/// libvlc's packing of a codec's four characters: the first in the lowest byte.
constexpr quint32 vlcFourcc(const char (&text)[5])
{
    return quint32(quint8(text[0])) | (quint32(quint8(text[1])) << 8) |
           (quint32(quint8(text[2])) << 16) | (quint32(quint8(text[3])) << 24);
}

/// CineForm delivers samples of the full range.
constexpr bool isFullRangeCodec(quint32 codec)
{
    return codec == vlcFourcc("CFHD");
}
