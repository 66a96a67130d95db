// What a slave makes of packets over a real socket on the loopback, with the scene's loader faked.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "net/KUdpSocket.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

#include <cmath>

namespace {

class Loader : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *mediaPlayer READ mediaPlayer CONSTANT)

public:
    Loader()
    {
        player.setProperty("mediaSource", QUrl());
        player.setProperty("playbackState", 1);
        player.setProperty("position", 0);
        player.setProperty("duration", 600000);
    }
    QObject *mediaPlayer() { return &player; }
    QObject player;
    QStringList calls;
    bool opens = true;

    Q_INVOKABLE void processFileSource(const QVariant &source, const QVariant &clear,
                                       const QVariant &error, const QVariant &drop)
    {
        calls.append("open " + source.toUrl().toString());
        EXPECT_FALSE(clear.toBool() || drop.toBool() || !error.toString().isEmpty());
        if (opens)
            player.setProperty("mediaSource", source.toUrl());
    }
    Q_INVOKABLE void syncPlaybackState(const QVariant &state)
    {
        calls.append("state " + state.toString());
    }
    Q_INVOKABLE void seek(const QVariant &position) { calls.append("seek " + position.toString()); }
};

class Headset : public HeadsetView
{
public:
    bool isActivated() const override { return true; }
    std::optional<QMatrix4x4> pose() const override { return std::nullopt; }
    bool isInterfaceActive() const override { return false; }
    QMatrix4x4 interfaceOrientation() const override { return {}; }
    int interfaceTextureId(InterfaceLayer) const override { return 0; }
};

struct UdpSocket : ::testing::Test
{
    UdpSocket()
    {
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        application->setShaderBuilder(std::make_unique<KShaderCodeBuilder>(application));
        application->shaderBuilder()->setStereoMode(KShaderCodeBuilder::STEREO_2D);
        view = application->globalObject();
        view->setMediaLoader(&loader);
        QUdpSocket free;
        EXPECT_TRUE(free.bind(QHostAddress(QHostAddress::LocalHost), 0));
        port = free.localPort();
        set("port", port);
        set("state", "off");
        set("format", KUdpSocket::JSON);
        set("urlMode", KUdpSocket::Absolute);
        set("orientationMode", KUdpSocket::AbsoluteOrientation);
        set("rate", 5);
        set("ipMode", "localhost");
    }
    ~UdpSocket() override
    {
        application->setShaderBuilder(nullptr);
        application->setGlobalObject(nullptr);
    }

    void set(const char *key, const QVariant &value)
    {
        application->settings()->set(QLatin1String("application/communication/") + key, value);
    }
    void send(const QByteArray &bytes)
    {
        ASSERT_EQ(sender.writeDatagram(bytes, QHostAddress::LocalHost, port), bytes.size());
    }
    void send(const SyncPacket &packet, SyncFormat format = SyncFormat::Json)
    {
        send(encodeSyncPacket(packet, format));
    }
    /// Sends a packet whose roll tells when it, and so all before it, has been applied.
    void settle(SyncFormat format = SyncFormat::Json)
    {
        packet.roll = packet.roll > 1 ? 0.5F : packet.roll + 0.25F;
        send(packet, format);
        ASSERT_SOON(view->roll() == packet.roll);
    }
    QStringList taken()
    {
        QStringList calls;
        calls.swap(loader.calls);
        return calls;
    }

    Application *application = static_cast<Application *>(qApp);
    Loader loader;
    KGlobalObject *view = nullptr;
    QUdpSocket sender;
    quint16 port = 0;
    SyncPacket packet;
};

} // namespace

TEST_F(UdpSocket, TakesThreeAnglesAtOnceAndIgnoresWhatIsNotMeantForIt)
{
    for (const auto format : {SyncFormat::Json, SyncFormat::QtBinary}) {
        set("format", int(format));
        const KUdpSocket slave("slave", application);
        view->setRoll(0);
        packet = {};
        packet.yaw = format == SyncFormat::Json ? 0.5F : -0.5F;
        packet.pitch = 0.25F;
        packet.fov = 100;
        QSignalSpy matrix(view, &KGlobalObject::rotationMatrixChanged);
        settle(format);
        EXPECT_EQ(matrix.count(), 1) << "three angles, one matrix";

        // A packet of the other form, of another sender, one without a field of
        // view, and one while a headset has its own.
        SyncPacket other = packet;
        other.yaw = 2;
        send(other, format == SyncFormat::Json ? SyncFormat::QtBinary : SyncFormat::Json);
        other.id = "other";
        send(other, format);
        for (const float fov : {0, 120}) {
            Headset worn;
            application->setHeadsetView(fov > 0 ? &worn : nullptr);
            packet.fov = fov;
            settle(format);
            application->setHeadsetView(nullptr);
        }
        EXPECT_EQ(view->yaw(), packet.yaw);
        EXPECT_EQ(view->pitch(), packet.pitch);
        EXPECT_EQ(view->fov(), 100);
        EXPECT_EQ(taken(), QStringList());
    }
}

TEST_F(UdpSocket, SeeksAtMostOnceASecond)
{
    const KUdpSocket slave("slave", application);
    set("urlMode", KUdpSocket::Off);
    packet.url = "file:///a/film.mp4";
    packet.state = 1;
    packet.position = 10000;
    QElapsedTimer timer;
    timer.start();
    settle();
    EXPECT_EQ(taken(), (QStringList{"open file:///a/film.mp4", "seek 10000"}));
    packet.position = 20000;
    settle();
    EXPECT_TRUE(loader.calls.isEmpty() || timer.elapsed() > 900) << "unless this took a second";
    while (loader.calls.isEmpty() && timer.elapsed() < test::kPatienceMs)
        settle();
    EXPECT_EQ(taken(), QStringList{"seek 20000"});
}

TEST_F(UdpSocket, AMediumThatFailsIsAskedForOnce)
{
    const KUdpSocket slave("slave", application);
    loader.opens = false;
    packet.state = 1;
    // Closed and opened again by the master, it is worth another attempt.
    const std::pair<const char *, bool> steps[] = {
        {"file:///a", true}, {"file:///a", false}, {"file:///a", false}, {"file:///b", true},
        {"file:///a", true}, {"", false},          {"file:///a", true}};
    for (const auto &[url, asked] : steps) {
        packet.url = url;
        settle();
        EXPECT_EQ(taken(), asked ? QStringList("open " + packet.url) : QStringList());
    }
}

TEST_F(UdpSocket, OrientationFollowsItsMode)
{
    // The slave's yaw afterwards, 1 before, and where its matrix looks.
    const std::tuple<int, float, float> rows[] = {{KUdpSocket::AbsoluteOrientation, 0.5F, 0.5F},
                                                  {KUdpSocket::OffOrientation, 1, 1},
                                                  {KUdpSocket::OffsetOrientation, 1, 1.5F}};
    for (const auto &[mode, yaw, direction] : rows) {
        set("orientationMode", mode);
        const KUdpSocket slave("slave", application);
        view->setOrientationOffset(0, 0, 0);
        view->setYaw(1);
        view->setFov(90);
        packet = {};
        packet.yaw = 0.5F;
        packet.fov = 91;
        send(packet);
        ASSERT_SOON(view->fov() == 91);
        EXPECT_EQ(view->yaw(), yaw) << mode;
        const QMatrix4x4 matrix = view->rotationMatrix();
        EXPECT_NEAR(std::atan2(matrix(2, 0), matrix(0, 0)), direction, 1e-5) << mode;
    }
}

#include "UdpSocketTest.moc"
