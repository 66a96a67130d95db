// What opening a movie costs: the parser against libavformat on the same files, a movie of a
// million samples against the mere reading of its bytes, and a large file against a small one.

#include "MovParserLib/MovFileReader.h"

#include <benchmark/benchmark.h>

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

extern "C" {
#include <libavformat/avformat.h>
#include <libavutil/log.h>
}

using namespace Orvex::MovParserLib;

namespace {

constexpr double kLeastAdvantage = 0.1; // Of libavformat's time.
constexpr double kSizeMayCost = 1.5;
constexpr quint32 kManySamples = 1000000;
constexpr qint64 kHole = qint64(5) << 30;

/// Opens and asks as the player does.
void openByParser(benchmark::State &state, const std::string &path)
{
    for (auto _ : state) {
        MovFileReader reader;
        quint32 width = 0;
        quint32 height = 0;
        double rate = 0;
        if (reader.open(path) || reader.getFrameSize(&width, &height) || reader.getFrameRate(&rate))
            state.SkipWithError("the movie does not open");
        benchmark::DoNotOptimize(rate);
    }
}

void openByLibavformat(benchmark::State &state, const std::string &path)
{
    for (auto _ : state) {
        AVFormatContext *context = nullptr;
        if (avformat_open_input(&context, path.c_str(), nullptr, nullptr) < 0 ||
            avformat_find_stream_info(context, nullptr) < 0)
            state.SkipWithError("libavformat does not open the movie");
        avformat_close_input(&context);
    }
}

void readBytes(benchmark::State &state, const std::string &path)
{
    for (auto _ : state) {
        QFile file(QString::fromStdString(path));
        if (!file.open(QIODevice::ReadOnly | QIODevice::Unbuffered))
            state.SkipWithError("the file does not open");
        benchmark::DoNotOptimize(file.readAll());
    }
}

void writeMovie(const QString &path, MovieAtom &movie, qint64 hole)
{
    FileBuffer buffer;
    QFile file(path);
    const quint32 head[4] = {qToBigEndian<quint32>(1), qToBigEndian(fourcc("mdat")),
                             qToBigEndian(quint32(hole >> 32)), qToBigEndian(quint32(hole))};
    const bool ok = buffer.attach(quint32(movie.computeSize()), nullptr) == 0 &&
                    movie.write(buffer) == 0 && file.open(QIODevice::WriteOnly) &&
                    file.write(reinterpret_cast<const char *>(head), sizeof head) == sizeof head &&
                    file.seek(hole) &&
                    file.write(buffer.getData(), buffer.dataSize()) == buffer.dataSize();
    if (!ok)
        qFatal("cannot write %s", qPrintable(path));
}

std::string makeByFfmpeg(const QString &path, const QString &options)
{
    const QString arguments =
        QStringLiteral("-v error -y -f lavfi -i testsrc2=size=640x320:rate=25:duration=4 "
                       "-f lavfi -i sine=duration=4 %1 %2")
            .arg(options, path);
    if (QProcess::execute(QStringLiteral("ffmpeg"), arguments.split(QLatin1Char(' '))) != 0)
        qFatal("ffmpeg does not make %s", qPrintable(path));
    return path.toStdString();
}

MovieAtom movieOf(const std::string &path)
{
    MovFileReader reader;
    if (reader.open(path))
        qFatal("%s does not open", path.c_str());
    return reader.movie();
}

/// The same movie with a table of many samples, each in a chunk of its own.
MovieAtom withManySamples(MovieAtom movie)
{
    SampleTableAtom &table = *movie.tracks[0]->media.information->sampleTable();
    table.sizes.sizes.table.assign(kManySamples, 100);
    table.sizes.sizes.count = kManySamples;
    table.chunkOffsets.offsets.rows.assign(kManySamples, 16);
    table.sampleToChunk.table.rows.resize(1);
    table.sampleToChunk.table.rows[0].samplesPerChunk = 1;
    table.timeToSample->table.rows.resize(1);
    table.timeToSample->table.rows[0].sampleCount = kManySamples;
    table.compositionOffsets = Owned<CompositionOffsetsAtom>::make();
    CompositionOffsetsTableEntry entry;
    entry.sampleCount = 1;
    table.compositionOffsets->table.rows.assign(kManySamples, entry);
    return movie;
}

void compare(const std::string &subject, const std::string &path)
{
    benchmark::RegisterBenchmark((subject + "/baseline").c_str(), openByLibavformat, path)
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark((subject + "/parser").c_str(),
                                 [path](benchmark::State &state) {
                                     openByParser(state, path);
                                     state.counters["limit"] = kLeastAdvantage;
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
}

} // namespace

int main(int argc, char **argv)
{
    benchmark::Initialize(&argc, argv);
    av_log_set_level(AV_LOG_QUIET);
    QTemporaryDir folder;
    const struct
    {
        const char *subject;
        const char *name;
        const char *options;
    } files[] = {
        {"open-h264", "h264.mp4", "-c:v libx264 -c:a aac"},
        {"open-hevc", "hevc.mp4", "-c:v libx265 -x265-params log-level=none -tag:v hvc1 -c:a aac"},
        {"open-prores", "prores.mov", "-c:v prores_ks -c:a pcm_s24le"},
        {"open-timecode", "timecode.mov", "-c:v libx264 -c:a aac -timecode 01:00:00:00"},
    };
    for (const auto &file : files) {
        compare(file.subject, makeByFfmpeg(folder.filePath(QLatin1String(file.name)),
                                           QLatin1String(file.options)));
    }

    MovieAtom movie = movieOf(folder.filePath(QStringLiteral("h264.mp4")).toStdString());
    const QString small = folder.filePath(QStringLiteral("small.mp4"));
    const QString large = folder.filePath(QStringLiteral("large.mp4"));
    const QString many = folder.filePath(QStringLiteral("many.mp4"));
    writeMovie(small, movie, 1 << 16);
    writeMovie(large, movie, kHole);
    MovieAtom manySamples = withManySamples(movie);
    writeMovie(many, manySamples, 1 << 16);

    benchmark::RegisterBenchmark("open-size/baseline", openByParser, small.toStdString())
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("open-size/5-gib",
                                 [large](benchmark::State &state) {
                                     openByParser(state, large.toStdString());
                                     state.counters["limit"] = kSizeMayCost;
                                 })
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    compare("open-million", many.toStdString());
    benchmark::RegisterBenchmark("read-million/baseline", readBytes, many.toStdString())
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RegisterBenchmark("read-million/parser", openByParser, many.toStdString())
        ->Unit(benchmark::kMicrosecond)
        ->UseRealTime();
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
