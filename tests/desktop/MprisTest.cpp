// The player as a media panel sees it: over a real bus, from a connection of its own.

#include "desktop/MprisService.h"

#include "desktop/SessionBus.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDBusConnectionInterface>
#include <QDBusPendingCall>
#include <QDBusVariant>

namespace {

const QString kName = QStringLiteral("org.mpris.MediaPlayer2.orbilens_player");
const QString kPlayer = QStringLiteral("org.mpris.MediaPlayer2.Player");
const QString kRoot = QStringLiteral("org.mpris.MediaPlayer2");

/// Writes down what it is asked for.
class Recorder : public PlayerControls
{
public:
    void play() override { asked += "play"; }
    void pause() override { asked += "pause"; }
    void stop() override { asked += "stop"; }
    void next() override { asked += "next"; }
    void previous() override { asked += "previous"; }
    void seek(int position) override { asked += QStringLiteral("seek %1").arg(position); }
    void setVolume(double volume) override { asked += QStringLiteral("volume %1").arg(volume); }
    void setLoop(PlayerStatus::Loop loop) override
    {
        asked += QStringLiteral("loop %1").arg(int(loop));
    }
    void setFullScreen(bool on) override { asked += on ? "full screen" : "window"; }
    void open(const QUrl &medium) override { asked += "open " + medium.toString(); }
    void raise() override { asked += "raise"; }
    void quit() override { asked += "quit"; }

    QStringList asked;
};

PlayerStatus film()
{
    PlayerStatus status;
    status.playback = PlayerStatus::Playback::Playing;
    status.loop = PlayerStatus::Loop::List;
    status.track = 3;
    status.medium = QUrl::fromLocalFile("/films/sea side.mp4");
    status.title = "sea side.mp4";
    status.artwork = QUrl::fromLocalFile("/films/sea side.png");
    status.duration = 90000;
    status.film = true;
    status.canGoNext = status.canGoPrevious = true;
    status.volume = 0.5;
    return status;
}

struct Mpris : ::testing::Test
{
    void SetUp() override
    {
        ASSERT_TRUE(panel.isConnected());
        ASSERT_SOON(panel.interface()->isServiceRegistered(kName).value());
    }

    /// What a call comes back with; nothing here may wait for it without events, as the service
    /// answers on this thread.
    QDBusMessage ask(const QString &interface, const QString &method, const QVariantList &arguments)
    {
        QDBusMessage message =
            QDBusMessage::createMethodCall(kName, "/org/mpris/MediaPlayer2", interface, method);
        message.setArguments(arguments);
        const QDBusPendingCall pending = panel.asyncCall(message);
        EXPECT_SOON(pending.isFinished());
        return pending.reply();
    }

    QVariant get(const QString &interface, const QString &property)
    {
        const QDBusMessage reply =
            ask("org.freedesktop.DBus.Properties", "Get", {interface, property});
        EXPECT_EQ(reply.errorMessage(), QString());
        return reply.arguments().value(0).value<QDBusVariant>().variant();
    }

    QVariantMap metadata() { return qdbus_cast<QVariantMap>(get(kPlayer, "Metadata")); }

    /// Returns whether the call was answered without an error.
    bool call(const QString &interface, const QString &method, const QVariantList &arguments = {})
    {
        return ask(interface, method, arguments).type() == QDBusMessage::ReplyMessage;
    }

    bool set(const QString &interface, const QString &property, const QVariant &value)
    {
        return call("org.freedesktop.DBus.Properties", "Set",
                    {interface, property, QVariant::fromValue(QDBusVariant(value))});
    }

    test::SessionBus bus;
    QDBusConnection panel = bus.connection("panel");
    QDBusConnection own = bus.connection("own");
    Recorder controls;
    MprisService service{own, &controls};
};

/// What the bus tells a panel of its own accord.
class Heard : public QObject
{
    Q_OBJECT

public:
    explicit Heard(QDBusConnection bus)
    {
        bus.connect(QString(), "/org/mpris/MediaPlayer2", "org.freedesktop.DBus.Properties",
                    "PropertiesChanged", this, SLOT(changed(QString, QVariantMap, QStringList)));
        bus.connect(QString(), "/org/mpris/MediaPlayer2", kPlayer, "Seeked", this,
                    SLOT(seeked(qlonglong)));
    }

    QMap<QString, QVariantMap> properties; // by interface
    QList<qlonglong> positions;

private slots:
    void changed(const QString &interface, const QVariantMap &changed, const QStringList &)
    {
        for (auto it = changed.begin(); it != changed.end(); ++it)
            properties[interface].insert(it.key(), it.value());
    }
    void seeked(qlonglong position) { positions += position; }
};

} // namespace

TEST_F(Mpris, SaysWhatItIs)
{
    const std::tuple<QString, const char *, QVariant> rows[] = {
        {kRoot, "Identity", "Orbilens Player"},
        {kRoot, "DesktopEntry", "orbilens-player"},
        {kRoot, "CanQuit", true},
        {kRoot, "CanRaise", true},
        {kRoot, "HasTrackList", false},
        {kPlayer, "PlaybackStatus", "Stopped"},
        {kPlayer, "CanControl", true},
        {kPlayer, "CanPlay", false},
        {kPlayer, "CanSeek", false},
        {kPlayer, "Rate", 1.0},
        {kPlayer, "Position", qlonglong(0)}};
    for (const auto &[interface, property, value] : rows)
        EXPECT_EQ(get(interface, property), value) << property;
    EXPECT_EQ(metadata().keys(), QStringList("mpris:trackid"));
    EXPECT_TRUE(get(kRoot, "SupportedMimeTypes").toStringList().contains("video/mp4"));
}

TEST_F(Mpris, TellsWhatPlaysAndAnnouncesOnlyWhatChanged)
{
    Heard heard(panel);
    get(kRoot, "Identity"); // the bus knows of the listener once this has come back
    service.update(film());
    service.setPosition(61000);
    const std::pair<const char *, QVariant> properties[] = {
        {"PlaybackStatus", "Playing"}, {"LoopStatus", "Playlist"}, {"Volume", 0.5},
        {"Position", 61000000LL},      {"CanGoNext", true},        {"CanSeek", true}};
    for (const auto &[property, value] : properties)
        EXPECT_EQ(get(kPlayer, property), value) << property;
    const QVariantMap map = metadata();
    const std::pair<const char *, QVariant> facts[] = {
        {"mpris:length", 90000000LL},
        {"xesam:title", "sea side.mp4"},
        {"xesam:url", "file:///films/sea%20side.mp4"},
        {"mpris:artUrl", "file:///films/sea%20side.png"}};
    for (const auto &[key, value] : facts)
        EXPECT_EQ(map.value(key), value) << key;
    EXPECT_EQ(map.value("mpris:trackid").value<QDBusObjectPath>().path(),
              "/com/orvex/orbilens_player/track/3");
    EXPECT_TRUE(heard.properties[kPlayer].contains("Metadata"));

    heard.properties.clear();
    PlayerStatus paused = film();
    paused.playback = PlayerStatus::Playback::Paused;
    paused.fullScreen = true;
    service.update(paused);
    EXPECT_SOON(heard.properties.size() == 2);
    EXPECT_EQ(heard.properties[kPlayer], QVariantMap({{"PlaybackStatus", "Paused"}}));
    EXPECT_EQ(heard.properties[kRoot], QVariantMap({{"Fullscreen", true}}));
    EXPECT_TRUE(heard.positions.isEmpty()) << "the first report of a medium is no jump";
}

TEST_F(Mpris, HandsOnWhatIsAskedWithinWhatIsPossible)
{
    service.update(film());
    service.setPosition(30000);
    const QDBusObjectPath track("/com/orvex/orbilens_player/track/3");
    const QDBusObjectPath other("/com/orvex/orbilens_player/track/2");
    const auto object = [](const QDBusObjectPath &path) { return QVariant::fromValue(path); };
    const std::tuple<const char *, QVariantList, QStringList> rows[] = {
        {"PlayPause", {}, {"pause"}},
        {"Pause", {}, {"pause"}},
        {"Play", {}, {}},
        {"Next", {}, {"next"}},
        {"Previous", {}, {"previous"}},
        {"Seek", {qlonglong(5000000)}, {"seek 35000"}},
        {"Seek", {qlonglong(-60000000)}, {"seek 0"}},
        {"Seek", {qlonglong(60000001000)}, {"next"}},
        {"Seek", {std::numeric_limits<qlonglong>::min()}, {"seek 0"}},
        {"SetPosition", {object(track), qlonglong(90000000)}, {"seek 90000"}},
        {"SetPosition", {object(track), qlonglong(90001000)}, {}},
        {"SetPosition", {object(track), qlonglong(-1)}, {}},
        {"SetPosition", {object(other), qlonglong(1000000)}, {}},
        {"OpenUri", {"https://example.org/a.mp4"}, {"open https://example.org/a.mp4"}},
        {"OpenUri", {"javascript:alert(1)"}, {}},
        {"OpenUri", {"/etc/passwd"}, {}},
        {"Stop", {}, {"stop"}},
    };
    for (const auto &[method, arguments, asked] : rows) {
        controls.asked.clear();
        EXPECT_TRUE(call(kPlayer, method, arguments)) << method;
        EXPECT_EQ(controls.asked, asked) << method;
    }

    controls.asked.clear();
    EXPECT_TRUE(set(kPlayer, "Volume", 7.0));
    EXPECT_TRUE(set(kPlayer, "LoopStatus", "Track"));
    EXPECT_TRUE(set(kPlayer, "Rate", 0.0));
    EXPECT_TRUE(set(kRoot, "Fullscreen", true));
    EXPECT_FALSE(set(kPlayer, "PlaybackStatus", "Paused")) << "read only";
    EXPECT_TRUE(call(kRoot, "Raise"));
    EXPECT_TRUE(call(kRoot, "Quit"));
    EXPECT_EQ(controls.asked,
              QStringList({"volume 1", "loop 1", "pause", "full screen", "raise", "quit"}));

    controls.asked.clear();
    service.update(PlayerStatus());
    for (const char *method : {"Play", "PlayPause", "Pause", "Stop", "Next", "Previous"})
        EXPECT_TRUE(call(kPlayer, method)) << method;
    EXPECT_TRUE(controls.asked.isEmpty()) << "nothing is shown";
}

TEST_F(Mpris, TellsOfJumps)
{
    Heard heard(panel);
    get(kRoot, "Identity"); // the bus knows of the listener once this has come back
    service.update(film());
    service.setPosition(1000);
    service.setPosition(1100);
    service.setPosition(80000);
    EXPECT_TRUE(call(kPlayer, "Seek", {qlonglong(-200000)}));
    service.setPosition(79800);
    EXPECT_SOON(heard.positions.size() >= 2);
    EXPECT_EQ(heard.positions, QList<qlonglong>({80000000, 79800000}));
}

TEST_F(Mpris, ASecondPlayerHasANameOfItsOwn)
{
    QDBusConnection second = bus.connection("second");
    const QString name =
        QStringLiteral("%1.instance%2").arg(kName).arg(QCoreApplication::applicationPid());
    const auto registered = [&] { return panel.interface()->isServiceRegistered(name).value(); };
    {
        MprisService other(second, &controls);
        EXPECT_TRUE(test::soon(registered));
    }
    EXPECT_SOON(!registered()) << "given back";
}

#include "MprisTest.moc"
