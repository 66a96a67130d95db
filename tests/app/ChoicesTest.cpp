#include "app/FovLimits.h"
#include "app/MediaChoice.h"
#include "app/OpenGLFlavour.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettingsManager.h"

#include <gtest/gtest.h>

using K = KShaderCodeBuilder;

TEST(Choices, FieldOfViewLimitsFollowTheProjections)
{
    const struct
    {
        int input, output;
        float min, max;
    } rows[] = {{K::STANDARD, K::ORVEX, 20, 180},
                {K::STANDARD, K::RECTILINEAR, 20, 180},
                {K::EQUIRECTANGULAR, K::ORVEX, 80, 300},
                {K::CUBEMAP, K::FISHEYE, 20, 360},
                {K::FISHEYE_CIRCLE, K::LITTLE_PLANET, 20, 360},
                {K::AUTO, K::RECTILINEAR, 20, 130},
                {K::EQUIRECTANGULAR, 17, 20, 300}};
    for (const auto &row : rows) {
        const FovLimits limits = fovLimits(row.input, row.output);
        EXPECT_EQ(limits.min, row.min) << row.input << ' ' << row.output;
        EXPECT_EQ(limits.max, row.max) << row.input << ' ' << row.output;
    }
}

TEST(Choices, OpenGLEmbeddedOnlyWhereNothingNeedsTheDesktopKind)
{
    const struct
    {
        bool hmd, force;
        const char *backend;
        bool shared;
        OpenGLFlavour expected;
    } rows[] = {{false, false, "qt", false, OpenGLFlavour::Embedded},
                {true, false, "qt", false, OpenGLFlavour::Desktop},
                {false, true, "qt", false, OpenGLFlavour::Desktop},
                {false, false, "vlc", false, OpenGLFlavour::Desktop},
                {false, false, "ds", false, OpenGLFlavour::Desktop},
                {false, false, "qt", true, OpenGLFlavour::Desktop}};
    for (const auto &row : rows)
        EXPECT_EQ(chooseOpenGLFlavour(row.hmd, row.force, row.backend, row.shared), row.expected);
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
    const struct
    {
        QString text;
        QVariantMap metadata;
        std::optional<int> expected;
    } rows[] = {{"", {}, K::STEREO_2D},
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
    for (const auto &row : rows)
        EXPECT_EQ(MediaChoice::stereoMode(row.text, row.metadata), row.expected)
            << row.text.toStdString();
}

TEST(Choices, ProjectionAndReportFollowTheMetadata)
{
    const struct
    {
        QVariantMap metadata;
        int expected;
        const char *report;
    } rows[] = {
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
    for (const auto &row : rows) {
        EXPECT_EQ(MediaChoice::inputProjection(row.metadata), row.expected);
        EXPECT_EQ(MediaChoice::report("u", row.metadata).toStdString(), row.report);
    }
}

TEST(Choices, TextsBecomeUrls)
{
    const struct
    {
        const char *text, *url, *suffix;
    } rows[] = {{"/a b/c.JPG", "file:///a b/c.JPG", "jpg"},
                {"http://h/x.mp4?k=1", "http://h/x.mp4?k=1", "mp4?k=1"},
                {"rtsp://h/a b c", "rtsp://h/a b c", ""},
                {"udp://@:1234", "udp://@:1234", ""},
                {"file:///d/e.tar.gz", "file:///d/e.tar.gz", "gz"},
                {"ftp://h/x.mp4", "file:ftp://h/x.mp4", "mp4"}};
    for (const auto &row : rows) {
        const QUrl url = MediaChoice::urlFromText(row.text);
        EXPECT_EQ(url.toString().toStdString(), row.url);
        EXPECT_EQ(MediaChoice::suffix(url).toStdString(), row.suffix);
    }
}
