// The program as the desktop around it sees it: panel, screen saver, window manager.

#include "desktop/FakeScreenSaver.h"
#include "desktop/SessionBus.h"
#include "support/Desktop.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDBusMessage>
#include <QDBusPendingReply>
#include <QDBusVariant>
#include <QUrl>

namespace {

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
        const bool answered = test::soon([&] { return reply.isFinished(); });
        return answered && reply.isValid() ? reply.value().variant().toString() : QString();
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
    ASSERT_TRUE(player.waitForStarted(test::kPatienceMs));
    const QString window = desktop.windowOf(player);
    ASSERT_FALSE(window.isEmpty());

    const QString interface = QStringLiteral("org.mpris.MediaPlayer2.Player");
    EXPECT_SOON(playback() == "Playing");
    EXPECT_SOON(screenSaver.said.size() == 1);
    call(interface, "Pause");
    EXPECT_SOON(playback() == "Paused");
    EXPECT_SOON(screenSaver.said.size() == 2);
    call(interface, "PlayPause");
    EXPECT_SOON(playback() == "Playing");
    EXPECT_SOON(screenSaver.said.size() == 3);
    desktop.xdotool({"windowminimize", window});
    EXPECT_SOON(screenSaver.said.size() == 4) << "nobody watches a hidden window";
    call("org.mpris.MediaPlayer2", "Raise");
    EXPECT_SOON(screenSaver.said.size() == 5);
    EXPECT_EQ(screenSaver.said.mid(3), QStringList({"UnInhibit 41", "Inhibit Orbilens Player"}));
    call("org.mpris.MediaPlayer2", "Quit");
    EXPECT_TRUE(player.waitForFinished(test::kPatienceMs));
    EXPECT_EQ(player.exitCode(), 0);
    EXPECT_EQ(test::complaints(player.readAll()), "");
    EXPECT_SOON(screenSaver.said.size() == 6);

    EXPECT_TRUE(test::readFile(home.filePath(".local/share/recently-used.xbel"))
                    .contains(QUrl::fromLocalFile(kFilm).toEncoded()));
}
