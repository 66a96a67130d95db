#include "app/FovLimits.h"
#include "app/MediaChoice.h"
#include "app/OpenGLFlavour.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettingsManager.h"

#include <gtest/gtest.h>

using K = KShaderCodeBuilder;

TEST(Choices, FieldOfViewLimitsFollowTheProjections)
{
    const std::tuple<int, int, float, float> rows[] = {
        {K::STANDARD, K::ORVEX, 20, 180},
        {K::STANDARD, K::RECTILINEAR, 20, 180},
        {K::EQUIRECTANGULAR, K::ORVEX, 80, 300},
        {K::CUBEMAP, K::FISHEYE, 20, 360},
        {K::FISHEYE_CIRCLE, K::LITTLE_PLANET, 20, 360},
        {K::AUTO, K::RECTILINEAR, 20, 130},
        {K::EQUIRECTANGULAR, 17, 20, 300}};
    for (const auto &[input, output, min, max] : rows) {
        const FovLimits limits = fovLimits(input, output);
        EXPECT_EQ(limits.min, min) << input << ' ' << output;
        EXPECT_EQ(limits.max, max) << input << ' ' << output;
    }
}

TEST(Choices, OpenGLEmbeddedOnlyWhereNothingNeedsTheDesktopKind)
{
    const std::tuple<bool, bool, const char *, bool, OpenGLFlavour> rows[] = {
        {false, false, "qt", false, OpenGLFlavour::Embedded},
        {true, false, "qt", false, OpenGLFlavour::Desktop},
        {false, true, "qt", false, OpenGLFlavour::Desktop},
        {false, false, "vlc", false, OpenGLFlavour::Desktop},
        {false, false, "ds", false, OpenGLFlavour::Desktop},
        {false, false, "qt", true, OpenGLFlavour::Desktop}};
    for (const auto &[hmd, force, backend, shared, expected] : rows)
        EXPECT_EQ(chooseOpenGLFlavour(hmd, force, backend, shared), expected);
}

TEST(Choices, AnEmptyBackendInTheStoreIsNoChoice)
{
    const QString key = QStringLiteral("application/videoPlugin");
    KSettingsManager store = KSettingsManager::ForUser();
    store.Set(key, "qt");
    EXPECT_EQ(openGLFlavourOfThisRun(store, {}), OpenGLFlavour::Embedded);
    store.Set(key, "");
    EXPECT_EQ(openGLFlavourOfThisRun(store, {}), OpenGLFlavour::Desktop);
    store.Remove(key);
}

TEST(Choices, StereoModeComesFromThePlaylistBeforeTheMetadata)
{
    const auto metadata = [](int code) { return QVariantMap{{"Stereoscopy", code}}; };
    const std::tuple<QString, QVariantMap, std::optional<int>> rows[] = {
        {"", {}, K::STEREO_2D},
        {"", metadata(0), K::STEREO_2D},
        {"", metadata(1), K::STEREO_3D_SIDEBYSIDE},
        {"", metadata(2), K::STEREO_3D_OVERUNDER},
        {"", metadata(9), K::STEREO_2D},
        {"None", metadata(2), K::STEREO_2D},
        {"OverUnder", metadata(1), K::STEREO_3D_OVERUNDER},
        {"SideBySide", {}, K::STEREO_3D_SIDEBYSIDE},
        {"OverUnder_I", {}, K::STEREO_3D_OVERUNDER_INVERTED},
        {"SideBySide_I", {}, K::STEREO_3D_SIDEBYSIDE_INVERTED},
        {"sideways", metadata(1), std::nullopt}};
    for (const auto &[text, metadata, expected] : rows)
        EXPECT_EQ(MediaChoice::stereoMode(text, metadata), expected) << text.toStdString();
}

TEST(Choices, ProjectionAndReportFollowTheMetadata)
{
    const std::tuple<QVariantMap, int, const char *> rows[] = {
        {{}, K::EQUIRECTANGULAR, "Media : u \n"},
        {{{"Projection", 0}}, K::STANDARD, "Media : u \nProjection : Standard \n"},
        {{{"Projection", 1}, {"Stereoscopy", 2}},
         K::EQUIRECTANGULAR,
         "Media : u \nProjection : Equirectangular \nStereoscopy : Over under \n"},
        {{{"Projection", 256},
          {"Frame width", 3840u},
          {"Frame height", 1920u},
          {"Video frame rate", 29.97},
          {"Writing Tool", "a %1 b"}},
         K::CUBEMAP,
         "Media : u \nFrame width : 3840 \nFrame height : 1920 \nVideo frame rate : 29.97 \n"
         "Projection : Cubemap \nWriting Tool : a %1 b \n"},
        {{{"Projection", 7}, {"Stereoscopy", 5}},
         K::EQUIRECTANGULAR,
         "Media : u \nProjection : Unknown \nStereoscopy : Unknown \n"}};
    for (const auto &[metadata, expected, report] : rows) {
        EXPECT_EQ(MediaChoice::inputProjection(metadata), expected);
        EXPECT_EQ(MediaChoice::report("u", metadata).toStdString(), report);
    }
}

TEST(Choices, TextsBecomeUrls)
{
    const char *const rows[][3] = {{"/a b/c.JPG", "file:///a b/c.JPG", "jpg"},
                                   {"http://h/x.mp4?k=1", "http://h/x.mp4?k=1", "mp4?k=1"},
                                   {"rtsp://h/a b c", "rtsp://h/a b c", ""},
                                   {"udp://@:1234", "udp://@:1234", ""},
                                   {"file:///d/e.tar.gz", "file:///d/e.tar.gz", "gz"},
                                   {"ftp://h/x.mp4", "file:ftp://h/x.mp4", "mp4"}};
    for (const auto &[text, expectedUrl, suffix] : rows) {
        const QUrl url = MediaChoice::urlFromText(text);
        EXPECT_EQ(url.toString().toStdString(), expectedUrl);
        EXPECT_EQ(MediaChoice::suffix(url).toStdString(), suffix);
    }
}
