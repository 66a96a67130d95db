#include "video/PlayerWindow.h"

#include "settings/KSettingsManager.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"
#include "video/KVideoPlugin.h"
#include "video/VlcConfig.h"

#include <gmock/gmock.h>

#include <QMediaPlayer>
#include <QQmlComponent>
#include <QQmlContext>
#include <QQmlEngine>
#include <QQuickItem>
#include <QSignalSpy>
#include <QTest>

namespace {

/// The scene's player over one backend, in a window.
class ScenePlayer
{
public:
    explicit ScenePlayer(const QString &backend)
        : m_plugin(&m_store, backend)
    {
        m_view.engine()->addImportPath(QStringLiteral(ORBILENS_SOURCE_DIR "/src/resources"));
        m_view.rootContext()->setContextProperty(QStringLiteral("kVideoPlugin"), &m_plugin);
        m_view.resize(320, 160);
        QQmlComponent component(m_view.engine());
        // Plays a media again from within the report of its first end, as a loop does.
        component.setData("import KVideo 1.0\nimport QtMultimedia 5.5\n"
                          "K_MediaPlayer { width: 320; height: 240; property int ends: 0\n"
                          "onPlayerStatusChanged: if (playerStatus === MediaPlayer.EndOfMedia"
                          " && ++ends === 1) restart() }",
                          {});
        m_item = qobject_cast<QQuickItem *>(component.create());
        EXPECT_TRUE(m_item) << component.errorString().toStdString();
        m_item->setParentItem(m_view.contentItem());
        m_view.show();
        EXPECT_TRUE(QTest::qWaitForWindowExposed(&m_view));
    }
    ~ScenePlayer() { delete m_item; }

    QVariant get(const char *property) const { return m_item->property(property); }
    void set(const char *property, const QVariant &value) { m_item->setProperty(property, value); }
    void seekJump(int delta)
    {
        QMetaObject::invokeMethod(m_item, "seekJump", Q_ARG(QVariant, delta));
    }
    bool reaches(const char *method, QMediaPlayer::State state) const
    {
        return QMetaObject::invokeMethod(m_item, method) && becomes("playbackState", state);
    }
    bool becomes(const char *property, const QVariant &value) const
    {
        return test::soon([&] { return get(property) == value; });
    }
    QQuickItem *item() { return m_item; }
    KVideoPlugin &plugin() { return m_plugin; }

private:
    KSettingsManager m_store = KSettingsManager::ForUser();
    KVideoPlugin m_plugin;
    QQuickView m_view;
    QQuickItem *m_item = nullptr; ///< deleted with this object, before its context
};

class BothBackends : public ::testing::TestWithParam<const char *>
{
};

TEST_P(BothBackends, PlayThroughTheOneFaceOfTheScene)
{
    // GStreamer asks for a sound server that this machine need not have, and names missing files.
    const test::WarningGuard quiet({QStringLiteral("Failed to connect: Connection refused"),
                                    QStringLiteral("^GStreamer; Unable to"),
                                    QStringLiteral("Resource not found")});
    ScenePlayer player(QString::fromLatin1(GetParam()));
    const bool vlc = player.get("backend") == QStringLiteral("vlc");
    EXPECT_EQ(player.get("playerStatus").toInt(), int(QMediaPlayer::NoMedia));
    player.set("volume", 0.25);
    player.set("mediaSource", test::clip("long.mp4"));
    EXPECT_TRUE(player.becomes("playbackState", int(QMediaPlayer::PlayingState)));
    EXPECT_TRUE(player.becomes("playerStatus", int(QMediaPlayer::BufferedMedia)));
    EXPECT_SOON(player.get("position").toInt() > 200);
    EXPECT_NEAR(player.get("duration").toInt(), 20000, 100);
    const auto *source = player.get("shaderEffectSource").value<QQuickItem *>();
    EXPECT_EQ(source == nullptr, vlc);
    if (source) {
        const auto *picture = source->property("sourceItem").value<QQuickItem *>();
        EXPECT_EQ(picture->size() * picture->window()->devicePixelRatio(), QSizeF(320, 160))
            << "no bars and no pixel less, whatever the window's shape";
    }
    EXPECT_EQ(player.get("textureId").toInt() != 0, vlc);
    EXPECT_EQ(player.get("frameSize").toSize(), vlc ? QSize(320, 160) : QSize(0, 0));
    EXPECT_EQ(player.get("textureTransfer").toString() +
                  player.get("texturePixelFormat").toString(),
              QLatin1String(vlc ? "Pixel Buffer Object\nI420" : ""));

    QSignalSpy seeks(player.item(), SIGNAL(seekRequested()));
    player.seekJump(10000);
    EXPECT_SOON(player.get("position").toInt() > 9000);
    player.seekJump(15000);
    EXPECT_SOON(player.get("position").toInt() < 5000);
    player.seekJump(-15000);
    EXPECT_EQ(seeks.count(), 3);

    EXPECT_TRUE(player.reaches("pause", QMediaPlayer::PausedState));
    EXPECT_TRUE(player.reaches("play", QMediaPlayer::PlayingState));
    EXPECT_TRUE(player.reaches("stop", QMediaPlayer::StoppedState));
    EXPECT_TRUE(player.reaches("restart", QMediaPlayer::PlayingState));

    player.set("mediaSource", test::clip("a b%20é#1.mp4"));
    EXPECT_TRUE(player.becomes("ends", 2));
    player.set("mediaSource", test::clip("missing.mp4"));
    EXPECT_SOON(!player.get("errorString").toString().isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Scene, BothBackends, ::testing::Values("vlc", "qt"));

TEST(SceneOfTheVlcBackend, RestartsOnASettingAndKeepsTheBackendUntilTheNextStart)
{
    VlcConfig config;
    VlcConfig::publish(&config);
    {
        ScenePlayer player(QStringLiteral("vlc"));
        player.set("mediaSource", test::clip("long.mp4"));
        EXPECT_TRUE(player.becomes("texturePixelFormat", QStringLiteral("I420")));
        player.plugin().setVlcShaderColorConversion(false);
        EXPECT_TRUE(player.becomes("texturePixelFormat", QStringLiteral("BGRA")));
        const QUrl source = player.get("source").toUrl();
        player.plugin().setCurrentPlugin(QStringLiteral("qt"));
        player.plugin().setVlcAudioDelay(-200);
        QTest::qWait(100);
        EXPECT_EQ(player.get("source").toUrl(), source);
        EXPECT_EQ(player.get("backend").toString(), QStringLiteral("vlc"));
        EXPECT_EQ(player.get("playbackState").toInt(), int(QMediaPlayer::PlayingState));
    }
    VlcConfig::publish(nullptr);
}

} // namespace
