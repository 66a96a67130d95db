#include "support/GlContext.h"
#include "support/Soon.h"
#include "video/PlayerWindow.h"
#include "video/YuvReference.h"

#include "video/VlcConfig.h"

#include <gtest/gtest.h>

#include <QProcess>

#include <algorithm>
#include <cmath>

namespace {

/// The first frame of a clip as ffmpeg decodes it, in a pixel format of ffmpeg's.
QByteArray decoded(const QUrl &clip, const char *pixelFormat, const char *filter = "null")
{
    QProcess ffmpeg;
    ffmpeg.start(QStringLiteral("sh"),
                 {QStringLiteral("-c"),
                  QStringLiteral("ffmpeg -loglevel error -i \"$0\" -frames:v 1 -vf $2 -f rawvideo "
                                 "-pix_fmt $1 -"),
                  clip.toLocalFile(), QLatin1String(pixelFormat), QLatin1String(filter)});
    EXPECT_TRUE(ffmpeg.waitForFinished());
    return ffmpeg.readAllStandardOutput();
}

QImage played(test::PlayerWindow &window, const QUrl &clip, const QString &pixelFormat)
{
    EXPECT_TRUE(window.openAndShow(clip));
    window.player().pause();
    EXPECT_SOON(window.reached(KVlcPlayerQml::Paused));
    EXPECT_EQ(window.player().texturePixelFormat(), pixelFormat);
    EXPECT_EQ(window.player().textureTransfer(), QStringLiteral("Pixel Buffer Object\n"));
    return test::downloadTexture(QOpenGLContext::globalShareContext(), window.player().textureId());
}

TEST(Colours, ReachTheTextureAsTheFormulasSay)
{
    const std::tuple<const char *, const char *, const char *, const char *, YuvColours> rows[] = {
        {"patches_limited.mp4", "yuv420p", "I420", "", YuvColours::Compressed},
        {"patches_full.mov", "yuvj420p", "J420", "stitchwerk", YuvColours::Direct},
        {"patches_full.mov", "yuvj420p", "J420", "Stitchwerk 1.2", YuvColours::FixedPoint},
        {"patches_limited.mp4", "yuv420p", "I420", "Stitchwerk 1.2", YuvColours::FixedPoint},
    };
    test::PlayerWindow window;
    for (const auto &[clip, decodedAs, format, writingTool, colours] : rows) {
        SCOPED_TRACE(std::string(clip) + " by " + writingTool);
        window.player().setFileMetadata(
            {{QStringLiteral("Writing Tool"), QLatin1String(writingTool)}});
        const QImage picture = played(window, test::clip(clip), format);
        ASSERT_EQ(picture.size(), QSize(640, 160));
        const QByteArray bytes = decoded(test::clip(clip), decodedAs);
        ASSERT_EQ(bytes.size(), 640 * 240);
        const test::RawFrame raw{reinterpret_cast<const std::uint8_t *>(bytes.data()), 640, 240};
        int worst = 0;
        for (int at = 0; at < 640 * 160; ++at) {
            const auto expected = test::colourOf(
                test::sampleAt(raw, VlcPixelFormat::I420, at % 640, at / 640, 160), colours);
            for (std::size_t i = 0; i < 3; ++i)
                worst =
                    std::max(worst, std::abs(expected[i] - picture.constBits()[at * 4 + int(i)]));
        }
        // Later frames of the clip differ from the first by what the encoder loses.
        EXPECT_LE(worst, 3);
    }
}

TEST(Colours, AreTheDecodersOwnWithoutShaderConversion)
{
    VlcConfig config;
    config.shaderColorConversion = false;
    VlcConfig::publish(&config);
    for (const char *clip : {"patches_limited.mp4", "patches_full.mov"}) {
        SCOPED_TRACE(clip);
        test::PlayerWindow window;
        const QImage picture = played(window, test::clip(clip), QStringLiteral("BGRA"));
        // libvlc's converter takes the coefficients of BT.601 whatever the file says.
        const QByteArray bytes =
            decoded(test::clip(clip), "bgra", "scale=in_color_matrix=bt601:out_color_matrix=bt601");
        ASSERT_EQ(bytes.size(), picture.sizeInBytes());
        for (int patch = 0; patch < 8; ++patch) {
            const int at = (80 * 640 + patch * 80 + 40) * 4;
            for (int i = 0; i < 3; ++i)
                EXPECT_NEAR(quint8(bytes[at + i]), picture.constBits()[at + i], 2) << patch;
        }
    }
    VlcConfig::publish(nullptr);
}

} // namespace
