// How a film is to be seen, from the file itself: automatic settings follow what the file and its
// playlist say, chosen ones do not.

#include "MovParserLib/MovBytes.h"
#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "render/KShaderCodeBuilder.h"
#include "settings/KSettings.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QTemporaryDir>

using K = KShaderCodeBuilder;
using namespace test;

namespace {

/// Has the metadata of what is opened read, as the scene's loader does.
class ReadingLoader : public QObject
{
    Q_OBJECT

public:
    explicit ReadingLoader(KGlobalObject *list)
        : m_list(list)
    {}
    Q_INVOKABLE void processFileSource(const QVariant &source, const QVariant &, const QVariant &,
                                       const QVariant &)
    {
        m_list->readMetaData(source);
    }

private:
    KGlobalObject *m_list;
};

Bytes sphere(const Bytes &projection)
{
    const Bytes turned = fullAtom("prhd", u32(90U << 16) + zeros(8));
    return atom("sv3d", fullAtom("svhd", zeros(1)) + atom("proj", turned + projection));
}

Bytes film(const Bytes &description)
{
    TrackParts parts;
    parts.descriptionChildren = description;
    return movie(track(parts));
}

const Bytes kStereo = fullAtom("st3d", u8(1));
const Bytes kEqui = sphere(fullAtom("equi", zeros(16)));
const Bytes kCube = sphere(fullAtom("cbmp", zeros(8)));

} // namespace

TEST(MediaResolution, FollowsTheFileWhereTheSettingsAreAutomatic)
{
    auto *application = static_cast<Application *>(qApp);
    KSettings *settings = application->settings();
    application->setShaderBuilder(std::make_unique<K>(application));
    application->setGlobalObject(std::make_unique<KGlobalObject>(application));
    KGlobalObject *list = application->globalObject();
    ReadingLoader loader(list);
    list->setMediaLoader(&loader);
    K *builder = application->shaderBuilder();
    QTemporaryDir folder;

    const struct
    {
        const char *name;
        Bytes bytes;
        const char *playlistStereo; // null: opened alone
        int projectionSetting, stereoSetting;
        int projection, stereo;
        float yaw, fov; // degrees
    } rows[] = {{"cube.mp4", film(kStereo + kCube), nullptr, K::AUTO, K::STEREO_AUTO, K::CUBEMAP,
                 K::STEREO_3D_OVERUNDER, 90, 90},
                {"sphere.mov", film(kEqui), nullptr, K::AUTO, K::STEREO_AUTO, K::EQUIRECTANGULAR,
                 K::STEREO_2D, 90, 90},
                {"plain.mp4", film({}), nullptr, K::AUTO, K::STEREO_AUTO, K::STANDARD, K::STEREO_2D,
                 0, 180},
                {"chosen.mp4", film(kStereo + kCube), nullptr, K::FISHEYE_CIRCLE,
                 K::STEREO_3D_SIDEBYSIDE_INVERTED, K::FISHEYE_CIRCLE,
                 K::STEREO_3D_SIDEBYSIDE_INVERTED, 90, 90},
                {"listed.mp4", film(kStereo + kEqui), "SideBySide", K::AUTO, K::STEREO_AUTO,
                 K::EQUIRECTANGULAR, K::STEREO_3D_SIDEBYSIDE, 90, 90},
                {"silent.mp4", film(kStereo + kEqui), "", K::AUTO, K::STEREO_AUTO,
                 K::EQUIRECTANGULAR, K::STEREO_3D_OVERUNDER, 90, 90},
                // What tells nothing is a panorama: a damaged film, a stream's form, a picture.
                {"cut.mp4", film(kCube).substr(0, 60), nullptr, K::AUTO, K::STEREO_AUTO,
                 K::EQUIRECTANGULAR, K::STEREO_2D, 0, 90},
                {"film.mkv", "no atoms", nullptr, K::AUTO, K::STEREO_AUTO, K::EQUIRECTANGULAR,
                 K::STEREO_2D, 0, 90},
                {"still.jpg", film(kCube), nullptr, K::AUTO, K::STEREO_AUTO, K::EQUIRECTANGULAR,
                 K::STEREO_2D, 0, 90}};
    testing::internal::CaptureStderr(); // the parser's own words about the damaged ones
    for (const auto &row : rows) {
        SCOPED_TRACE(row.name);
        const auto write = [&folder](const QString &name, const QByteArray &bytes) {
            QFile file(folder.filePath(name));
            EXPECT_TRUE(file.open(QIODevice::WriteOnly));
            file.write(bytes);
            return file.fileName();
        };
        QString opened = write(row.name, QByteArray::fromStdString(row.bytes));
        if (row.playlistStereo) {
            const auto json = QStringLiteral(R"([{"media":"%1","stereo":"%2"},{"media":"x.mp4"}])");
            opened = write("list.orpl", json.arg(row.name, row.playlistStereo).toUtf8());
        }
        settings->set("instance/input/projection", row.projectionSetting);
        settings->set("instance/input/stereoscopy", row.stereoSetting);
        list->openFile(opened);
        EXPECT_EQ(builder->projectionSource(), row.projection);
        EXPECT_EQ(builder->stereoMode(), row.stereo);
        EXPECT_NEAR(list->yaw(), row.yaw * 3.14159265F / 180, 1e-4);
        EXPECT_EQ(list->fov(), row.fov);
    }
    testing::internal::GetCapturedStderr();
    application->setGlobalObject(nullptr);
    application->setShaderBuilder(nullptr);
}

#include "MediaResolutionTest.moc"
