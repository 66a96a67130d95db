#include "video/PlaneLayout.h"
#include "video/TextureTransferKind.h"
#include "video/VideoInterop.h"

#include <gtest/gtest.h>

#include <qopengl.h>

namespace {

using Three = std::array<quint32, 3>;

struct LayoutRow
{
    VlcPixelFormat format;
    quint32 width;
    quint32 height;
    Three planeWidth;
    Three planeHeight;
    Three pitch;
    Three planeSize;
    quint32 totalSize;
    Three cpuOffset;
    Three mappedOffset;
};

TEST(PlaneLayout, FollowsTheTableOfEachFormatAndSize)
{
    using F = VlcPixelFormat;
    const LayoutRow rows[] = {
        {F::Bgra, 5, 3, {5, 0, 0}, {3, 0, 0}, {20, 0, 0}, {60, 0, 0}, 60, {0, 60, 60}, {0, 60, 60}},
        {F::Rv32, 8, 2, {8, 0, 0}, {2, 0, 0}, {32, 0, 0}, {64, 0, 0}, 64, {0, 64, 64}, {0, 64, 64}},
        {F::Yuyv, 7, 3, {7, 0, 0}, {3, 0, 0}, {12, 0, 0}, {36, 0, 0}, 36, {0, 36, 36}, {0, 36, 36}},
        {F::Uyvy, 8, 3, {8, 0, 0}, {3, 0, 0}, {16, 0, 0}, {48, 0, 0}, 48, {0, 48, 48}, {0, 48, 48}},
        // Half height even: no extra row. Half height odd: V moves down by one row of chroma.
        {F::I420,
         16,
         8,
         {16, 8, 8},
         {8, 4, 4},
         {16, 8, 8},
         {128, 32, 32},
         192,
         {0, 128, 160},
         {0, 128, 160}},
        {F::J420,
         1920,
         1082,
         {1920, 960, 960},
         {1082, 541, 541},
         {1920, 960, 960},
         {2077440, 519360, 519360},
         1920 * 1082 + 2 * 960 * 541 + 960,
         {0, 2077440, 2077440 + 519360 + 960},
         {0, 2077440, 2077440 + 519360 + 960}},
        // Sizes that are no multiples of four: mapped planes start at multiples of four.
        {F::Yv12,
         322,
         182,
         {322, 161, 161},
         {182, 91, 91},
         {322, 161, 161},
         {58604, 14651, 14651},
         58604 + 2 * 14651 + 161,
         {0, 58604, 73416},
         {0, 58604, 73413}},
        {F::I420,
         321,
         181,
         {321, 160, 160},
         {181, 90, 90},
         {321, 160, 160},
         {58101, 14400, 14400},
         86901,
         {0, 58101, 72501},
         {0, 58100, 72500}},
        {F::Nv12,
         16,
         6,
         {16, 16, 0},
         {6, 3, 0},
         {16, 16, 0},
         {96, 48, 0},
         160,
         {0, 96, 160},
         {0, 96, 160}},
        {F::Nv12,
         16,
         8,
         {16, 16, 0},
         {8, 4, 0},
         {16, 16, 0},
         {128, 64, 0},
         192,
         {0, 128, 192},
         {0, 128, 192}},
    };
    for (const LayoutRow &row : rows) {
        SCOPED_TRACE(pixelFormatName(row.format).toStdString() + " " + std::to_string(row.width) +
                     "x" + std::to_string(row.height));
        const PlaneLayout layout = PlaneLayout::of(row.width, row.height, row.format);
        EXPECT_EQ(layout.format, row.format);
        EXPECT_EQ(layout.planeWidth, row.planeWidth);
        EXPECT_EQ(layout.planeHeight, row.planeHeight);
        EXPECT_EQ(layout.visibleWidth, row.planeWidth);
        EXPECT_EQ(layout.visibleHeight, row.planeHeight);
        EXPECT_EQ(layout.pitch, row.pitch);
        EXPECT_EQ(layout.planeSize, row.planeSize);
        EXPECT_EQ(layout.totalSize, row.totalSize);
        const bool packed = layout.planeSize[1] == 0;
        EXPECT_EQ(layout.bitsPerPixel, packed ? 32U : 12U);
        EXPECT_EQ(layout.pixelStride, (packed ? Three{4, 0, 0} : Three{0, 0, 0}));
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(layout.cpuOffset(i), row.cpuOffset[size_t(i)]);
            EXPECT_EQ(layout.mappedOffset(i), row.mappedOffset[size_t(i)]);
        }
    }
}

TEST(PlaneLayout, ReservesWhatProducersAndTheTextureTouchAtOddSizes)
{
    for (quint32 format = 1; format <= 8; ++format) {
        for (quint32 width = 1; width < 40; ++width) {
            for (quint32 height = 1; height < 12; ++height) {
                const auto layout = PlaneLayout::of(width, height, VlcPixelFormat(format));
                const quint32 bytes = layout.allocationSize();
                // A producer rounds chroma sizes up and keeps to the pitch it was told.
                const quint32 chroma = (width + 1) / 2;
                const bool semiPlanar = layout.format == VlcPixelFormat::Nv12;
                const quint32 rowEnd[] = {layout.bitsPerPixel == 12 ? width
                                          : isYuv(layout.format)    ? 4 * chroma
                                                                    : 4 * width,
                                          semiPlanar ? 2 * chroma : chroma, chroma};
                for (int i = 0; i < 3 && layout.planeWidth[0] > 0; ++i) {
                    const quint32 rows = i == 0 ? height : (height + 1) / 2;
                    if (layout.pitch[size_t(i)] == 0)
                        continue;
                    const quint32 end = (rows - 1) * layout.pitch[size_t(i)] + rowEnd[i];
                    EXPECT_LE(layout.cpuOffset(i) + end, bytes);
                    EXPECT_LE(layout.mappedOffset(i) + end, bytes);
                }
                const TextureStorage texture = layout.storage();
                const quint32 texel = texture.format == GL_RED ? 1 : 4;
                EXPECT_LE(quint32(texture.width * texture.height) * texel, bytes);
                EXPECT_LE(layout.totalSize, bytes);
            }
        }
    }
}

TEST(PlaneLayout, RefusesUnknownFormatsAndSizesBeyondReason)
{
    const struct
    {
        quint32 width;
        quint32 height;
        quint32 format;
    } rows[] = {{64, 64, 0}, {64, 64, 9}, {0, 64, 5}, {64, 0, 5}, {65536, 65536, 1}, {~0U, ~0U, 5}};
    for (const auto &row : rows) {
        const auto layout = PlaneLayout::of(row.width, row.height, VlcPixelFormat(row.format));
        EXPECT_EQ(layout.format, VlcPixelFormat::Unset);
        EXPECT_EQ(layout.totalSize, 0U);
        EXPECT_EQ(layout.allocationSize(), 0U);
        EXPECT_EQ(layout.storage().target, 0U);
    }
}

TEST(PlaneLayout, DescribesTheTextureThatHoldsAllPlanes)
{
    const struct
    {
        VlcPixelFormat format;
        quint32 target;
        quint32 texels;
        int width;
        int height;
    } rows[] = {
        {VlcPixelFormat::Bgra, GL_TEXTURE_2D, GL_RGBA, 322, 181},
        {VlcPixelFormat::Rv32, GL_TEXTURE_2D, GL_RGBA, 322, 181},
        {VlcPixelFormat::Yuyv, GL_TEXTURE_RECTANGLE, GL_RED, 644, 181},
        {VlcPixelFormat::Uyvy, GL_TEXTURE_RECTANGLE, GL_RED, 644, 181},
        {VlcPixelFormat::I420, GL_TEXTURE_RECTANGLE, GL_RED, 322, 271},
        {VlcPixelFormat::J420, GL_TEXTURE_RECTANGLE, GL_RED, 322, 271},
        {VlcPixelFormat::Yv12, GL_TEXTURE_RECTANGLE, GL_RED, 322, 271},
        {VlcPixelFormat::Nv12, GL_TEXTURE_RECTANGLE, GL_RED, 322, 271},
    };
    for (const auto &row : rows) {
        const TextureStorage texture = PlaneLayout::of(322, 181, row.format).storage();
        EXPECT_EQ(texture.target, row.target);
        EXPECT_EQ(texture.internalFormat, row.texels);
        EXPECT_EQ(texture.format, row.texels);
        EXPECT_EQ(texture.width, row.width);
        EXPECT_EQ(texture.height, row.height);
        EXPECT_EQ(texture.type, quint32(GL_UNSIGNED_BYTE));
    }
}

TEST(VlcPixelFormat, IsReadFromTheChromaAndHandedToTheConverter)
{
    const struct
    {
        const char *chroma;
        int format;
        const char *name;
        const char *converter;
        bool alwaysFullRange;
    } rows[] = {
        {"YUYV", 3, "YUYV", "YUYV", false}, {"YUY2", 3, "YUYV", "YUYV", false},
        {"UYVY", 4, "UYVY", "UYVY", false}, {"I420", 5, "I420", "I420", false},
        {"IYUY", 5, "I420", "I420", false}, {"J420", 6, "J420", "I420", true},
        {"YV12", 7, "YV12", "YV12", false}, {"NV12", 8, "NV12", "NV12", false},
        {"RV32", 2, "RV32", "", false},     {"BGRA", 1, "BGRA", "", false},
        {"RGBA", 0, "", "", false},         {"VAOP", 0, "", "", false},
        {"i420", 0, "", "", false},
    };
    for (const auto &row : rows) {
        SCOPED_TRACE(row.chroma);
        const VlcPixelFormat format = pixelFormatOfChroma(row.chroma);
        EXPECT_EQ(int(format), row.format);
        EXPECT_EQ(pixelFormatName(format).toStdString(), row.name);
        quint32 fourcc = 0;
        for (const char *letter = row.converter; *letter; ++letter)
            fourcc = fourcc << 8 | quint8(*letter);
        for (const bool streamIsFullRange : {false, true}) {
            const YuvSource source = yuvSourceOf(format, streamIsFullRange);
            EXPECT_EQ(source.fourcc, fourcc);
            EXPECT_EQ(source.fullRange, fourcc != 0 && (row.alwaysFullRange || streamIsFullRange));
            EXPECT_EQ(isYuv(format), fourcc != 0);
        }
    }
}

TEST(TextureTransfer, RestsOnExtensionsAndFunctionsAlone)
{
    // core32, gl30, gl21, gl11, pinned, intel; fences; kind
    const struct
    {
        TextureCapabilities capabilities;
        bool fences;
        int kind;
    } rows[] = {
        {{true, true, true, true, true, true}, true, 4},
        {{true, true, true, true, true, true}, false, 3},
        {{true, true, true, true, true, false}, false, 2},
        {{false, true, true, true, true, false}, true, 2},
        {{true, true, true, true, false, false}, true, 2},
        {{false, false, true, true, false, true}, false, 2},
        {{false, false, false, true, true, true}, true, 1},
        {{true, false, false, false, true, false}, false, 0},
        {{}, true, 0},
    };
    for (const auto &row : rows)
        EXPECT_EQ(int(chooseTextureTransfer(row.capabilities, row.fences)), row.kind);

    const char *const names[] = {"Undefined transfer method", "CPU", "Pixel Buffer Object",
                                 "Intel Map Texture", "AMD Pinned Memory"};
    for (int kind = 0; kind < 5; ++kind)
        EXPECT_EQ(textureTransferName(TextureTransferKind(kind)).toStdString(), names[kind]);
}

TEST(VideoInterop, LaysThePlanesOfALockedSurfaceOneBelowAnother)
{
    std::array<std::uint8_t, 256> memory{};
    const auto planes = VideoInterop::planes({memory.data(), 16}, 8);
    EXPECT_EQ(planes[0] - memory.data(), 0);
    EXPECT_EQ(planes[1] - memory.data(), 128);
    EXPECT_EQ(planes[2] - memory.data(), 160);
}

} // namespace
