// The installed program driven from outside on a desktop of its own: what a person sees and does.

#include "support/Desktop.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QSettings>
#include <QThread>

#include <algorithm>
#include <functional>

namespace {

const QString kSample = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");
constexpr int kPatienceMs = 30000;

bool eventually(const std::function<bool()> &condition)
{
    QElapsedTimer timer;
    timer.start();
    while (timer.elapsed() < kPatienceMs) {
        if (condition())
            return true;
        QThread::msleep(100);
    }
    return false;
}

class Program : public ::testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(desktop.valid()) << "no X server could be started"; }

    /// Starts the player and waits for its window.
    void start(const QStringList &arguments)
    {
        player.setProcessEnvironment(desktop.environment(home.path()));
        player.setProcessChannelMode(QProcess::MergedChannels);
        player.start(QStringLiteral(ORBILENS_PLAYER), arguments);
        ASSERT_TRUE(player.waitForStarted(kPatienceMs));
        window = desktop.windowOf(player);
        ASSERT_FALSE(window.isEmpty());
    }

    /// Ends the player as a person does; returns its exit status.
    int close()
    {
        // A busy machine may still be putting the window up when the first key comes.
        for (int i = 0; i < 3 && player.state() != QProcess::NotRunning; ++i) {
            desktop.xdotool({"windowactivate", "--sync", window, "key", "alt+F4"});
            player.waitForFinished(kPatienceMs / 3);
        }
        if (player.state() != QProcess::NotRunning)
            return -1;
        return player.exitStatus() == QProcess::NormalExit ? player.exitCode() : -1;
    }

    void point(int x, int y) const
    {
        desktop.xdotool({"mousemove", "--window", window, QString::number(x), QString::number(y)});
    }

    void click(int x, int y) const
    {
        point(x, y);
        desktop.xdotool({"click", "1"});
        QThread::msleep(150);
    }

    void keys(const QStringList &names) const
    {
        // One call each: what a key opens must be there before the next one comes.
        for (const QString &name : names) {
            desktop.xdotool({"key", name});
            QThread::msleep(150);
        }
    }

    /// Opens the settings by their key and waits until the mark of the category shows.
    void openSettings()
    {
        ASSERT_TRUE(eventually([this] {
            desktop.xdotool({"windowactivate", "--sync", window, "key", "ctrl+comma"});
            const QImage image = desktop.screenshot("settings");
            int marked = 0;
            for (int y = 0; y < image.height(); ++y) {
                for (int x = 0; x < image.width(); ++x)
                    marked += image.pixel(x, y) == qRgb(0x00, 0xa2, 0xdd) ? 1 : 0;
            }
            return marked >= 4 * 30;
        }));
    }

    QVariant stored(const QString &key) const
    {
        return QSettings(settingsFile(), QSettings::IniFormat).value(key);
    }

    QString settingsFile() const
    {
        return home.filePath(QStringLiteral(".config/Orvex/Orbilens Player 2.3.conf"));
    }

    /// What the player said, but for where it would leave a dump.
    QByteArray output() { return test::complaints(player.readAll()); }

    test::Desktop desktop;
    QTemporaryDir home;
    QProcess player;
    QString window;
};

/// Columns of the red cube that stands in front: its count of pixels and their mean column.
struct RedCube
{
    int pixels = 0;
    int column = 0;
};

RedCube findRedCube(const QImage &image)
{
    qint64 sum = 0;
    RedCube cube;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const QColor c = image.pixelColor(x, y);
            // Only the sunless side of the front cube has this dark red.
            if (c.red() > 100 && c.red() < 150 && c.green() < 60 && c.blue() < 60) {
                ++cube.pixels;
                sum += x;
            }
        }
    }
    cube.column = cube.pixels > 0 ? int(sum / cube.pixels) : -1;
    return cube;
}

} // namespace

TEST_F(Program, ShowsTheStillLooksAroundAndKeepsItsSettings)
{
    {
        QSettings store(settingsFile(), QSettings::IniFormat);
        store.setValue("application/general/cameraInertia", 0);
    }
    start({kSample});
    RedCube before;
    ASSERT_TRUE(eventually([&] {
        before = findRedCube(desktop.screenshot("still"));
        return before.pixels > 500;
    })) << output().toStdString();

    point(500, 300);
    desktop.xdotool({"mousedown", "1"});
    for (int x = 510; x <= 560; x += 10)
        point(x, 300);
    desktop.xdotool({"mouseup", "1"});
    RedCube dragged;
    EXPECT_TRUE(eventually([&] {
        dragged = findRedCube(desktop.screenshot("dragged"));
        return dragged.column > before.column + 20;
    })) << "the picture follows the finger: "
        << before.column << " to " << dragged.column;

    for (int i = 0; i < 8; ++i)
        desktop.xdotool({"click", "5"});
    EXPECT_TRUE(eventually([&] {
        return findRedCube(desktop.screenshot("zoomed")).pixels < dragged.pixels * 3 / 4;
    })) << "the wheel opens the field of view";

    desktop.xdotool({"windowsize", "--sync", window, "900", "500"});
    EXPECT_TRUE(eventually([&] { return desktop.screenshot("resized").width() > 0; }));
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(output(), QByteArray()) << "a normal run says nothing";

    QSettings store(settingsFile(), QSettings::IniFormat);
    int keys = 0;
    for (const QString &key : store.allKeys()) {
        keys += key.startsWith("application/") ? 1 : 0;
        EXPECT_FALSE(key.startsWith("instance/")) << key.toStdString();
    }
    EXPECT_EQ(keys, 38);
    EXPECT_EQ(store.value("application/window/width").toInt(), 900);
    EXPECT_EQ(store.value("application/general/cameraInertia").toInt(), 0);
}

TEST_F(Program, TakesTheProjectionFromTheStore)
{
    QImage pictures[2];
    const int projections[2] = {1, 2};
    for (int i = 0; i < 2; ++i) {
        QSettings store(settingsFile(), QSettings::IniFormat);
        store.setValue("application/output/projection", projections[i]);
        store.sync();
        start({kSample});
        const QString name = QStringLiteral("projection-%1").arg(projections[i]);
        // The cube alone may be small under a wide projection; the plaza always fills the lower
        // half.
        EXPECT_TRUE(eventually([&] {
            pictures[i] = desktop.screenshot(name);
            const QColor c = pictures[i].pixelColor(640, 500);
            return c.red() > 80 && c.red() > c.blue() + 15;
        }));
        EXPECT_EQ(close(), 0);
    }
    int different = 0;
    for (int y = 0; y < pictures[0].height(); y += 4) {
        for (int x = 0; x < pictures[0].width(); x += 4)
            different += pictures[0].pixel(x, y) != pictures[1].pixel(x, y) ? 1 : 0;
    }
    EXPECT_GT(different, 5000);
}

TEST_F(Program, SettingsOfEveryCategoryAreThereAtTheNextStart)
{
    start({});
    openSettings();
    click(711, 307);                                           // output display: split screen
    click(569, 359);                                           // touch mode: off
    click(614, 466);                                           // image display duration: 31
    click(100, 322);                                           // to the last category
    click(478, 125);                                           // force opengl: on
    click(100, 122);                                           // and back to the first
    keys({"Tab", "Right", "shift+Tab"});                       // input type: cubemap
    keys({"Down", "Tab", "Tab", "Tab", "Left"});               // hardware decoding: on
    keys({"shift+Tab", "shift+Tab", "shift+Tab"});             // back to the categories
    keys({"Down", "Tab", "Up", "Up", "shift+Tab"});            // audio delay: 2
    keys({"Down", "Tab", "Right", "shift+Tab"});               // communication: master
    keys({"Down", "Down", "Tab", "Tab", "Left", "shift+Tab"}); // shared memory: on
    desktop.screenshot("settings-by-keys");
    keys({"shift+Tab", "Up", "Up", "Up", "Up", "Up", "Escape"});
    openSettings();
    desktop.screenshot("settings-again");
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(output(), QByteArray());

    for (int run = 0; run < 2; ++run) {
        EXPECT_EQ(stored("application/output/display").toString(), "split");
        EXPECT_FALSE(stored("application/general/touchMode").toBool());
        EXPECT_EQ(stored("application/playlist/imageDisplayDuration").toInt(), 31);
        EXPECT_TRUE(stored("application/advanced/forceopengl").toBool());
        EXPECT_EQ(stored("application/input/projection").toInt(), 2);
        EXPECT_TRUE(stored("vlc/hardwareDecoding").toBool());
        EXPECT_EQ(stored("vlc/audioDelay").toInt(), 2);
        EXPECT_EQ(stored("application/communication/state").toString(), "master");
        EXPECT_TRUE(stored("application/advanced/sharedmemory").toBool());
        if (run == 0) {
            start({});
            EXPECT_EQ(close(), 0);
        }
    }
}

TEST_F(Program, RestartsToApplyAndComesBackWithIt)
{
    start({});
    openSettings();
    click(100, 242); // master and slave
    click(660, 125); // communication: slave
    click(619, 229); // url decoding: movies
    desktop.screenshot("restart-to-apply");
    click(160, 65); // restart
    ASSERT_TRUE(player.waitForFinished(kPatienceMs));
    EXPECT_EQ(player.exitCode(), 123456789 & 0xff);
    EXPECT_EQ(stored("application/communication/state").toString(), "slave");
    EXPECT_EQ(stored("application/communication/urlMode").toInt(), 1);

    // The next program is nobody's child; a slave listens on its port.
    QString next;
    ASSERT_TRUE(eventually([&] {
        next = desktop.xdotool({"search", "--onlyvisible", "--name", "^Orbilens Player"});
        return !next.isEmpty();
    }));
    EXPECT_TRUE(eventually([] {
        QByteArray sockets;
        for (const char *table : {"/proc/net/udp", "/proc/net/udp6"}) {
            QFile file(table);
            if (file.open(QIODevice::ReadOnly))
                sockets += file.readAll();
        }
        return sockets.contains(":1E4B "); // 7755
    }));
    const QString pid = desktop.xdotool({"getwindowpid", next});
    desktop.xdotool({"windowactivate", "--sync", next, "key", "alt+F4"});
    EXPECT_TRUE(eventually([&] { return !QFile::exists("/proc/" + pid); }));
    EXPECT_EQ(stored("application/communication/state").toString(), "slave");
}

TEST_F(Program, AChordOpensTheCrashManager)
{
    start({});
    const auto reporter = [this] {
        return desktop.xdotool({"search", "--onlyvisible", "--class", "KCrashReporter_linux"});
    };
    desktop.xdotool({"windowactivate", "--sync", window, "keydown", "ctrl", "keydown", "shift",
                     "keydown", "c", "keyup", "c", "keydown", "h", "keyup", "h"});
    QThread::msleep(500);
    EXPECT_EQ(reporter(), "") << "one after the other is no chord";
    desktop.xdotool({"keydown", "c", "keydown", "h", "keyup", "c", "keyup", "h", "keyup", "shift",
                     "keyup", "ctrl"});
    ASSERT_TRUE(eventually([&] { return !reporter().isEmpty(); }));
    QThread::msleep(500);
    desktop.screenshot("crash-manager");
    desktop.xdotool({"windowactivate", "--sync", reporter(), "key", "Escape"});
    EXPECT_TRUE(eventually([&] { return reporter().isEmpty(); }));
    EXPECT_EQ(close(), 0);
}

TEST_F(Program, AKilledRunSavesNothing)
{
    start({kSample});
    player.kill();
    ASSERT_TRUE(player.waitForFinished(kPatienceMs));
    EXPECT_FALSE(QFile::exists(settingsFile()));
}

TEST_F(Program, StartsWithDefaultsFromADamagedStore)
{
    QDir().mkpath(QFileInfo(settingsFile()).path());
    QFile file(settingsFile());
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(QByteArray("[application\nwindow\\width=banana\n\xff\xfe%%%\0\0[]=;", 48));
    file.close();
    start({kSample});
    EXPECT_TRUE(
        eventually([&] { return findRedCube(desktop.screenshot("damaged-store")).pixels > 500; }));
    EXPECT_EQ(close(), 0);
}

TEST_F(Program, AnswersQuestionsWithoutADisplay)
{
    QProcessEnvironment environment = desktop.environment(home.path());
    environment.remove("DISPLAY");
    const struct
    {
        const char *argument;
        int status;
        const char *text;
    } rows[] = {{"--help", 0, "Udp mode, can be master or slave."},
                {"--version", 0, "Orbilens Player 2.3.1.400"}};
    for (const auto &row : rows) {
        player.setProcessEnvironment(environment);
        player.start(QStringLiteral(ORBILENS_PLAYER), {row.argument});
        ASSERT_TRUE(player.waitForFinished(kPatienceMs));
        EXPECT_EQ(player.exitCode(), row.status);
        EXPECT_TRUE(player.readAllStandardOutput().contains(row.text)) << row.argument;
    }
}

TEST_F(Program, RefusesAnUnknownOption)
{
    player.setProcessEnvironment(desktop.environment(home.path()));
    player.start(QStringLiteral(ORBILENS_PLAYER), {"--nonsense"});
    ASSERT_TRUE(player.waitForFinished(kPatienceMs));
    EXPECT_EQ(player.exitCode(), 2);
    EXPECT_TRUE(player.readAllStandardError().contains("nonsense"));
}
