#include "video/VlcPixelFormat.h"

#include <cstring>

QString pixelFormatName(VlcPixelFormat format)
{
    switch (format) {
    case VlcPixelFormat::Bgra:
        return QStringLiteral("BGRA");
    case VlcPixelFormat::Rv32:
        return QStringLiteral("RV32");
    case VlcPixelFormat::Yuyv:
        return QStringLiteral("YUYV");
    case VlcPixelFormat::Uyvy:
        return QStringLiteral("UYVY");
    case VlcPixelFormat::I420:
        return QStringLiteral("I420");
    case VlcPixelFormat::J420:
        return QStringLiteral("J420");
    case VlcPixelFormat::Yv12:
        return QStringLiteral("YV12");
    case VlcPixelFormat::Nv12:
        return QStringLiteral("NV12");
    case VlcPixelFormat::Unset:
        break;
    }
    return {};
}

VlcPixelFormat pixelFormatOfChroma(const char *chroma)
{
    static constexpr struct
    {
        char code[5];
        VlcPixelFormat format;
    } table[] = {
        {"YUYV", VlcPixelFormat::Yuyv}, {"YUY2", VlcPixelFormat::Yuyv},
        {"UYVY", VlcPixelFormat::Uyvy}, {"I420", VlcPixelFormat::I420},
        {"IYUY", VlcPixelFormat::I420}, {"J420", VlcPixelFormat::J420},
        {"YV12", VlcPixelFormat::Yv12}, {"NV12", VlcPixelFormat::Nv12},
        {"RV32", VlcPixelFormat::Rv32}, {"BGRA", VlcPixelFormat::Bgra},
    };
    for (const auto &row : table) {
        if (std::memcmp(chroma, row.code, 4) == 0)
            return row.format;
    }
    return VlcPixelFormat::Unset;
}

YuvSource yuvSourceOf(VlcPixelFormat format, bool streamIsFullRange)
{
    switch (format) {
    case VlcPixelFormat::Yuyv:
        return {bigEndianFourcc("YUYV"), streamIsFullRange};
    case VlcPixelFormat::Uyvy:
        return {bigEndianFourcc("UYVY"), streamIsFullRange};
    case VlcPixelFormat::I420:
        return {bigEndianFourcc("I420"), streamIsFullRange};
    case VlcPixelFormat::J420:
        return {bigEndianFourcc("I420"), true};
    case VlcPixelFormat::Yv12:
        return {bigEndianFourcc("YV12"), streamIsFullRange};
    case VlcPixelFormat::Nv12:
        return {bigEndianFourcc("NV12"), streamIsFullRange};
    default:
        return {};
    }
}
