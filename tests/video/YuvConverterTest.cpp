#include "support/GlContext.h"
#include "video/YuvReference.h"

#include "support/WarningGuard.h"
#include "video/FrameTexture.h"
#include "video/YuvConverter.h"

#include <QOpenGLFramebufferObject>

#include <algorithm>

namespace {

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
                gl->glReadPixels(0, 0, width, height, GL_RGBA, GL_UNSIGNED_BYTE, pixels.data());
                target.release();
                ASSERT_EQ(gl->glGetError(), GLenum(GL_NO_ERROR));

                const test::RawFrame raw{bytes.data(), storage.width, storage.height};
                for (int row = 0; row < height; ++row) {
                    for (int column = 0; column < width; ++column) {
                        const auto expected =
                            test::colourOf(test::sampleAt(raw, format, column, row, height),
                                           yuvColours(source.fullRange, stitched));
                        const std::uint8_t *pixel = &pixels[std::size_t(row * width + column) * 4];
                        for (std::size_t i = 0; i < 3; ++i)
                            ASSERT_LE(std::abs(expected[i] - pixel[i]), 1)
                                << code << " flags " << flags << " at " << column << "," << row;
                        ASSERT_EQ(pixel[3], 255);
                    }
                }
            }
        }
    }
    frame.destroy();
}

} // namespace
