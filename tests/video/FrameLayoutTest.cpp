#include "video/PlaneLayout.h"
#include "video/TextureTransferKind.h"

#include <gtest/gtest.h>

#include <QStringList>

#include <qopengl.h>

namespace {

QString text(const std::array<quint32, 3> &values)
{
    return QStringLiteral("%1 %2 %3").arg(values[0]).arg(values[1]).arg(values[2]);
}

/// Widths, heights, pitches, sizes, total; offsets in main memory and mapped; texture.
std::string dump(const PlaneLayout &l)
{
    const TextureStorage t = l.storage();
    const bool red = t.target == GL_TEXTURE_RECTANGLE && t.format == GL_RED;
    return QStringList{text(l.planeWidth),
                       text(l.planeHeight),
                       text(l.pitch),
                       text(l.planeSize),
                       QString::number(l.totalSize),
                       text({l.cpuOffset(0), l.cpuOffset(1), l.cpuOffset(2)}),
                       text({l.mappedOffset(0), l.mappedOffset(1), l.mappedOffset(2)}),
                       QStringLiteral("%1%2x%3")
                           .arg(red ? QLatin1String("red ") : QLatin1String())
                           .arg(t.width)
                           .arg(t.height)}
        .join(QLatin1String(", "))
        .toStdString();
}

TEST(PlaneLayout, FollowsTheTableOfEachFormatAndSize)
{
    const std::tuple<int, quint32, quint32, const char *> rows[] = {
        {1, 5, 3, "5 0 0, 3 0 0, 20 0 0, 60 0 0, 60, 0 60 60, 0 60 60, 5x3"},
        {2, 8, 2, "8 0 0, 2 0 0, 32 0 0, 64 0 0, 64, 0 64 64, 0 64 64, 8x2"},
        {3, 7, 3, "7 0 0, 3 0 0, 12 0 0, 36 0 0, 36, 0 36 36, 0 36 36, red 12x3"},
        {4, 8, 3, "8 0 0, 3 0 0, 16 0 0, 48 0 0, 48, 0 48 48, 0 48 48, red 16x3"},
        {5, 16, 8, "16 8 8, 8 4 4, 16 8 8, 128 32 32, 192, 0 128 160, 0 128 160, red 16x12"},
        // An odd half height moves the last plane down by one row of chroma.
        {6, 1920, 1082,
         "1920 960 960, 1082 541 541, 1920 960 960, 2077440 519360 519360, 3117120, "
         "0 2077440 2597760, 0 2077440 2597760, red 1920x1623"},
        // Sizes that are no multiples of four: mapped planes start at multiples of four.
        {7, 322, 182,
         "322 161 161, 182 91 91, 322 161 161, 58604 14651 14651, 88067, 0 58604 73416, "
         "0 58604 73413, red 322x273"},
        {5, 321, 181,
         "321 160 160, 181 90 90, 321 160 160, 58101 14400 14400, 86901, 0 58101 72501, "
         "0 58100 72500, red 321x271"},
        {8, 16, 6, "16 16 0, 6 3 0, 16 16 0, 96 48 0, 160, 0 96 160, 0 96 160, red 16x9"},
        {8, 16, 8, "16 16 0, 8 4 0, 16 16 0, 128 64 0, 192, 0 128 192, 0 128 192, red 16x12"},
    };
    for (const auto &[format, width, height, expected] : rows) {
        const auto layout = PlaneLayout::of(width, height, VlcPixelFormat(format));
        EXPECT_EQ(dump(layout), expected);
        EXPECT_EQ(int(layout.format), format);
        EXPECT_EQ(layout.bitsPerPixel, format < 5 ? 32U : 12U);
        EXPECT_EQ(layout.pixelStride[0], format < 5 ? 4U : 0U);
        EXPECT_EQ(layout.visibleWidth, layout.planeWidth);
    }
}

TEST(PlaneLayout, RefusesUnknownFormatsAndSizesBeyondReason)
{
    const std::array<quint32, 3> rows[] = {{64, 64, 0},       {64, 64, 9}, {0, 64, 5},
                                           {65536, 65536, 1}, {64, 0, 5},  {~0U, ~0U, 5}};
    for (const auto &row : rows) {
        const auto layout = PlaneLayout::of(row[0], row[1], VlcPixelFormat(row[2]));
        EXPECT_EQ(layout.format, VlcPixelFormat::Unset);
        EXPECT_EQ(layout.totalSize + layout.allocationSize(), 0U);
        EXPECT_EQ(layout.storage().target, 0U);
    }
}

TEST(PlaneLayout, ReservesWhatProducersAndTheTextureTouchAtOddSizes)
{
    // Producers round chroma up where the layout rounds down: rows of 161 bytes, 91 of them.
    const auto planar = PlaneLayout::of(321, 181, VlcPixelFormat::I420);
    EXPECT_GE(planar.allocationSize(), planar.cpuOffset(2) + 90 * 160 + 161);
    EXPECT_GE(planar.allocationSize(), 321U * 271U) << "the texture reads whole rows";
    const auto packed = PlaneLayout::of(7, 3, VlcPixelFormat::Yuyv);
    EXPECT_GE(packed.allocationSize(), 2U * 12U + 16U);
}

TEST(VlcPixelFormat, IsReadFromTheChromaAndHandedToTheConverter)
{
    // Chroma, code, name shown, source of the converter.
    for (const char *line :
         {"YUYV 3 YUYV YUYV", "YUY2 3 YUYV YUYV", "UYVY 4 UYVY UYVY", "I420 5 I420 I420",
          "IYUY 5 I420 I420", "J420 6 J420 I420", "YV12 7 YV12 YV12", "NV12 8 NV12 NV12",
          "RV32 2 RV32 ", "BGRA 1 BGRA ", "RGBA 0  ", "VAOP 0  ", "i420 0  "}) {
        SCOPED_TRACE(line);
        const QStringList row = QString::fromLatin1(line).split(QLatin1Char(' '));
        const VlcPixelFormat format = pixelFormatOfChroma(line);
        EXPECT_EQ(int(format), row[1].toInt());
        EXPECT_EQ(pixelFormatName(format), row[2]);
        quint32 fourcc = 0;
        for (const QChar letter : row[3])
            fourcc = fourcc << 8 | quint32(letter.unicode());
        EXPECT_EQ(yuvSourceOf(format, false).fourcc, fourcc);
        EXPECT_EQ(yuvSourceOf(format, false).fullRange, format == VlcPixelFormat::J420);
        EXPECT_EQ(yuvSourceOf(format, true).fullRange, isYuv(format));
    }
}

TEST(TextureTransfer, RestsOnExtensionsAndFunctionsAlone)
{
    // 3.2 core, 3.0, 2.1, 1.1, pinned memory, mapped textures; fences; kind.
    const std::tuple<TextureCapabilities, bool, const char *> rows[] = {
        {{true, true, true, true, true, true}, true, "AMD Pinned Memory"},
        {{true, true, true, true, true, true}, false, "Intel Map Texture"},
        {{true, true, true, true, true, false}, false, "Pixel Buffer Object"},
        {{false, true, true, true, true, false}, true, "Pixel Buffer Object"},
        {{false, false, true, true, false, true}, false, "Pixel Buffer Object"},
        {{false, false, false, true, true, true}, true, "CPU"},
        {{true, false, false, false, true, false}, false, "Undefined transfer method"},
    };
    for (const auto &[capabilities, fences, kind] : rows)
        EXPECT_EQ(textureTransferName(chooseTextureTransfer(capabilities, fences)),
                  QLatin1String(kind));
}

} // namespace
