#include "video/GlContext.h"

#include "support/WarningGuard.h"
#include "video/FrameTexture.h"
#include "video/YuvConverter.h"
#include "video/YuvConverterImp.h"

#include <QOpenGLFramebufferObject>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

struct Sample
{
    double y;
    double u;
    double v;
};

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

Sample sampleAt(const RawFrame &raw, VlcPixelFormat format, int column, int row, int height)
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

std::array<int, 3> colourOf(Sample s, YuvColours colours)
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

TEST(YuvConverter, DrawsEveryFormatRangeAndOddSizeAsTheFormulasSay)
{
    const test::WarningGuard quiet;
    test::GlContext gl;
    const std::pair<int, int> sizes[] = {{32, 16}, {34, 18}, {33, 17}, {322, 182}, {321, 181}};
    FrameTexture frame;
    frame.create();
    for (quint32 code = 3; code <= 8; ++code) {
        const auto format = VlcPixelFormat(code);
        for (const auto &[width, height] : sizes) {
            frame.setLayout(quint32(width), quint32(height), format);
            const TextureStorage storage = frame.layout().storage();
            std::vector<std::uint8_t> bytes(frame.layout().allocationSize());
            // All pairs of values come up: neighbours differ by steps that share no factor.
            for (std::size_t i = 0; i < bytes.size(); ++i)
                bytes[i] = quint8(i * 37 + i / 256 * 11);
            std::copy(bytes.begin(), bytes.end(), frame.plane(0));
            frame.unmap();
            frame.upload();

            QOpenGLFramebufferObject target(width, height);
            for (int flags = 0; flags < 4; ++flags) {
                const bool stitched = (flags & 1) != 0;
                const YuvSource source = yuvSourceOf(format, (flags & 2) != 0);
                YuvConverter converter(source.fourcc, bigEndianFourcc("RGBA"), source.fullRange,
                                       stitched);
                target.bind();
                converter.convert(frame.texture(), width, height);
                std::vector<std::uint8_t> pixels(std::size_t(width * height) * 4);
                gl.gl()->glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE,
                                      pixels.data());
                target.release();
                ASSERT_EQ(gl.gl()->glGetError(), GLenum(GL_NO_ERROR));

                const RawFrame raw{bytes.data(), storage.width, storage.height};
                for (int row = 0; row < height; ++row) {
                    for (int column = 0; column < width; ++column) {
                        const auto expected = colourOf(sampleAt(raw, format, column, row, height),
                                                       yuvColours(source.fullRange, stitched));
                        const std::uint8_t *pixel = &pixels[std::size_t(row * width + column) * 4];
                        for (std::size_t i = 0; i < 3; ++i)
                            ASSERT_LE(std::abs(expected[i] - pixel[i]), 1)
                                << "format " << code << " flags " << flags << " size " << width
                                << "x" << height << " at " << column << "," << row;
                        ASSERT_EQ(pixel[3], 255);
                    }
                }
            }
        }
    }
    frame.destroy();
}

TEST(YuvConverter, BuildsItsTextInTheOrderOfInsertion)
{
    test::GlContext gl;
    const QString text = NV12_RGB_Converter(nullptr, YuvColours::Compressed).fragmentSource();
    const char *const pieces[] = {
        "#version 120\n#extension GL_ARB_texture_rectangle : enable\n/*HEADER*/\n",
        "uniform int width;\nuniform int height;\nuniform sampler2DRect yuv;\n/*UNIFORMS*/\n",
        "void main() {\n",
        "  float r, g, b;\n",
        "  float y, u, v;\n",
        "  float ux, uy;\n",
        "/*LOCALS*/\n",
        "vec2(2.0*ux + 1.0, height + uy)",
        "  y = 16.0/255.0",
        "  float y_rgb = 1.1643 * (y - 0.0625);\n",
        "/*USERCODE*/\n",
        "  gl_FragColor = vec4(r, g, b, 255);\n/*FINALCODE*/\n}\n"};
    EXPECT_TRUE(text.startsWith(QLatin1String(pieces[0])));
    int from = 0;
    for (const char *piece : pieces) {
        const int at = text.indexOf(QLatin1String(piece), from);
        ASSERT_GE(at, 0) << piece;
        from = at + int(qstrlen(piece));
    }
    EXPECT_EQ(from, text.size());
}

TEST(YuvConverter, LeavesTheTargetAloneWhenItCannotConvert)
{
    test::GlContext gl;
    Texture texture(false);
    QOpenGLFramebufferObject target(4, 4);
    target.bind();
    gl.gl()->glClearColor(1, 0, 1, 1);
    gl.gl()->glClear(GL_COLOR_BUFFER_BIT);
    YuvConverter(bigEndianFourcc("RGBA"), bigEndianFourcc("RGBA"), true, true)
        .convert(&texture, 4, 4);
    std::array<std::uint8_t, 4> pixel{};
    gl.gl()->glReadPixels(2, 2, 1, 1, GL_RGBA, GL_UNSIGNED_BYTE, pixel.data());
    EXPECT_EQ(pixel, (std::array<std::uint8_t, 4>{255, 0, 255, 255}));
}

} // namespace
