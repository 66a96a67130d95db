// The real program with a headset on: the eyes' pictures, the window, and what it does without one.

#include "support/Desktop.h"
#include "support/probe/ProbedPlayer.h"

#include <gtest/gtest.h>

#include <QColor>
#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QJsonDocument>
#include <QThread>

namespace {

const QString kSample = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");

class HeadsetProgram : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(desktop.valid()) << "no X server could be started"; }

    [[nodiscard]] bool start(const QString &libraries, const QVariantMap &settings)
    {
        QProcessEnvironment environment = desktop.environment(player.home());
        environment.insert("LD_LIBRARY_PATH", libraries);
        environment.insert("ORBILENS_VR_FOLDER", folder.path());
        return player.start(environment, {kSample}, settings);
    }

    QJsonObject headset() { return QJsonDocument::fromJson(player.ask("headset")).object(); }
    template <class Condition>
    bool eventually(Condition condition)
    {
        QElapsedTimer timer;
        for (timer.start(); timer.elapsed() < 30000; QThread::msleep(50)) {
            if (condition())
                return true;
        }
        return false;
    }

    void script(const QByteArray &text)
    {
        QFile file(folder.filePath("script"));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(text);
    }

    test::Desktop desktop;
    QTemporaryDir folder;
    test::ProbedPlayer player;
};

} // namespace

TEST_F(HeadsetProgram, ShowsThePanoramaToBothEyesAndTurnsTheWindowWithTheHead)
{
    const QByteArray eyes = "size 480 520\nfrustum0 1.2 0.9 1.1 1.1\nfrustum1 0.9 1.2 1.1 1.1\n";
    script(eyes + "pose 0.5 0 0.8660254 0 0 1 0 0 -0.8660254 0 0.5 0\n"); // a sixth to the left
    ASSERT_TRUE(start(ORBILENS_RUNTIMES,
                      {{"application/hmd/sdk", "openvr"}, {"application/hmd/hmdMode", true}}));
    EXPECT_TRUE(eventually([&] {
        const QJsonObject state = headset();
        return state["available"].toBool() && state["activated"].toBool() &&
               state["fps"].toInt() > 0;
    }));
    EXPECT_TRUE(player.waitFor([](const QJsonObject &state) {
        return std::abs(state["yaw"].toDouble() + 1.0472) < 1e-3;
    }));
    EXPECT_EQ(player.ask("set headset shiftYaw -0.5"), "ok");
    EXPECT_TRUE(player.waitFor([](const QJsonObject &state) {
        return std::abs(state["yaw"].toDouble() + 0.5472) < 1e-3;
    }));

    QDir().mkpath(QStringLiteral(ORBILENS_BINARY_DIR "/artefacts"));
    script(eyes + "pose 1 0 0 0 0 1 0 0 0 0 1 0\npicture 1\n");
    for (const char *eye : {"eye0", "eye1"}) {
        const QString path = folder.filePath(QStringLiteral("%1-1.ppm").arg(eye));
        EXPECT_TRUE(eventually([&] { return QFile::exists(path); }));
        const QImage image(path);
        image.save(QStringLiteral(ORBILENS_BINARY_DIR "/artefacts/openvr-program-%1.png").arg(eye));
        EXPECT_EQ(image.size(), QSize(480, 520));
        EXPECT_NE(image.pixel(240, 100), image.pixel(240, 500)) << "sky and ground";
    }
    desktop.xdotool({"mousemove", "640", "690"}); // the bar comes up, with the headset's button
    QThread::sleep(1);
    desktop.screenshot("headset");

    EXPECT_EQ(player.ask("set headset activated false"), "ok");
    EXPECT_EQ(player.ask("set headset activated true"), "ok");
    EXPECT_EQ(player.quit(), 0);
    EXPECT_EQ(test::complaints(player.errors()), "");
}

TEST_F(HeadsetProgram, WithoutAnyRuntimeTriesBothFamiliesOnceAndPlaysInTheWindow)
{
    ASSERT_TRUE(start(QString(), {}));
    EXPECT_TRUE(eventually([&] { return headset()["logMessage"].toString().contains("OpenVR"); }));
    const QJsonObject state = headset();
    const QString log = state["logMessage"].toString();
    EXPECT_EQ(state["kind"].toString(), "openvr");
    EXPECT_FALSE(state["available"].toBool());
    EXPECT_TRUE(log.startsWith("Oculus SDK initialization failed.\n"
                               "Unable to initialize Oculus driver.\n"))
        << log.toStdString();
    EXPECT_EQ(log.count("\nUsing OpenVR SDK version 1.0.6.\nOpenVR SDK initialization failed.\n"
                        "Unable to initialize OpenVR runtime.\nCannot load library openvr_api:"),
              1)
        << log.toStdString();
    EXPECT_TRUE(eventually([&] {
        return QColor(QLatin1String(player.ask("pixel 0.5 0.5"))) != QColor(0x22, 0x22, 0x22);
    }));
    EXPECT_EQ(player.quit(), 0);
    EXPECT_EQ(test::complaints(player.errors()), "");
}
