#pragma once

// The conversion programs written a second time, on the CPU and in double precision.

#include "video/VlcPixelFormat.h"
#include "video/YuvConverterImp.h"

#include <array>
#include <cstdint>

namespace test {

/// The bytes of the red texture, as the fragment programs see them.
struct RawFrame
{
    const std::uint8_t *bytes;
    int rowBytes;
    int rows;

    double at(double x, double y) const;
};

/// Red, green and blue in the order in which they leave the program, 0 to 255.
std::array<int, 3> convertedPixel(const RawFrame &raw, VlcPixelFormat format, YuvColours colours,
                                  int column, int row, int height);

} // namespace test
