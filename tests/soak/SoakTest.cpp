// A long evening with the player at an accelerated pace: whatever is opened, sought, resized and
// switched, what it holds at rest stays the same and nothing is complained of.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "support/Footprint.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QProcess>
#include <QQuickItem>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>
#include <functional>

namespace {

constexpr int kDefaultMinutes = 60;
constexpr QSize kRestSize(900, 600);
const QString kPanorama = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");
const char *const kPopups[] = {"PopupAbout",    "PopupAboutThirdParty", "PopupAudioSync",
                               "PopupOpenFile", "PopupSoftwareLog",     "PopupStereoConfig"};

/// Clips and stills of several kinds beside the samples.
QStringList makeMedia(const QDir &folder)
{
    QStringList media{kPanorama, QStringLiteral(ORBILENS_SOURCE_DIR "/samples/turning.mp4")};
    const std::tuple<const char *, QStringList> clips[] = {
        {"small.mp4", {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}},
        {"fields.mkv", {"-c:v", "mpeg4", "-c:a", "libvorbis"}},
        {"full.avi", {"-c:v", "mjpeg", "-pix_fmt", "yuvj422p", "-an"}}};
    for (const auto &[name, codec] : clips) {
        media += folder.filePath(name);
        const QStringList source{"-v", "error",
                                 "-f", "lavfi",
                                 "-i", "testsrc2=s=640x320:r=25:d=4",
                                 "-f", "lavfi",
                                 "-i", "sine=frequency=300:duration=4"};
        EXPECT_EQ(QProcess::execute("ffmpeg", source + codec + QStringList(media.last())), 0);
    }
    for (const char *name : {"tall.png", "wide.bmp", "small.jpg"}) {
        QImage still(1024 + 8 * media.size(), 512, QImage::Format_RGB32);
        still.fill(QColor::fromHsv(40 * media.size(), 200, 200));
        media += folder.filePath(name);
        EXPECT_TRUE(still.save(media.last()));
    }
    return media;
}

struct Soak : ::testing::Test
{
    void SetUp() override
    {
        application->init();
        ASSERT_NE(application->view()->rootObject(), nullptr);
        view = application->view();
        camera = application->globalObject();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
        ASSERT_TRUE(folder.isValid());
        media = makeMedia(QDir(folder.path()));
        ASSERT_SOON(application->glContext() != nullptr);
    }

    int any(int count) { return int(random.bounded(count)); }
    bool maybe() { return any(2) == 0; }

    void wait() { QTest::qWait(40 + any(160)); }

    void changeState(const char *state)
    {
        QMetaObject::invokeMethod(view->rootObject(), "changeState", Q_ARG(QVariant, state),
                                  Q_ARG(QVariant, QString()));
    }

    void loader(const char *method, const QVariant &argument = QVariant())
    {
        QMetaObject::invokeMethod(camera->mediaLoader(), method,
                                  argument.isValid() ? Q_ARG(QVariant, argument)
                                                     : QGenericArgument());
    }

    void act()
    {
        KSettings *settings = application->settings();
        const std::function<void()> acts[] = {
            [&] { camera->openFiles(media, maybe()); },
            [&] { camera->openFile(media.at(any(media.size()))); },
            [&] { camera->playListSetNext(); },
            [&] { camera->playListSetNext(); },
            [&] { camera->playListSetPrevious(); },
            [&] {
                const int duration = camera->mediaPlayer()->property("duration").toInt();
                loader("seek", any(qMax(1, duration)));
            },
            [&] { loader("playPause"); },
            [&] { settings->set("instance/output/projection", any(4)); },
            [&] {
                settings->set("instance/input/projection", any(5));
                settings->set("instance/input/stereoscopy", any(6));
            },
            [&] { view->resize(640 + any(600), 460 + any(300)); },
            [&] {
                const QString popup = kPopups[any(std::size(kPopups))];
                for (int i = 0; i < 2; ++i) {
                    emit view->displayPopup(QStringLiteral("qrc:/qml/popup/%1.qml").arg(popup));
                    wait();
                }
            },
            [&] {
                changeState("Settings");
                wait();
                changeState("Video");
            },
            [&] {
                camera->interpolateValue("yaw", float(any(6)) - 3, 100);
                camera->interpolateValue("fov", 30 + float(any(200)), 100);
                settings->set("instance/output/display", maybe() ? "split" : "standard");
            }};
        acts[any(std::size(acts))]();
    }

    /// The same still in the same window, whatever came before.
    test::Footprint atRest()
    {
        KSettings *settings = application->settings();
        changeState("Video");
        settings->set("instance/output/projection", 0);
        settings->set("instance/input/projection", 4);
        settings->set("instance/input/stereoscopy", 5);
        settings->set("instance/output/display", "standard");
        view->resize(kRestSize);
        camera->openFile(kPanorama);
        const KTextureProvider *textures = application->textureProvider();
        EXPECT_SOON(textures->textureId() > 0 && textures->textureSize() == QSize(4096, 2048) &&
                    view->size() == kRestSize);
        // What is deleted later, and threads that end, need a moment.
        QTest::qWait(1500);
        return test::takeFootprint(application->sharedGlContext());
    }

    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = nullptr;
    KGlobalObject *camera = nullptr;
    QTemporaryDir folder;
    QStringList media;
    QRandomGenerator random{1};
    // Panels are loaded in pieces while frames are drawn, and Qt's own controls ask for parts of
    // themselves before these have come.
    test::WarningGuard guard{{R"(QtQuick/Controls/\w+\.qml:\d+: TypeError: .*\bnull\b)"}};
};

/// The middle value of something over a stretch of a run.
qint64 middle(const QVector<test::Footprint> &rows, int from, int to, const QString &what)
{
    QVector<qint64> values;
    for (int i = from; i < to; ++i)
        values += rows.at(i).value(what);
    std::sort(values.begin(), values.end());
    return values.at(values.size() / 2);
}

} // namespace

TEST_F(Soak, HoldsAtTheEndWhatItHeldInTheBeginning)
{
    constexpr int kActionsPerRound = 40;
    constexpr int kFewestRounds = 8;
    bool given = false;
    const double minutes = qEnvironmentVariable("ORBILENS_SOAK_MINUTES").toDouble(&given);
    const qint64 length = qint64((given ? minutes : kDefaultMinutes) * 60000);

    QVector<test::Footprint> rows;
    QElapsedTimer timer;
    timer.start();
    int actions = 0;
    while (timer.elapsed() < length || rows.size() < kFewestRounds) {
        for (int i = 0; i < kActionsPerRound; ++i, ++actions) {
            act();
            wait();
        }
        rows += atRest();
        std::printf("%4lld s, %d actions:", timer.elapsed() / 1000LL, actions);
        for (auto held = rows.last().cbegin(); held != rows.last().cend(); ++held)
            std::printf(" %lld %s", held.value(), qPrintable(held.key()));
        std::printf("\n");
        std::fflush(stdout);
        ASSERT_TRUE(guard.unexpected().isEmpty()) << "in the round before";
    }

    // Caches fill in the first quarter: libraries, shaders, pictures of the interface.
    const int quarter = rows.size() / 4;
    const qint64 memory = middle(rows, quarter, 2 * quarter, "KiB");
    const std::pair<const char *, qint64> limits[] = {
        {"KiB", memory / 20}, {"threads", 1},       {"handles", 2}, {"textures", 1},
        {"buffers", 2},       {"renderbuffers", 0}, {"shaders", 2}, {"programs", 1}};
    for (const auto &[what, limit] : limits)
        EXPECT_LE(middle(rows, rows.size() - quarter, rows.size(), what) -
                      middle(rows, quarter, 2 * quarter, what),
                  limit)
            << what;
}
