#include "settings/KSettingsManager.h"
#include "settings/KSettingsReaders.h"
#include "video/FormatChoice.h"
#include "video/FpsCounter.h"
#include "video/KVideoPlugin.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <gmock/gmock.h>

#include <QSignalSpy>

using ::testing::ElementsAre;

namespace {

struct VideoSettings : ::testing::Test
{
    VideoSettings() { VlcConfig::publish(&m_config); }
    ~VideoSettings() override
    {
        VlcConfig::publish(nullptr);
        m_store.Remove(QStringLiteral("vlc"));
        m_store.Remove(QStringLiteral("application"));
    }

    VlcConfig stored()
    {
        KSRFromKSettingsManager reader(&m_store);
        VlcConfig config;
        config.load(reader);
        return config;
    }

    KSettingsManager m_store = KSettingsManager::ForUser();
    VlcConfig m_config;
};

TEST_F(VideoSettings, SurviveARestartButForTheModeOfTheRun)
{
    EXPECT_TRUE(stored().shaderColorConversion);
    m_config.hardwareDecoding = true;
    m_config.disableAudio = true;
    m_config.customInstanceArguments = QStringLiteral("--one,--two");
    m_config.customMediaOptions = QStringLiteral(":three");
    m_config.customMode = true;
    m_config.shaderColorConversion = false;
    m_config.audioDelay = -250;
    m_config.save(m_store);
    const VlcConfig loaded = stored();
    EXPECT_TRUE(loaded.hardwareDecoding && loaded.disableAudio && loaded.audioDelay == -250);
    EXPECT_EQ(loaded.customInstanceArguments + loaded.customMediaOptions,
              QStringLiteral("--one,--two:three"));
    EXPECT_FALSE(loaded.customMode || loaded.shaderColorConversion);
}

TEST_F(VideoSettings, ListTheBackendsAndFallBackToTheDefault)
{
    m_store.Set(QStringLiteral("application/videoPlugin"), QString());
    KVideoPlugin plugin(&m_store);
    EXPECT_EQ(plugin.currentPlugin(), QStringLiteral("vlc"));
    const QVariantList list = plugin.pluginsList();
    ASSERT_EQ(list.size(), 2);
    EXPECT_TRUE(list[0].toStringList()[2].startsWith(
        QStringLiteral("Should play any video, current version is  '3.")));
    EXPECT_EQ(list[1].toStringList().mid(0, 2),
              (QStringList{QStringLiteral("qt"), QStringLiteral("Qt Multimedia")}));

    QSignalSpy changes(&plugin, &KVideoPlugin::currentPluginChanged);
    QSignalSpy messages(&plugin, &KVideoPlugin::displayMessage);
    plugin.setCurrentPlugin(QStringLiteral("vlc"));
    EXPECT_EQ(changes.count() + messages.count(), 0);
    plugin.setCurrentPlugin(QStringLiteral("qt"));
    EXPECT_EQ(changes.count(), 1);
    EXPECT_EQ(messages.value(0).value(0).toString(),
              QStringLiteral("You must restart to apply modifications on video plugin."));
    EXPECT_EQ(KVideoPlugin(&m_store).currentPlugin(), QStringLiteral("qt"));
    EXPECT_EQ(KVideoPlugin(&m_store, QStringLiteral("vlc")).currentPlugin(), QStringLiteral("vlc"));
    EXPECT_EQ(KVideoPlugin(&m_store).currentPlugin(), QStringLiteral("qt")) << "not stored";

    EXPECT_EQ(defaultVideoBackendOnWindows(0xC0), QStringLiteral("wmf"));
    EXPECT_EQ(defaultVideoBackendOnWindows(0xB0), QStringLiteral("vlc"));
    EXPECT_EQ(mediaServiceFolder(QStringLiteral("/p"), QStringLiteral("ds")) +
                  mediaServiceFolder(QStringLiteral("/p"), QStringLiteral("vlc")),
              QStringLiteral("/p/QtPlugins/mediaservice/ds"));
}

TEST_F(VideoSettings, AreSavedAndAnnouncedAlsoUnchangedAndResetByCategory)
{
    KVideoPlugin plugin(&m_store);
    QSignalSpy colours(&plugin, &KVideoPlugin::vlcShaderColorConversionChanged);
    QSignalSpy others(&plugin, &KVideoPlugin::vlcHwDecodingChanged);
    QObject::connect(&plugin, &KVideoPlugin::vlcAudioDelayChanged, &plugin,
                     &KVideoPlugin::vlcHwDecodingChanged);
    for (int i = 0; i < 2; ++i) {
        plugin.setVlcHwDecoding(true);
        plugin.setVlcShaderColorConversion(false);
        plugin.setVlcAudioDelay(120);
    }
    EXPECT_TRUE(colours.count() == 2 && others.count() == 4);
    EXPECT_TRUE(stored().hardwareDecoding && !stored().shaderColorConversion);
    plugin.resetDefaultValues(QStringLiteral("display"));
    EXPECT_EQ(stored().audioDelay, 120);
    plugin.resetDefaultValues(QStringLiteral("audio"));
    EXPECT_EQ(stored().audioDelay, 0);
    EXPECT_TRUE(plugin.vlcHwDecoding() && !plugin.vlcShaderColorConversion());
    plugin.setVlcAudioDelay(7);
    plugin.setCurrentPlugin(QStringLiteral("qt"));
    plugin.resetDefaultValues(QStringLiteral("video"));
    EXPECT_EQ(plugin.currentPlugin(), QStringLiteral("vlc"));
    EXPECT_TRUE(!stored().hardwareDecoding && stored().shaderColorConversion);
    EXPECT_EQ(plugin.vlcAudioDelay(), 7);
    EXPECT_TRUE(colours.count() == 3 && others.count() == 7);
}

TEST_F(VideoSettings, GiveLibvlcTheDefaultOrTheUsersArguments)
{
    m_config.customInstanceArguments = QStringLiteral("a,,b");
    m_config.customMediaOptions = QStringLiteral(",");
    EXPECT_EQ(vlcInstanceArguments(m_config).join(QLatin1Char(' ')),
              QStringLiteral("--verbose=0 --quiet --intf=dummy --ignore-config no-plugins-cache"));
    EXPECT_EQ(vlcMediaOptions(m_config).join(QLatin1Char(' ')),
              QStringLiteral(":cineform-output-formats=YUYV :cineform-skip-frames=true "
                             "no-plugins-cache"));
    m_config.disableAudio = true;
    EXPECT_EQ(vlcInstanceArguments(m_config).last(), QStringLiteral("--noaudio"));
    m_config.customMode = true;
    EXPECT_THAT(vlcInstanceArguments(m_config), ElementsAre("a", "", "b"));
    EXPECT_THAT(vlcMediaOptions(m_config), ElementsAre("", ""));
    m_config.customInstanceArguments = QString(69, QLatin1Char(','));
    EXPECT_EQ(vlcInstanceArguments(m_config).size(), 64);

    m_config.customMode = false;
    ASSERT_TRUE(vlcInstance());
    for (const VlcAudioDevice &device : vlcAudioDevices())
        EXPECT_TRUE(device.label.contains(QStringLiteral(": ")));
    releaseVlcInstance();
}

TEST(FormatChoice, AnswersWhatTheDecoderProposes)
{
    for (const char *proposed : {"VAOP", "RGBA", "I420", "YUY2"}) {
        const VlcPixelFormat known = pixelFormatOfChroma(proposed);
        const bool kept = known != VlcPixelFormat::Unset;
        std::string chroma = proposed;
        ChromaAnswer answer = ChromaAnswer::Kept;
        EXPECT_EQ(acceptChroma(chroma.data(), &answer), kept ? known : VlcPixelFormat::Bgra);
        EXPECT_EQ(answer == ChromaAnswer::Kept, kept);
        EXPECT_EQ(chroma, kept ? proposed : "BGRA");
    }
    EXPECT_EQ(chooseFramePath(true, false), FramePath::Upload);
    EXPECT_EQ(chooseFramePath(true, true), FramePath::Interop);
    EXPECT_EQ(chooseFramePath(false, false), FramePath::Interop);
    EXPECT_EQ(chooseFrameSize({1920, 962}, {1920, 960}), QSize(1920, 960));
    EXPECT_EQ(chooseFrameSize({1920, 962}, {0, 0}), QSize(1920, 962));
    EXPECT_EQ(chooseFrameSize({320, 160}, {16000, 16000}), QSize(320, 160));
    EXPECT_TRUE(isFullRangeCodec(0x44484643));
    EXPECT_FALSE(isFullRangeCodec(0x43464844));
}

TEST(FpsCounter, AnnouncesTheFramesOfEachFullSecond)
{
    FpsCounter counter;
    EXPECT_TRUE(counter.frame(1000999));
    EXPECT_EQ(counter.framesPerSecond(), 1);
    for (int i = 0; i < 24; ++i)
        EXPECT_FALSE(counter.frame(1001000 - 1));
    EXPECT_TRUE(counter.frame(1001000));
    EXPECT_EQ(counter.framesPerSecond(), 25);
    EXPECT_FALSE(counter.frame(900000)) << "a clock set back";
}

} // namespace
