// A room of real players on one desktop, linked over the loopback.

#include "support/Desktop.h"
#include "support/probe/ProbedPlayer.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QHostAddress>
#include <QUdpSocket>
#include <QUrl>

#include <array>
#include <cmath>

namespace {

using test::ProbedPlayer;

const QString kSample = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");
const QString kFilm = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/turning.mp4");

struct Room : ::testing::Test
{
    void SetUp() override
    {
        ASSERT_TRUE(desktop.valid()) << "no X server could be started";
        QUdpSocket free;
        ASSERT_TRUE(free.bind(QHostAddress(QHostAddress::LocalHost), 0));
        port = free.localPort();
    }

    QVariantMap settings(const QVariantMap &more = {}) const
    {
        QVariantMap all{{"application/communication/port", port},
                        {"application/communication/ipMode", "custom"},
                        {"application/communication/ipCustom", "127.255.255.255"}};
        for (auto value = more.cbegin(); value != more.cend(); ++value)
            all.insert("application/communication/" + value.key(), value.value());
        return all;
    }
    bool start(ProbedPlayer &player, const QStringList &arguments, const QVariantMap &more = {})
    {
        return player.start(desktop.environment(player.home()), arguments, settings(more));
    }
    static bool follows(ProbedPlayer &slave, const QJsonObject &master)
    {
        return slave.waitFor([&master](const QJsonObject &state) {
            for (const char *name :
                 {"yaw", "pitch", "roll", "fov", "stereoMode", "mediaSource", "playbackState"}) {
                if (state.value(QLatin1String(name)) != master.value(QLatin1String(name)))
                    return false;
            }
            return true;
        });
    }
    static bool comesTo(ProbedPlayer &player, const char *name, const QJsonValue &value)
    {
        return player.waitFor(
            [=](const QJsonObject &state) { return state.value(QLatin1String(name)) == value; });
    }
    /// Opening a medium resets the camera, so the master is moved after that.
    static bool plays(ProbedPlayer &player) { return comesTo(player, "playbackState", 1); }
    static bool rests(ProbedPlayer &player) { return comesTo(player, "playbackState", 2); }
    static void look(ProbedPlayer &player, const std::array<double, 4> &numbers)
    {
        const char *const names[] = {"yaw", "pitch", "roll", "fov"};
        for (std::size_t i = 0; i < numbers.size(); ++i)
            player.ask(QByteArray("kGlobalObject.") + names[i] + " = " +
                       QByteArray::number(numbers[i]));
    }

    test::Desktop desktop;
    quint16 port = 0;
};

} // namespace

TEST_F(Room, TwoSlavesFollowALateOneCatchesUpAndARestartedMasterIsFollowedAgain)
{
    ProbedPlayer first;
    ProbedPlayer second;
    ProbedPlayer master;
    ASSERT_TRUE(start(first, {"--udp", "slave"}));
    ASSERT_TRUE(start(master, {"--udp", "master", kSample}) && plays(master));
    look(master, {0.5, -0.25, 0.125, 100});
    master.ask("kShaderCodeBuilder.stereoMode = 1");
    EXPECT_TRUE(follows(first, master.state()));
    EXPECT_TRUE(first.state().value("mediaSource").toString().endsWith("panorama.jpg"));
    EXPECT_TRUE(plays(first));

    ASSERT_TRUE(start(second, {"-u", "slave"}));
    EXPECT_TRUE(follows(second, master.state())) << "a late starter catches up";
    master.ask("k_mediaLoader.mediaPlayer.playbackState = 2");
    EXPECT_TRUE(rests(first) && rests(second));

    master.kill();
    EXPECT_EQ(first.state().value("yaw").toDouble(), 0.5) << "without a master it stays";
    ProbedPlayer again;
    ASSERT_TRUE(start(again, {"--udp", "master", kSample}) && plays(again));
    look(again, {-1.5, 0.5, 0, 120});
    again.ask("kShaderCodeBuilder.stereoMode = 2");
    const QJsonObject state = again.state();
    EXPECT_TRUE(follows(first, state) && follows(second, state));
    for (ProbedPlayer *player : {&first, &second, &again}) {
        EXPECT_EQ(player->quit(), 0);
        EXPECT_EQ(test::complaints(player->errors()), "");
    }
}

TEST_F(Room, AFilmIsFollowedThroughItsPausesAndJumps)
{
    ProbedPlayer slave;
    ProbedPlayer master;
    ASSERT_TRUE(start(slave, {"--udp", "slave"}));
    ASSERT_TRUE(start(master, {"--udp", "master", kFilm}) && plays(master));
    EXPECT_TRUE(plays(slave));
    master.ask("k_mediaLoader.pause()");
    EXPECT_TRUE(rests(master) && rests(slave));
    for (const int position : {7000, 500}) {
        master.ask("k_mediaLoader.seek(" + QByteArray::number(position) + ')');
        EXPECT_TRUE(slave.waitFor([position](const QJsonObject &state) {
            return std::abs(state.value("position").toInt() - position) <= 3000;
        })) << slave.state().value("position").toInt()
            << " of " << position;
    }
    master.ask("k_mediaLoader.play()");
    EXPECT_TRUE(plays(slave));
}

TEST_F(Room, SettingsChooseRoleFormAndDestination)
{
    ProbedPlayer master;
    ProbedPlayer slave;
    const QString films = slave.home() + "/Videos";
    ASSERT_TRUE(QDir().mkpath(films) && QFile::copy(kSample, films + "/panorama.jpg"));
    ASSERT_TRUE(start(slave, {}, {{"state", "slave"}, {"format", 1}, {"urlMode", 1}}));
    ASSERT_TRUE(
        start(master, {kSample}, {{"state", "master"}, {"format", 1}, {"ipMode", "localhost"}}));
    const QString own = QUrl::fromLocalFile(films + "/panorama.jpg").toString();
    EXPECT_TRUE(comesTo(slave, "mediaSource", own)) << "its own copy of the medium";
}

TEST_F(Room, AFloodDoesNotFreezeTheSlave)
{
    ProbedPlayer slave;
    ASSERT_TRUE(start(slave, {"--udp", "slave"}));
    QUdpSocket sender;
    const QByteArray junk[] = {QByteArray(60000, '['), QByteArray(900, '\xff'),
                               "{\"id\":\"lnd\",\"yaw\":1e300}"};
    const QByteArray packet = "{\"id\":\"lnd\",\"yaw\":0.5,\"fov\":100}";
    int answers = 0;
    for (int i = 0; i < 20000; ++i) {
        sender.writeDatagram(junk[i % 3], QHostAddress(QHostAddress::LocalHost), port);
        sender.writeDatagram(packet, QHostAddress(QHostAddress::LocalHost), port);
        if (i % 1000 == 0)
            answers += slave.state().isEmpty() ? 0 : 1;
    }
    EXPECT_EQ(answers, 20);
    sender.writeDatagram(packet, QHostAddress(QHostAddress::LocalHost), port);
    EXPECT_TRUE(comesTo(slave, "yaw", 0.5) && comesTo(slave, "fov", 100));
    EXPECT_EQ(slave.quit(), 0);
    EXPECT_EQ(test::complaints(slave.errors()), "");
}
