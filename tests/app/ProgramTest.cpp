// The installed program driven from outside on a desktop of its own: what a person sees and does.

#include "support/Desktop.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDateTime>
#include <QDir>
#include <QSettings>
#include <QThread>

#include <algorithm>
#include <utility>

namespace {

const QString kSample = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");
const QString kFilm = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/turning.mp4");
// Of the window as it first comes up.
constexpr int kWidth = 1000;
constexpr int kHeight = 600;
constexpr int kPlayButtonWidth = 60;

int countOf(const QImage &image, QRgb colour)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixel(x, y) == colour ? 1 : 0;
    }
    return count;
}

struct Program : ::testing::Test
{
    void SetUp() override { ASSERT_TRUE(desktop.valid()) << "no X server could be started"; }

    /// Starts the player and waits for its window.
    void start(const QStringList &arguments)
    {
        player.setProcessEnvironment(desktop.environment(home.path()));
        player.setProcessChannelMode(QProcess::MergedChannels);
        player.start(QStringLiteral(ORBILENS_PLAYER), arguments);
        ASSERT_TRUE(player.waitForStarted(test::kPatienceMs));
        window = desktop.windowOf(player);
        ASSERT_FALSE(window.isEmpty());
    }

    /// Ends the player as a person does; returns its exit status.
    int close()
    {
        // A busy machine may still be putting the window up when the first key comes.
        for (int i = 0; i < 3 && player.state() != QProcess::NotRunning; ++i) {
            desktop.xdotool({"windowactivate", "--sync", window, "key", "alt+F4"});
            player.waitForFinished(test::kPatienceMs / 3);
        }
        if (player.state() != QProcess::NotRunning)
            return -1;
        return player.exitStatus() == QProcess::NormalExit ? player.exitCode() : -1;
    }

    void point(int x, int y) const
    {
        desktop.xdotool({"mousemove", "--window", window, QString::number(x), QString::number(y)});
    }

    /// Clicks and waits until what came of it stands still.
    void click(int x, int y) const
    {
        point(x, y);
        desktop.xdotool({"click", "1"});
        QImage last;
        EXPECT_TRUE(test::soon([&] {
            const QImage now = desktop.screenshot("clicked");
            return std::exchange(last, now) == now;
        }));
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
        ASSERT_TRUE(test::soon([this] {
            desktop.xdotool({"windowactivate", "--sync", window, "key", "ctrl+comma"});
            return countOf(desktop.screenshot("settings"), qRgb(0x00, 0xa2, 0xdd)) >= 4 * 30;
        }));
    }

    void store(const QVariantMap &values) const
    {
        QSettings file(settingsFile(), QSettings::IniFormat);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            file.setValue(value.key(), value.value());
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
    std::string output() { return test::complaints(player.readAll()); }

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

/// How far the timeline is filled: the bluest row of the screen, but for the play button's.
int playedColumns(const QImage &image)
{
    int most = 0;
    for (int y = 0; y < image.height(); ++y)
        most = std::max(most, countOf(image.copy(0, y, image.width(), 1), qRgb(0x00, 0xa3, 0xda)));
    return most > kPlayButtonWidth ? most : 0;
}

} // namespace

TEST_F(Program, ShowsTheStillLooksAroundAndKeepsItsSettings)
{
    store({{"application/general/cameraInertia", 0}});
    start({kSample});
    RedCube before;
    ASSERT_TRUE(test::soon([&] {
        before = findRedCube(desktop.screenshot("still"));
        return before.pixels > 500;
    })) << output();

    point(500, 300);
    desktop.xdotool({"mousedown", "1"});
    for (int x = 510; x <= 560; x += 10)
        point(x, 300);
    desktop.xdotool({"mouseup", "1"});
    RedCube dragged;
    EXPECT_TRUE(test::soon([&] {
        dragged = findRedCube(desktop.screenshot("dragged"));
        return dragged.column > before.column + 20;
    })) << "the picture follows the finger: "
        << before.column << " to " << dragged.column;

    for (int i = 0; i < 8; ++i)
        desktop.xdotool({"click", "5"});
    EXPECT_SOON(findRedCube(desktop.screenshot("zoomed")).pixels < dragged.pixels * 3 / 4)
        << "the wheel opens the field of view";

    desktop.xdotool({"windowsize", "--sync", window, "900", "500"});
    EXPECT_SOON(desktop.screenshot("resized").width() > 0);
    EXPECT_EQ(close(), 0);
    EXPECT_EQ(output(), "") << "a normal run says nothing";

    EXPECT_EQ(stored("application/window/width").toInt(), 900);
    EXPECT_EQ(stored("application/general/cameraInertia").toInt(), 0);
}

TEST_F(Program, PlaysADroppedFolderByMouseAndKeys)
{
    // Newest first: a still, a film, a still; with names that are no plain words.
    QTemporaryDir media;
    const QStringList names{"one #1 50%.jpg", "film d'\u00e9t\u00e9.mp4", "three.jpg"};
    for (int i = 0; i < names.size(); ++i) {
        QFile file(media.filePath(names[i]));
        ASSERT_TRUE(QFile::copy(i == 1 ? kFilm : kSample, file.fileName()));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(QDateTime::currentDateTime().addSecs(-i * 10),
                                     QFileDevice::FileModificationTime));
    }
    store({{"application/general/cameraInertia", 0},
           {"application/general/printSavePath", media.path()},
           {"application/playlist/imageDisplayDurationNone", true}});
    start({});
    const auto showsTitle = [&](int i) {
        return test::soon([&] {
            return QString::fromUtf8(desktop.xdotool({"getwindowname", window}).toLatin1())
                .endsWith('/' + names[i]);
        });
    };
    const auto cubeShows = [&](const char *name) {
        return test::soon([&] { return findRedCube(desktop.screenshot(name)).pixels > 500; });
    };
    QProcess files;
    files.setProcessEnvironment(desktop.environment(home.path()));
    files.start(QStringLiteral(ORBILENS_DRAG_SOURCE), {media.path()});
    ASSERT_TRUE(files.waitForStarted(test::kPatienceMs));
    const QString source = desktop.windowOf(files);
    ASSERT_FALSE(source.isEmpty());
    const auto drops = [&] {
        desktop.xdotool({"mousemove", "--window", source, "40", "40"});
        desktop.xdotool({"mousedown", "1"});
        // Two programs talk at each step, so it takes a hand's time.
        for (int x = 50; x < 110; x += 15) {
            QThread::msleep(100);
            desktop.xdotool({"mousemove", "--window", source, QString::number(x), "45"});
        }
        for (int x = 300; x <= 500; x += 50) {
            QThread::msleep(100);
            point(x, 300);
        }
        QThread::msleep(300);
        desktop.xdotool({"mouseup", "1"});
        return showsTitle(0);
    };
    EXPECT_TRUE(drops() || drops()) << "the first may be too quick for a busy machine";
    desktop.xdotool({"windowactivate", "--sync", window});
    ASSERT_TRUE(cubeShows("folder-dropped")) << player.readAll().toStdString();

    const int cube = findRedCube(desktop.screenshot("folder-dropped")).pixels;
    keys({"ctrl+3"});
    EXPECT_SOON(findRedCube(desktop.screenshot("folder-little-planet")).pixels < cube / 3);
    keys({"ctrl+1"});
    EXPECT_TRUE(cubeShows("folder-orvex"));
    keys({"ctrl+p"});
    EXPECT_TRUE(test::soon([&] {
        const QStringList taken = QDir(media.path()).entryList({"ORBLP_*.png"});
        return !taken.isEmpty() && findRedCube(QImage(media.filePath(taken[0]))).pixels > 500;
    })) << "a snapshot lies in the folder for them";

    keys({"alt+Right"});
    EXPECT_TRUE(showsTitle(1));
    // The bar stays up while the pointer is low; a click on its line seeks, also while paused.
    const int line = kHeight - 65;
    point(500, line);
    const auto seeks = [&](double to, const char *name) {
        point(int(kWidth * to), line);
        desktop.xdotool({"click", "1"});
        return test::soon([&] {
            const QImage screen = desktop.screenshot(name);
            return std::abs(playedColumns(screen) - kWidth * to) < kWidth / 20;
        });
    };
    EXPECT_SOON(playedColumns(desktop.screenshot("folder-film")) > 0);
    keys({"space"});
    EXPECT_TRUE(seeks(0.2, "folder-sought"));
    EXPECT_TRUE(seeks(0.8, "folder-sought-again"));

    keys({"ctrl+Up", "ctrl+alt+Down"}); // louder, and muted

    const auto filled = [&] {
        return desktop.xdotool({"getwindowgeometry", window}).contains("1280x800");
    };
    keys({"f"});
    EXPECT_TRUE(test::soon(filled));
    keys({"Escape"});
    EXPECT_SOON(!filled());

    keys({"alt+Right"});
    EXPECT_TRUE(showsTitle(2));
    keys({"alt+Right"});
    EXPECT_TRUE(showsTitle(0)) << "around the end";
    keys({"alt+Left"});
    EXPECT_TRUE(showsTitle(2));
    keys({"ctrl+q"});
    ASSERT_TRUE(player.waitForFinished(test::kPatienceMs));
    // The player answers the drop after it has taken it, so its source must not go before.
    files.terminate();
    EXPECT_TRUE(files.waitForFinished(test::kPatienceMs));
    EXPECT_EQ(player.exitCode(), 0);
    EXPECT_EQ(output(), "") << "a normal run says nothing";
    EXPECT_GT(stored("application/volume").toDouble(), 0.5) << "muting is not kept";
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
    ASSERT_TRUE(player.waitForFinished(test::kPatienceMs));
    EXPECT_EQ(player.exitCode(), 123456789 & 0xff);
    EXPECT_EQ(stored("application/communication/state").toString(), "slave");
    EXPECT_EQ(stored("application/communication/urlMode").toInt(), 1);

    // The next program is nobody's child; a slave listens on its port.
    QString next;
    ASSERT_TRUE(test::soon([&] {
        next = desktop.xdotool({"search", "--onlyvisible", "--name", "^Orbilens Player"});
        return !next.isEmpty();
    }));
    const QByteArray port = ":1E4B "; // 7755
    EXPECT_SOON(
        (test::readFile("/proc/net/udp") + test::readFile("/proc/net/udp6")).contains(port));
    const QString pid = desktop.xdotool({"getwindowpid", next});
    desktop.xdotool({"windowactivate", "--sync", next, "key", "alt+F4"});
    EXPECT_SOON(!QFile::exists("/proc/" + pid));
    EXPECT_EQ(stored("application/communication/state").toString(), "slave");
}

TEST_F(Program, AChordOpensTheCrashManager)
{
    start({});
    const auto reporter = [this] {
        return desktop.xdotool({"search", "--onlyvisible", "--class", "KCrashReporter_linux"});
    };
    desktop.xdotool({"windowactivate", "--sync", window, "keydown", "ctrl", "keydown", "shift",
                     "keydown", "c", "keyup", "c", "keydown", "h", "keyup", "h", "keyup", "shift",
                     "keyup", "ctrl"});
    QThread::msleep(500);
    EXPECT_EQ(reporter(), "") << "one after the other is no chord";
    const auto chordOpensIt = [&] {
        desktop.xdotool({"windowactivate", "--sync", window, "keydown", "ctrl", "keydown", "shift",
                         "keydown", "c", "keydown", "h", "keyup", "c", "keyup", "h", "keyup",
                         "shift", "keyup", "ctrl"});
        return test::soon([&] { return !reporter().isEmpty(); });
    };
    ASSERT_TRUE(chordOpensIt() || chordOpensIt()) << "the first may come before the focus";
    QThread::msleep(500);
    desktop.screenshot("crash-manager");
    desktop.xdotool({"windowactivate", "--sync", reporter(), "key", "Escape"});
    EXPECT_SOON(reporter().isEmpty());
    EXPECT_EQ(close(), 0);
}

TEST_F(Program, AnswersQuestionsWithoutADisplayAndRefusesUnknownOptions)
{
    QProcessEnvironment environment = desktop.environment(home.path());
    environment.remove("DISPLAY");
    const std::tuple<const char *, int, const char *> rows[] = {
        {"--help", 0, "Udp mode, can be master or slave."},
        {"--version", 0, "Orbilens Player 2.3.1.400"},
        {"--nonsense", 2, "nonsense"}};
    player.setProcessChannelMode(QProcess::MergedChannels);
    for (const auto &[argument, status, text] : rows) {
        if (status != 0)
            environment = desktop.environment(home.path());
        player.setProcessEnvironment(environment);
        player.start(QStringLiteral(ORBILENS_PLAYER), {argument});
        ASSERT_TRUE(player.waitForFinished(test::kPatienceMs));
        EXPECT_EQ(player.exitCode(), status);
        EXPECT_TRUE(player.readAll().contains(text)) << argument;
    }
}
