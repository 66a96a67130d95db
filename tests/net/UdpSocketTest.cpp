// Masters and slaves over a real socket on the loopback, with the scene's loader faked.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "net/KUdpSocket.h"
#include "render/HeadsetView.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"

#include <gtest/gtest.h>

#include <QSignalSpy>
#include <QTest>

#include <cmath>

namespace {

constexpr int kPatienceMs = 20000;

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

class UdpSocket : public ::testing::Test
{
protected:
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
        ASSERT_TRUE(QTest::qWaitFor([this] { return view->roll() == packet.roll; }, kPatienceMs));
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

TEST_F(UdpSocket, AMasterSendsItsCameraAndPlayback)
{
    QUdpSocket receiver;
    ASSERT_TRUE(receiver.bind(QHostAddress(QHostAddress::LocalHost), port));
    view->setYaw(0.5F);
    view->setPitch(-0.25F);
    view->setRoll(1);
    view->setFov(70);
    application->shaderBuilder()->setStereoMode(KShaderCodeBuilder::STEREO_3D_SIDEBYSIDE);
    loader.player.setProperty("mediaSource", QUrl("file:///a/film.mp4"));
    loader.player.setProperty("position", 1234);
    set("state", "master");
    for (const int format : {KUdpSocket::JSON, KUdpSocket::QtBinary}) {
        for (const char *mode : {"localhost", "custom"}) {
            set("format", format);
            set("ipMode", mode);
            set("ipCustom", "127.0.0.1");
            const KUdpSocket master(QString(), application);
            QSignalSpy ready(&receiver, &QUdpSocket::readyRead);
            ASSERT_TRUE(ready.wait(kPatienceMs)) << mode;
            QByteArray bytes(int(receiver.pendingDatagramSize()), '\0');
            receiver.readDatagram(bytes.data(), bytes.size());
            const auto sent = decodeSyncPacket(bytes, SyncFormat(format), "lnd");
            ASSERT_TRUE(sent);
            EXPECT_EQ(sent->yaw, 0.5F);
            EXPECT_EQ(sent->pitch, -0.25F);
            EXPECT_EQ(sent->roll, 1);
            EXPECT_EQ(sent->fov, view->fov());
            EXPECT_EQ(sent->stereoMode, 2);
            EXPECT_EQ(sent->url, "file:///a/film.mp4");
            EXPECT_EQ(sent->state, 1);
            EXPECT_EQ(sent->position, 1234);
        }
        while (receiver.hasPendingDatagrams())
            receiver.readDatagram(nullptr, 0);
    }
}

TEST_F(UdpSocket, ASlaveFollowsInBothForms)
{
    for (const auto format : {SyncFormat::Json, SyncFormat::QtBinary}) {
        set("format", int(format));
        const KUdpSocket slave("slave", application);
        view->setRoll(0);
        packet = {};
        packet.yaw = format == SyncFormat::Json ? 0.5F : -0.5F;
        packet.pitch = 0.25F;
        packet.fov = 100;
        packet.stereoMode = 1;
        packet.state = 2;
        packet.position = 4000;
        packet.url = QStringLiteral("file:///a/film-%1.mp4").arg(int(format));
        QSignalSpy matrix(view, &KGlobalObject::rotationMatrixChanged);
        settle(format);
        EXPECT_EQ(view->yaw(), packet.yaw);
        EXPECT_EQ(view->pitch(), packet.pitch);
        EXPECT_EQ(matrix.count(), 1) << "three angles, one matrix";
        EXPECT_EQ(view->fov(), 100);
        EXPECT_EQ(application->shaderBuilder()->stereoMode(), 1);
        EXPECT_EQ(taken(), (QStringList{"open " + packet.url, "state 2", "seek 4000"}));

        // A packet of the other form, of another sender, and one without a field of view.
        SyncPacket other = packet;
        other.yaw = 2;
        send(other, format == SyncFormat::Json ? SyncFormat::QtBinary : SyncFormat::Json);
        other.id = "other";
        send(other, format);
        packet.fov = 0;
        loader.player.setProperty("playbackState", 2);
        settle(format);
        EXPECT_EQ(view->yaw(), packet.yaw);
        EXPECT_EQ(view->fov(), 100);
        EXPECT_EQ(taken(), QStringList());
        loader.player.setProperty("playbackState", 1);
    }
}

TEST_F(UdpSocket, OneSeekASecond)
{
    KUdpSocket slave("slave", application);
    set("urlMode", KUdpSocket::Off);
    packet.url = "file:///a/film.mp4";
    packet.state = 1;
    packet.position = 10000;
    settle();
    packet.position = 20000;
    settle();
    EXPECT_EQ(taken(), (QStringList{"open file:///a/film.mp4", "seek 10000"}));
    slave.unlockSync();
    settle();
    EXPECT_EQ(taken(), QStringList{"seek 20000"});
    // The lock opens by itself as well.
    QElapsedTimer timer;
    timer.start();
    while (loader.calls.isEmpty() && timer.elapsed() < kPatienceMs)
        settle();
    EXPECT_EQ(taken(), QStringList{"seek 20000"});
}

TEST_F(UdpSocket, AMediumThatFailsIsAskedForOnce)
{
    const KUdpSocket slave("slave", application);
    loader.opens = false;
    packet.state = 1;
    const QStringList asked[] = {
        {"open file:///a"}, {}, {}, {"open file:///b"}, {"open file:///a"}};
    const char *urls[] = {"file:///a", "file:///a", "file:///a", "file:///b", "file:///a"};
    for (int i = 0; i < 5; ++i) {
        packet.url = urls[i];
        settle();
        EXPECT_EQ(taken(), asked[i]) << i;
    }
    // Closed and opened again by the master, it is worth another attempt.
    packet.url.clear();
    settle();
    packet.url = "file:///a";
    settle();
    EXPECT_EQ(taken(), QStringList{"open file:///a"});
}

TEST_F(UdpSocket, OrientationFollowsItsMode)
{
    const struct
    {
        int mode;
        float yaw;       // of the slave afterwards, 1 before
        float direction; // where its matrix looks
    } rows[] = {{KUdpSocket::AbsoluteOrientation, 0.5F, 0.5F},
                {KUdpSocket::OffOrientation, 1, 1},
                {KUdpSocket::OffsetOrientation, 1, 1.5F}};
    for (const auto &row : rows) {
        set("orientationMode", row.mode);
        const KUdpSocket slave("slave", application);
        view->setOrientationOffset(0, 0, 0);
        view->setYaw(1);
        view->setFov(90);
        packet = {};
        packet.yaw = 0.5F;
        packet.fov = 91;
        send(packet);
        ASSERT_TRUE(QTest::qWaitFor([this] { return view->fov() == 91; }, kPatienceMs));
        EXPECT_EQ(view->yaw(), row.yaw) << row.mode;
        const QMatrix4x4 matrix = view->rotationMatrix();
        EXPECT_NEAR(std::atan2(matrix(2, 0), matrix(0, 0)), row.direction, 1e-5) << row.mode;
    }
}

TEST_F(UdpSocket, AHeadsetKeepsItsFieldOfView)
{
    Headset headset;
    application->setHeadsetView(&headset);
    const KUdpSocket slave("slave", application);
    packet.fov = 100;
    settle();
    EXPECT_EQ(view->fov(), 90);
    application->setHeadsetView(nullptr);
}

#include "UdpSocketTest.moc"
