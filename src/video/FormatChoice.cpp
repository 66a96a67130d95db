#include "video/FormatChoice.h"

#include <algorithm>

namespace {
// Padding, cropping and scalable streams stay far below this.
constexpr qint64 kMostGrowth = 16;

qint64 area(QSize size)
{
    return qint64(size.width()) * size.height();
}
} // namespace

VlcPixelFormat acceptChroma(char *chroma, ChromaAnswer *answer)
{
    const VlcPixelFormat format = pixelFormatOfChroma(chroma);
    const bool known = format != VlcPixelFormat::Unset;
    if (answer)
        *answer = known ? ChromaAnswer::Kept : ChromaAnswer::Replaced;
    if (known)
        return format;
    std::copy_n("BGRA", 4, chroma);
    return VlcPixelFormat::Bgra;
}

FramePath chooseFramePath(bool shaderColorConversion, bool hasIntelMapTexture)
{
    return !shaderColorConversion || hasIntelMapTexture ? FramePath::Interop : FramePath::Upload;
}

QSize chooseFrameSize(QSize proposed, QSize track)
{
    if (track.isEmpty() || area(track) > kMostGrowth * area(proposed))
        return proposed;
    return track;
}
