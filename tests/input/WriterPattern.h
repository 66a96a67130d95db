#pragma once

// The pictures that the test writer leaves in a block and that its readers expect: every byte
// depends on its place and on a seed, so that no two frames and no two places are alike.

#include <cstddef>
#include <cstdint>
#include <vector>

namespace test {

inline std::size_t patternRowBytes(int width, int kind)
{
    return std::size_t(width) * (kind == 1 ? 2 : 4);
}

inline std::uint8_t patternByte(std::size_t column, std::size_t row, int seed)
{
    return std::uint8_t(column * 7 + row * 13 + std::size_t(seed) * 29 + (column ^ row));
}

inline std::vector<std::uint8_t> patternPixels(int width, int height, int kind, int seed)
{
    const std::size_t rowBytes = patternRowBytes(width, kind);
    std::vector<std::uint8_t> bytes(rowBytes * std::size_t(height));
    for (std::size_t i = 0; i < bytes.size(); ++i)
        bytes[i] = patternByte(i % rowBytes, i / rowBytes, seed);
    return bytes;
}

} // namespace test
