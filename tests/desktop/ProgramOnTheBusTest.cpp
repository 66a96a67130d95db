// The program as the desktop around it sees it: panel, screen saver, window manager.

#include "desktop/FakeScreenSaver.h"
#include "desktop/SessionBus.h"
#include "support/Desktop.h"

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QFile>
#include <QTest>

namespace {

constexpr int kPatienceMs = 30000;
const QString kFilm = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/turning.mp4");

struct ProgramOnTheBus : public ::testing::Test
{
    QDBusPendingReply<QDBusVariant> call(const QString &interface, const QString &method,
                                         const QVariantList &arguments = {})
    {
        QDBusMessage message = QDBusMessage::createMethodCall(
            "org.mpris.MediaPlayer2.orbilens_player", "/org/mpris/MediaPlayer2", interface, method);
        message.setArguments(arguments);
        return panel.asyncCall(message);
    }

    QString playback()
    {
        const auto reply = call("org.freedesktop.DBus.Properties", "Get",
                                {"org.mpris.MediaPlayer2.Player", "PlaybackStatus"});
        const bool answered = QTest::qWaitFor([&] { return reply.isFinished(); }, kPatienceMs);
        return answered && reply.isValid() ? reply.value().variant().toString() : QString();
    }

    bool comesTo(const QString &status)
    {
        return QTest::qWaitFor([&] { return playback() == status; }, kPatienceMs);
    }

    bool screenSaverHears(int words)
    {
        return QTest::qWaitFor([&] { return screenSaver.said.size() == words; }, kPatienceMs);
    }

    test::Desktop desktop;
    test::SessionBus bus;
    QDBusConnection panel = bus.connection("panel");
    test::FakeScreenSaver screenSaver{panel};
    QTemporaryDir home;
    QProcess player;
};

} // namespace

TEST_F(ProgramOnTheBus, IsPlayedPausedAndEndedByThePanelAndKeepsTheScreenAwakeOnlyWhileItPlays)
{
    QProcessEnvironment environment = desktop.environment(home.path());
    environment.insert("DBUS_SESSION_BUS_ADDRESS", bus.address());
    player.setProcessEnvironment(environment);
    player.setProcessChannelMode(QProcess::MergedChannels);
    player.start(QStringLiteral(ORBILENS_PLAYER), {kFilm});
    ASSERT_TRUE(player.waitForStarted(kPatienceMs));
    const QString window = desktop.windowOf(player);
    ASSERT_FALSE(window.isEmpty());

    const QString interface = QStringLiteral("org.mpris.MediaPlayer2.Player");
    EXPECT_TRUE(comesTo("Playing"));
    EXPECT_TRUE(screenSaverHears(1));
    call(interface, "Pause");
    EXPECT_TRUE(comesTo("Paused"));
    EXPECT_TRUE(screenSaverHears(2));
    call(interface, "PlayPause");
    EXPECT_TRUE(comesTo("Playing"));
    EXPECT_TRUE(screenSaverHears(3));
    desktop.xdotool({"windowminimize", window});
    EXPECT_TRUE(screenSaverHears(4)) << "nobody watches a hidden window";
    call("org.mpris.MediaPlayer2", "Raise");
    EXPECT_TRUE(screenSaverHears(5));
    EXPECT_EQ(screenSaver.said.mid(3), QStringList({"UnInhibit 41", "Inhibit Orbilens Player"}));
    call("org.mpris.MediaPlayer2", "Quit");
    EXPECT_TRUE(player.waitForFinished(kPatienceMs));
    EXPECT_EQ(player.exitCode(), 0);
    EXPECT_EQ(test::complaints(player.readAll()), "");
    EXPECT_TRUE(screenSaverHears(6));

    QFile recent(home.filePath(".local/share/recently-used.xbel"));
    ASSERT_TRUE(recent.open(QIODevice::ReadOnly));
    EXPECT_TRUE(recent.readAll().contains(QUrl::fromLocalFile(kFilm).toEncoded()));
}
