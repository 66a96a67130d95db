// A long evening with the player at an accelerated pace: whatever is opened, sought, resized and
// switched, what it holds at rest stays the same and nothing is complained of.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/KQQuickView.h"
#include "render/KTextureProvider.h"
#include "settings/KSettings.h"
#include "soak/Footprint.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QElapsedTimer>
#include <QImage>
#include <QOffscreenSurface>
#include <QOpenGLContext>
#include <QProcess>
#include <QQuickItem>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>

#include <algorithm>
#include <cstdio>

namespace {

constexpr int kDefaultMinutes = 60;
constexpr int kPatienceMs = 60000;
constexpr QSize kRestSize(900, 600);
const QString kPanorama = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");
const char *const kPopups[] = {"PopupAbout",    "PopupAboutThirdParty", "PopupAudioSync",
                               "PopupOpenFile", "PopupSoftwareLog",     "PopupStereoConfig"};

/// Clips and stills of several kinds beside the samples.
QStringList makeMedia(const QDir &folder)
{
    QStringList media{kPanorama, QStringLiteral(ORBILENS_SOURCE_DIR "/samples/turning.mp4")};
    const struct
    {
        const char *name;
        QStringList codec;
    } clips[] = {{"small.mp4", {"-c:v", "libx264", "-pix_fmt", "yuv420p", "-c:a", "aac"}},
                 {"fields.mkv", {"-c:v", "mpeg4", "-c:a", "libvorbis"}},
                 {"full.avi", {"-c:v", "mjpeg", "-pix_fmt", "yuvj422p", "-an"}}};
    for (const auto &clip : clips) {
        media += folder.filePath(clip.name);
        const QStringList source{"-v", "error",
                                 "-f", "lavfi",
                                 "-i", "testsrc2=s=640x320:r=25:d=4",
                                 "-f", "lavfi",
                                 "-i", "sine=frequency=300:duration=4"};
        EXPECT_EQ(QProcess::execute("ffmpeg", source + clip.codec + QStringList(media.last())), 0);
    }
    for (const char *name : {"tall.png", "wide.bmp", "small.jpg"}) {
        QImage still(1024 + 8 * media.size(), 512, QImage::Format_RGB32);
        still.fill(QColor::fromHsv(40 * media.size(), 200, 200));
        media += folder.filePath(name);
        EXPECT_TRUE(still.save(media.last()));
    }
    return media;
}

class Soak : public ::testing::Test
{
protected:
    void SetUp() override
    {
        application->init();
        ASSERT_NE(application->view()->rootObject(), nullptr);
        view = application->view();
        camera = application->globalObject();
        ASSERT_TRUE(QTest::qWaitForWindowExposed(view));
        ASSERT_TRUE(folder.isValid());
        media = makeMedia(QDir(folder.path()));
        ASSERT_TRUE(QTest::qWaitFor([this] { return application->glContext() != nullptr; }));
        surface.setFormat(application->glContext()->format());
        surface.create();
        context.setFormat(application->glContext()->format());
        context.setShareContext(application->glContext());
        ASSERT_TRUE(context.create());
    }

    int any(int count) { return int(random.bounded(count)); }
    bool maybe() { return any(2) == 0; }

    void wait() { QTest::qWait(40 + any(160)); }

    void showPopup(const char *name)
    {
        emit view->displayPopup(QStringLiteral("qrc:/qml/popup/%1.qml").arg(name));
    }

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
        switch (any(13)) {
        case 0:
            camera->openFiles(media, maybe());
            break;
        case 1:
            camera->openFile(media.at(any(media.size())));
            break;
        case 2:
        case 3:
            camera->playListSetNext();
            break;
        case 4:
            camera->playListSetPrevious();
            break;
        case 5: {
            const QObject *player = camera->mediaPlayer();
            loader("seek", any(qMax(1, player->property("duration").toInt())));
            break;
        }
        case 6:
            loader("playPause");
            break;
        case 7:
            settings->set("instance/output/projection", any(4));
            break;
        case 8:
            settings->set("instance/input/projection", any(5));
            settings->set("instance/input/stereoscopy", any(6));
            break;
        case 9:
            view->resize(640 + any(600), 460 + any(300));
            break;
        case 10: {
            const char *popup = kPopups[any(std::size(kPopups))];
            showPopup(popup);
            wait();
            showPopup(popup);
            break;
        }
        case 11:
            changeState("Settings");
            wait();
            changeState("Video");
            break;
        case 12:
            camera->interpolateValue("yaw", float(any(6)) - 3, 100);
            camera->interpolateValue("fov", 30 + float(any(200)), 100);
            settings->set("instance/output/display", maybe() ? "split" : "standard");
            break;
        }
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
        EXPECT_TRUE(QTest::qWaitFor(
            [&] {
                return textures->textureId() > 0 && textures->textureSize() == QSize(4096, 2048) &&
                       view->size() == kRestSize;
            },
            kPatienceMs));
        // What is deleted later, and threads that end, need a moment.
        QTest::qWait(1500);
        return test::Footprint::take(&context, &surface);
    }

    Application *application = static_cast<Application *>(qApp);
    KQQuickView *view = nullptr;
    KGlobalObject *camera = nullptr;
    QTemporaryDir folder;
    QStringList media;
    QOffscreenSurface surface;
    QOpenGLContext context;
    QRandomGenerator random{1};
    // Panels are loaded in pieces while frames are drawn, and Qt's own controls ask for parts of
    // themselves before these have come.
    test::WarningGuard guard{{R"(QtQuick/Controls/\w+\.qml:\d+: TypeError: .*\bnull\b)"}};
};

/// The middle value of a member over a stretch of a run.
template <class Number>
Number middle(const QVector<test::Footprint> &rows, int from, int to,
              Number test::Footprint::*member)
{
    QVector<Number> values;
    for (int i = from; i < to; ++i)
        values += rows.at(i).*member;
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
        std::printf("%4lld s, %d actions: %s\n", static_cast<long long>(timer.elapsed() / 1000),
                    actions, qPrintable(rows.last().text()));
        std::fflush(stdout);
        ASSERT_TRUE(guard.unexpected().isEmpty()) << "in the round before";
    }

    // Caches fill in the first quarter: libraries, shaders, pictures of the interface.
    const int quarter = rows.size() / 4;
    const auto growth = [&](auto member) {
        return middle(rows, rows.size() - quarter, rows.size(), member) -
               middle(rows, quarter, 2 * quarter, member);
    };
    using test::Footprint;
    const qint64 before = middle(rows, quarter, 2 * quarter, &Footprint::memory);
    EXPECT_LE(growth(&Footprint::memory), before / 20);
    EXPECT_LE(growth(&Footprint::threads), 1);
    EXPECT_LE(growth(&Footprint::handles), 2);
    EXPECT_LE(growth(&Footprint::textures), 1);
    EXPECT_LE(growth(&Footprint::buffers), 2);
    EXPECT_LE(growth(&Footprint::renderbuffers), 0);
    EXPECT_LE(growth(&Footprint::shaders), 2);
    EXPECT_LE(growth(&Footprint::programs), 1);
}
