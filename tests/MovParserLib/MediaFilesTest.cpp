// Whole files as ffmpeg makes them, with answers that ffprobe gives independently.

#include "MovParserLib/MovBytes.h"
#include "MovParserLib/MovFileReader.h"
#include "support/Files.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QProcess>
#include <QStandardPaths>
#include <QTemporaryDir>

using namespace test;
using namespace Orvex::MovParserLib;

namespace {

const QString kInputs = QStringLiteral(
    "-f lavfi -i testsrc2=size=128x64:rate=%1:duration=1 -f lavfi -i sine=duration=1");

QString run(const QString &program, const QString &arguments)
{
    QProcess process;
    process.start(program, arguments.split(QLatin1Char(' '), Qt::SkipEmptyParts));
    if (!process.waitForFinished(60000) || process.exitCode() != 0) {
        ADD_FAILURE() << program.toStdString() << ' ' << arguments.toStdString() << '\n'
                      << process.readAllStandardError().toStdString();
    }
    return QString::fromUtf8(process.readAllStandardOutput());
}

struct MediaFiles : testing::Test
{
    void SetUp() override
    {
        for (const char *program : {"ffmpeg", "ffprobe"}) {
            if (QStandardPaths::findExecutable(QLatin1String(program)).isEmpty())
                GTEST_SKIP() << program << " is not installed";
        }
        ASSERT_TRUE(folder.isValid());
    }

    QString make(const QString &name, const QString &options, const QString &rate)
    {
        const QString path = folder.filePath(name);
        run(QStringLiteral("ffmpeg"),
            QStringLiteral("-v error -y %1 %2 %3").arg(kInputs.arg(rate), options, path));
        return path;
    }

    QTemporaryDir folder;
};

/// What ffprobe says of the first stream of a kind: the values of @p entries in their order.
QStringList probe(const QString &path, const QString &stream, const QString &entries)
{
    return run(QStringLiteral("ffprobe"),
               QStringLiteral("-v error -select_streams %1 -count_packets -show_entries stream=%2 "
                              "-of default=nokey=1:noprint_wrappers=1 %3")
                   .arg(stream, entries, path))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

/// Position, size, times and key flag of each packet of the first video stream, in file order.
QStringList packets(const QString &path)
{
    return run(QStringLiteral("ffprobe"),
               QStringLiteral("-v error -ignore_editlist 1 -select_streams v:0 -show_entries "
                              "packet=pts,dts,size,pos,flags -of csv=p=0 %1")
                   .arg(path))
        .split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

} // namespace

TEST_F(MediaFiles, AreAnsweredAsFfprobeAnswers)
{
    const char *const rows[][3] = {
        {"h264.mp4", "25", "-c:v libx264 -c:a aac"},
        {"first.mp4", "30000/1001", "-c:v libx264 -bf 2 -an -movflags faststart"},
        {"hevc.mp4", "24", "-c:v libx265 -x265-params log-level=none -tag:v hvc1 -c:a aac"},
        {"prores.mov", "50", "-c:v prores_ks -c:a pcm_s24le"},
        {"timecode.mov", "25", "-c:v libx264 -c:a aac -timecode 01:00:00:00"},
        {"edits.mp4", "25",
         "-output_ts_offset 2 -c:v libx264 -bf 2 -c:a aac -video_track_timescale 600"},
        {"mpeg4.mov", "10", "-c:v mpeg4 -c:a pcm_f32le -ar 96000"},
    };
    for (const auto &[name, madeRate, options] : rows) {
        SCOPED_TRACE(name);
        const QString path =
            make(QLatin1String(name), QLatin1String(options), QLatin1String(madeRate));
        MovFileReader reader;
        ASSERT_EQ(reader.open(path), 0U);
        const QStringList expected =
            probe(path, QStringLiteral("v:0"), QStringLiteral("width,height,nb_read_packets"));
        ASSERT_EQ(expected.size(), 3);
        quint32 width = 0;
        quint32 height = 0;
        ASSERT_EQ(reader.getFrameSize(&width, &height), 0U);
        EXPECT_EQ(width, expected[0].toUInt());
        EXPECT_EQ(height, expected[1].toUInt());
        EXPECT_TRUE(reader.isVideoFile());
        double rate = 0;
        ASSERT_EQ(reader.getFrameRate(&rate), 0U);
        const QStringList fraction = QString::fromLatin1(madeRate).split(QLatin1Char('/'));
        EXPECT_NEAR(rate,
                    fraction[0].toDouble() / fraction.value(1, QStringLiteral("1")).toDouble(),
                    0.0005);
        bool maker = true;
        ASSERT_EQ(reader.isOrvexFile(&maker), 0U);
        EXPECT_FALSE(maker);

        const SampleTableAtom *table = nullptr;
        ASSERT_EQ(reader.getSampleTable(TrackSelector::byIndex(0), &table), 0U);
        const QStringList lines = packets(path);
        quint32 count = 0;
        ASSERT_EQ(table->getSampleCount(&count), 0U);
        EXPECT_EQ(count, expected[2].toUInt());
        EXPECT_EQ(count, quint32(lines.size()));
        qint64 shift = 0;
        for (quint32 i = 0; i < quint32(lines.size()); ++i) {
            quint64 offset = 0;
            quint32 size = 0;
            qint64 pts = 0;
            qint64 dts = 0;
            bool key = false;
            ASSERT_EQ(table->getSampleLocation(i, &offset, &size, &pts, &dts, &key), 0U);
            const QStringList line = lines[int(i)].split(QLatin1Char(','));
            // ffprobe shifts all decode times alike, so only the gaps' differences agree.
            const qint64 ours = pts - dts;
            const qint64 theirs = line[0].toLongLong() - line[1].toLongLong();
            if (i == 0)
                shift = ours - theirs;
            EXPECT_EQ(ours - theirs, shift);
            EXPECT_EQ(size, line[2].toUInt());
            EXPECT_EQ(offset, line[3].toULongLong());
            EXPECT_EQ(key, line[4].startsWith(QLatin1Char('K')));
        }
    }
}

TEST_F(MediaFiles, ATextTrackIsDescribed)
{
    const QString subtitles = test::writeFile(folder.filePath(QStringLiteral("lines.srt")),
                                              "1\n00:00:00,000 --> 00:00:01,000\nHello\n");
    const QString path =
        make(QStringLiteral("text.mov"),
             QStringLiteral("-i %1 -map 0:v -map 2:s -c:v libx264 -c:s mov_text").arg(subtitles),
             QStringLiteral("25"));
    MovFileReader reader;
    ASSERT_EQ(reader.open(path), 0U);
    ASSERT_EQ(reader.getTrackCount(), 2U);
    FourCC subtype = 0;
    ASSERT_EQ(reader.getTrackHandlerSubtype(TrackSelector::byIndex(1), &subtype), 0U);
    EXPECT_EQ(subtype, fourcc("text"));
    const SampleTableAtom *table = nullptr;
    ASSERT_EQ(reader.getSampleTable(TrackSelector::byIndex(1), &table), 0U);
    EXPECT_EQ(table->descriptions.entries.rows.size(), 1U);
    EXPECT_NE(
        dynamic_cast<const TextSampleDescription *>(table->descriptions.entries.rows[0].get()),
        nullptr);
}

TEST_F(MediaFiles, TheSphereThatFfmpegCopiesIsRead)
{
    // ffmpeg writes these atoms for a stream that came with them: ours come first.
    const QString plain =
        make(QStringLiteral("plain.mp4"), QStringLiteral("-c:v libx264 -an"), QStringLiteral("25"));
    MovFileReader reader;
    ASSERT_EQ(reader.open(plain), 0U);
    MovieAtom movie = reader.movie();
    ASSERT_EQ(movie.tracks[0]->setProjection(Equirectangular) |
                  movie.tracks[0]->setStereoMode(TopBottom) |
                  movie.tracks[0]->setInitialOrientation(30, -20, 10) |
                  movie.tracks[0]->setWritingTool("builder"),
              0U);
    // The movie stands behind the media, so it may grow in place.
    QFile file(plain);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite));
    ASSERT_TRUE(file.resize(qint64(reader.movieOffset())));
    file.seek(file.size());
    Bytes bytes(size_t(movie.computeSize()), '\0');
    FileBuffer buffer;
    ASSERT_EQ(buffer.attach(quint32(bytes.size()), bytes.data()), 0U);
    ASSERT_EQ(movie.write(buffer), 0U);
    ASSERT_EQ(file.write(bytes.data(), qint64(bytes.size())), qint64(bytes.size()));
    file.close();
    const QString sideData =
        run(QStringLiteral("ffprobe"), QStringLiteral("-v error -show_streams %1").arg(plain));
    EXPECT_TRUE(sideData.contains(QStringLiteral("projection=equirectangular"))) << "by ffprobe";
    EXPECT_TRUE(sideData.contains(QStringLiteral("type=top and bottom"))) << "by ffprobe";
    EXPECT_TRUE(sideData.contains(QStringLiteral("yaw=30"))) << sideData.toStdString();

    const QString copy = folder.filePath(QStringLiteral("copy.mp4"));
    run(QStringLiteral("ffmpeg"),
        QStringLiteral("-v error -y -i %1 -c copy -strict unofficial %2").arg(plain, copy));
    for (const QString &path : {plain, copy}) {
        MovFileReader again;
        ASSERT_EQ(again.open(path), 0U);
        quint32 projection = 0;
        quint32 stereo = 0;
        float yaw = 0;
        float pitch = 0;
        float roll = 0;
        EXPECT_EQ(again.getProjection(&projection), 0U);
        EXPECT_EQ(projection, 1U);
        EXPECT_EQ(again.getStereoMode(&stereo), 0U);
        EXPECT_EQ(stereo, 2U);
        EXPECT_EQ(again.getInitialOrientation(&yaw, &pitch, &roll), 0U);
        EXPECT_EQ((std::array<float, 3>{yaw, pitch, roll}), (std::array<float, 3>{30, -20, 10}));
    }
}
