#pragma once

// The conversion programs written a second time, on the CPU and in double precision.

#include "video/VlcPixelFormat.h"
#include "video/YuvConverterImp.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>

namespace test {

/// The bytes of the red texture, as the fragment programs see them.
struct RawFrame
{
    const std::uint8_t *bytes;
    int rowBytes;
    int rows;

    double at(double x, double y) const
    {
        const int column = std::clamp(int(std::floor(x)), 0, rowBytes - 1);
        const int row = std::clamp(int(std::floor(y)), 0, rows - 1);
        return bytes[row * rowBytes + column] / 255.0;
    }
};

struct Sample
{
    double y;
    double u;
    double v;
};

inline Sample sampleAt(const RawFrame &raw, VlcPixelFormat format, int column, int row, int height)
{
    const double x = column + 0.5;
    const double y = row + 0.5;
    const int pair = column / 2;
    switch (format) {
    case VlcPixelFormat::Yuyv:
        return {raw.at(2 * column + 0.5, y), raw.at(4 * pair + 1.5, y), raw.at(4 * pair + 3.5, y)};
    case VlcPixelFormat::Uyvy:
        return {raw.at(2 * column + 1.5, y), raw.at(4 * pair + 0.5, y), raw.at(4 * pair + 2.5, y)};
    case VlcPixelFormat::Nv12: {
        const double chroma = height + row / 2;
        return {raw.at(x, y), raw.at(2 * pair, chroma), raw.at(2 * pair + 1, chroma)};
    }
    default: {
        const double first = raw.at(pair, height + row / 4);
        const double second = raw.at(pair, int(height * 1.25 + 0.5) + row / 4);
        if (format == VlcPixelFormat::Yv12)
            return {raw.at(x, y), second, first};
        return {raw.at(x, y), first, second};
    }
    }
}

/// Red, green and blue in the order in which they leave the program, 0 to 255.
inline std::array<int, 3> colourOf(Sample s, YuvColours colours)
{
    double r = 0;
    double g = 0;
    double b = 0;
    if (colours != YuvColours::Direct) {
        s.y = (16 + s.y * 219) / 255;
        s.u = (16 + s.u * 224) / 255;
        s.v = (16 + s.v * 224) / 255;
    }
    if (colours == YuvColours::FixedPoint) {
        const double luma = int(s.y * 19077);
        const double cb = s.v - 128 / 255.0;
        const double cr = s.u - 128 / 255.0;
        const double offset = 297012 / 255.0;
        r = int(luma + cr * 29369 - offset) / 64 / 256.0;
        g = int(luma - cr * 8734 - cb * 3493 - offset) / 64 / 256.0;
        b = int(luma + cb * 34610 - offset) / 64 / 256.0;
    } else {
        const double luma = 1.1643 * (s.y - 0.0625);
        const double cb = s.v - 0.5;
        const double cr = s.u - 0.5;
        r = luma + 1.793 * cr;
        g = luma - 0.2126 * cb - 0.534 * cr;
        b = luma + 2.115 * cb;
    }
    const auto level = [](double value) {
        return int(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    };
    return {level(r), level(g), level(b)};
}

} // namespace test
