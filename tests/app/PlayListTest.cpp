#include "MovParserLib/MovBytes.h"
#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "app/PlayListReader.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"
#include "support/Files.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

namespace {

/// What the scene's loader offers by name, and a record of what it was asked.
class Loader : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QObject *mediaPlayer READ mediaPlayer CONSTANT)

public:
    QObject *mediaPlayer() { return &m_player; }
    QStringList calls;
    /// Has the metadata of what opens read, as the scene's loader does.
    KGlobalObject *reader = nullptr;

    Q_INVOKABLE void processFileSource(const QVariant &source, const QVariant &clear,
                                       const QVariant &error, const QVariant &drop)
    {
        calls.append(QStringLiteral("open %1%2%3%4")
                         .arg(source.toUrl().fileName(),
                              clear.toBool() ? QStringLiteral(" clear") : QString(),
                              error.toString().isEmpty() ? QString() : " !" + error.toString(),
                              drop.toBool() ? QStringLiteral(" drop") : QString()));
        if (reader)
            reader->readMetaData(source);
    }
    Q_INVOKABLE void destroyVideoPlayer() { calls.append("destroy"); }
    Q_INVOKABLE void play() { calls.append("play"); }
    Q_INVOKABLE void stop() { calls.append("stop"); }

private:
    QObject m_player;
};

struct PlayList : ::testing::Test
{
    PlayList()
    {
        application->settings()->set("application/general/loopMode", KGlobalObject::LoopList);
        application->setGlobalObject(std::make_unique<KGlobalObject>(application));
        list = application->globalObject();
        list->setMediaLoader(&loader);
    }
    ~PlayList() override { application->setGlobalObject(nullptr); }

    QString write(const QString &name, const QByteArray &text = "x")
    {
        return test::writeFile(folder.filePath(name), text);
    }

    QStringList taken()
    {
        QStringList calls;
        calls.swap(loader.calls);
        return calls;
    }

    Application *application = static_cast<Application *>(qApp);
    QTemporaryDir folder;
    Loader loader;
    KGlobalObject *list = nullptr;
};

} // namespace

TEST_F(PlayList, ASingleMediumIsNoPlaylist)
{
    list->openFile(folder.filePath("one.jpg"), true);
    EXPECT_EQ(taken(), QStringList{"open one.jpg drop"});
    EXPECT_TRUE(list->playListIsEmpty());
    EXPECT_TRUE(list->getPlayList().isEmpty());
    EXPECT_EQ(list->playListIndex(), -1);
    list->playListSetNext();
    list->playListSetNext(false);
    list->playListSetPrevious();
    list->openFiles(QStringList());
    EXPECT_TRUE(taken().isEmpty());
}

TEST_F(PlayList, StepsFollowTheLoopMode)
{
    list->openFiles(QStringList{"/a.jpg", "/b.jpg", "/c.jpg"});
    EXPECT_EQ(taken(), QStringList{"open a.jpg"});
    EXPECT_EQ(list->getPlayListNames(), (QStringList{"a.jpg", "b.jpg", "c.jpg"}));
    list->playListSetPrevious();
    EXPECT_EQ(list->playListIndex(), 2);
    QSignalSpy end(list, &KGlobalObject::endOfPlaylistReached);

    const std::tuple<int, bool, int, int, int, QStringList> rows[] = {
        {KGlobalObject::NoLoop, false, 0, 1, 0, {"open b.jpg"}},
        {KGlobalObject::NoLoop, false, 2, 2, 1, {}},
        {KGlobalObject::NoLoop, true, 2, 0, 0, {"open a.jpg"}},
        {KGlobalObject::LoopList, false, 2, 0, 0, {"open a.jpg"}},
        {KGlobalObject::LoopMedium, false, 1, 1, 0, {"open b.jpg"}},
        {KGlobalObject::LoopMedium, true, 1, 2, 0, {"open c.jpg"}}};
    for (const auto &[loopMode, force, from, to, ends, calls] : rows) {
        application->settings()->set("instance/general/loopMode", loopMode);
        list->setPlayListIndex(from);
        taken();
        end.clear();
        list->playListSetNext(force);
        EXPECT_EQ(list->playListIndex(), to);
        EXPECT_EQ(end.count(), ends);
        EXPECT_EQ(taken(), calls);
    }
}

TEST_F(PlayList, PlaylistFilesGiveMediaOrAnError)
{
    const std::tuple<QByteArray, QStringList, int> rows[] = {
        {"nonsense", {"open  !Error : cannot parse json"}, 0},
        {"{}", {"open  !Error : json is not an array"}, 0},
        {"[]", {"open  !Error : json is empty"}, 0},
        {"[{\"media\":\"a.jpg\"}]", {"open a.jpg"}, 0},
        {"\xEF\xBB\xBF[{\"media\":\"bom.jpg\"}]", {"open bom.jpg"}, 0},
        {"", {"open  !Error : cannot parse json"}, 0},
        // It names itself, which is opened like any medium and never read again.
        {"[{\"media\":\"list.orpl\"},{\"media\":\"list.orpl\"}]", {"open list.orpl"}, 2},
        {"[7,{\"media\":5}]", {QString("open ") + QDir(folder.path()).dirName()}, 2},
        {"[{\"media\":\"a.jpg\",\"stereo\":\"OverUnder\",\"logo\":\"l.png\",\"thumb\":\"t.png\"},"
         "{\"media\":\"/abs/b.jpg\"}]",
         {"open a.jpg"},
         2}};
    for (const auto &[json, calls, entries] : rows) {
        list->openFile(write("list.orpl", json));
        EXPECT_EQ(taken(), calls);
        EXPECT_EQ(list->getPlayList().size(), entries) << json.toStdString();
    }
    const QUrl first = QUrl::fromLocalFile(folder.filePath("a.jpg"));
    const QUrl second = QUrl::fromLocalFile("/abs/b.jpg");
    EXPECT_EQ(list->getPlayList(), (QList<QUrl>{first, second}));
    EXPECT_EQ(list->getStereoConfig(first), "OverUnder");
    EXPECT_EQ(list->getDynamicLogo(first), QUrl::fromLocalFile(folder.filePath("l.png")));
    EXPECT_EQ(list->getThumb(first), QUrl::fromLocalFile(folder.filePath("t.png")));
    EXPECT_TRUE(list->getThumb(second).isEmpty());

    // A pipe would never end.
    ASSERT_EQ(mkfifo(QFile::encodeName(folder.filePath("pipe.orpl")), 0600), 0);
    ASSERT_TRUE(QDir(folder.path()).mkdir("folder.orpl"));
    for (const char *name : {"missing.orpl", "pipe.orpl", "folder.orpl"}) {
        list->openFile(folder.filePath(name));
        EXPECT_EQ(taken(), QStringList{"open  !Error : cannot open file .orpl"}) << name;
        EXPECT_TRUE(list->getPlayList().isEmpty());
    }

    QByteArray many = "[";
    for (int i = 0; i < 100000; ++i)
        many += "{\"media\":\"clip " + QByteArray::number(i) + ".mp4\",\"stereo\":\"None\"},";
    many.back() = ']';
    list->openFile(write("many.orpl", many));
    list->playListSetPrevious();
    EXPECT_EQ(taken(), (QStringList{"open clip 0.mp4", "open clip 99999.mp4"}));
}

TEST_F(PlayList, NamesOfAnyKindStayWhatTheyAre)
{
    for (const char *name :
         {"a b.jpg", "a#b.jpg", "50%25.jpg", "100%.jpg", "a?b=c&d.jpg", "\"quoted\" 'twice'.jpg",
          "Z\xC3\xBCrich \xE6\x97\xA5\xE6\x9C\xAC.jpg"}) {
        const QString path = write(QString::fromUtf8(name));
        const QString thumb = write(QString::fromUtf8(name).chopped(3) + "png");
        QJsonObject entry{{"media", QString::fromUtf8(name)}};
        const QByteArray json = QJsonDocument(QJsonArray{entry, entry}).toJson();
        for (const QStringList &opened : {QStringList{path, path}, {write("names.orpl", json)}}) {
            list->openFiles(opened);
            const QUrl medium = list->getPlayList().value(0);
            EXPECT_EQ(medium.toLocalFile(), path);
            EXPECT_TRUE(list->isImageFile(medium)) << name;
            EXPECT_EQ(list->getThumb(medium).toLocalFile(), thumb);
        }
    }
}

TEST_F(PlayList, DirectoriesGiveTheirFilesNewestFirstUpToALimit)
{
    list->openFile(folder.path());
    EXPECT_EQ(taken(), QStringList{"open  !Error : Directory is empty"});

    const QDateTime start = QDateTime::currentDateTime();
    for (const auto &[name, age] : {std::pair{"old.jpg", 30}, {"new.jpg", 10}, {"mid.jpg", 20}}) {
        QFile file(write(name));
        ASSERT_TRUE(file.open(QIODevice::ReadWrite));
        ASSERT_TRUE(file.setFileTime(start.addSecs(-age), QFileDevice::FileModificationTime));
    }
    list->openFile(folder.path());
    EXPECT_EQ(list->getPlayListNames(), (QStringList{"new.jpg", "mid.jpg", "old.jpg"}));

    for (int i = 3; i < PlayListReader::kDirectoryLimit - 1; ++i)
        write(QStringLiteral("f%1.jpg").arg(i));
    EXPECT_EQ(PlayListReader::readDirectory(folder.path()).media.size(), 999);
    write("one too many.jpg");
    EXPECT_EQ(PlayListReader::readDirectory(folder.path()).error,
              "Error : Cannot load more than 1000 files in a directory");
}

TEST_F(PlayList, MediaAreRecognisedByTheirSuffix)
{
    const std::tuple<const char *, bool, int> rows[] = {
        {"file:///a.JPG", true, 0},       {"file:///a.png", true, 0},  {"file:///a.mp4", false, 1},
        {"file:///a.MKV", false, 1},      {"file:///a.yuv", false, 2}, {"file:///mp4", false, 0},
        {"http://host/s.m3u8", false, 1}, {"file:///a.b/c", false, 0}, {"", false, 0}};
    for (const auto &[text, image, video] : rows) {
        const QUrl url(text);
        EXPECT_EQ(list->isImageFile(url), image) << text;
        EXPECT_EQ(list->isVideoFile(url), video) << text;
    }
    EXPECT_EQ(list->getSupportedVideoFormats().size(), 25);
    EXPECT_EQ(list->checkFilePath(QUrl("qrc:/a.jpg")), QUrl("file:/a.jpg"));
    EXPECT_EQ(list->checkFilePath(QUrl("http://h/a.jpg")), QUrl("http://h/a.jpg"));
}

TEST_F(PlayList, StillsAdvanceByTheirTimer)
{
    KSettings *settings = application->settings();
    settings->set("application/playlist/imageDisplayDuration", 0.05);
    list->openFiles(QStringList{"/a.jpg", "/b.jpg"});
    list->startTimerNextImage();
    EXPECT_SOON(list->playListIndex() == 1);

    // Paused, nothing moves; resumed, the still keeps three seconds.
    list->startTimerNextImage();
    list->pauseTimerNextImage();
    QTest::qWait(120);
    EXPECT_EQ(list->playListIndex(), 1);
    list->resumeTimerNextImage();
    QTest::qWait(120);
    EXPECT_EQ(list->playListIndex(), 1);

    settings->set("application/playlist/imageDisplayDurationNone", true);
    list->clearPlayList();
    taken();
    list->startTimerNextImage();
    QTest::qWait(120);
    EXPECT_TRUE(taken().isEmpty());
    settings->set("application/playlist/imageDisplayDurationNone", false);
    for (const int mode : {KGlobalObject::NoLoop, KGlobalObject::LoopMedium}) {
        settings->set("instance/general/loopMode", mode);
        list->startTimerNextImage();
        EXPECT_SOON(!loader.calls.isEmpty());
        EXPECT_EQ(taken(), QStringList{mode == KGlobalObject::NoLoop ? "stop" : "play"});
    }
}

TEST_F(PlayList, AFilmIsSeenAsItTellsWhereTheSettingsAreAutomatic)
{
    using namespace test;
    using K = KShaderCodeBuilder;
    const auto film = [](const Bytes &description) {
        TrackParts parts;
        parts.descriptionChildren = description;
        return movie(track(parts));
    };
    const auto sphere = [](const Bytes &projection) {
        const Bytes turned = fullAtom("prhd", u32(90U << 16) + zeros(8));
        return atom("sv3d", fullAtom("svhd", zeros(1)) + atom("proj", turned + projection));
    };
    const Bytes overUnder = fullAtom("st3d", u8(1));
    const Bytes plain = film(""), cube = film(overUnder + sphere(fullAtom("cbmp", zeros(8))));
    const Bytes equi = film(overUnder + sphere(fullAtom("equi", zeros(16))));
    // The playlist names the stereo mode; null: opened alone. Angles in degrees.
    const std::tuple<const char *, Bytes, const char *, int, int, float, float> rows[] = {
        {"cube.mp4", cube, nullptr, K::CUBEMAP, K::STEREO_3D_OVERUNDER, 90, 90},
        {"plain.mov", plain, nullptr, K::STANDARD, K::STEREO_2D, 0, 180},
        {"listed.mp4", equi, "SideBySide", K::EQUIRECTANGULAR, K::STEREO_3D_SIDEBYSIDE, 90, 90},
        {"silent.mp4", equi, "", K::EQUIRECTANGULAR, K::STEREO_3D_OVERUNDER, 90, 90},
        // What tells nothing is a panorama: a damaged film, a stream's form, a picture.
        {"cut.mp4", cube.substr(0, 60), nullptr, K::EQUIRECTANGULAR, K::STEREO_2D, 0, 90},
        {"film.mkv", "no atoms", nullptr, K::EQUIRECTANGULAR, K::STEREO_2D, 0, 90},
        {"still.jpg", cube, nullptr, K::EQUIRECTANGULAR, K::STEREO_2D, 0, 90},
        {"chosen.mp4", cube, nullptr, K::FISHEYE_CIRCLE, K::STEREO_3D_SIDEBYSIDE_INVERTED, 90, 90}};
    application->setShaderBuilder(std::make_unique<K>(application));
    loader.reader = list;
    testing::internal::CaptureStderr(); // the parser's own words about the damaged ones
    for (const auto &[name, bytes, listed, projection, stereo, yaw, fov] : rows) {
        SCOPED_TRACE(name);
        const bool chosen = projection == K::FISHEYE_CIRCLE;
        KSettings *settings = application->settings();
        settings->set("instance/input/projection", chosen ? projection : int(K::AUTO));
        settings->set("instance/input/stereoscopy", chosen ? stereo : int(K::STEREO_AUTO));
        QString opened = write(name, QByteArray::fromStdString(bytes));
        if (listed) {
            const auto json = QStringLiteral(R"([{"media":"%1","stereo":"%2"},{"media":"x.mp4"}])");
            opened = write("list.orpl", json.arg(name, listed).toUtf8());
        }
        list->openFile(opened);
        EXPECT_EQ(application->shaderBuilder()->projectionSource(), projection);
        EXPECT_EQ(application->shaderBuilder()->stereoMode(), stereo);
        EXPECT_NEAR(list->yaw(), yaw * 3.14159265F / 180, 1e-4);
        EXPECT_EQ(list->fov(), fov);
    }
    testing::internal::GetCapturedStderr();
    application->setShaderBuilder(nullptr);
}

TEST_F(PlayList, EndingDestroysThePlayerFirst)
{
    list->quit();
    list->restart();
    EXPECT_EQ(taken(), (QStringList{"destroy", "destroy"}));
}

#include "PlayListTest.moc"
