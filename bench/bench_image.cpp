// Stills: from a file to what a texture takes, against QImageReader and QImage doing the same. Time
// and the peak of memory are measured apart: each decode for memory runs in a process of its own.

#include "KImage/ImageLoader.h"
#include "KImage/KImage.h"

#include <QCoreApplication>
#include <QImageReader>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <memory>

#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace {

constexpr QSize kPanorama(16384, 8192);
constexpr QSize kPicture(4096, 2048);

KBitmap noisy(const QSize &size)
{
    KBitmap bitmap(size.width(), size.height(), PixelFormat::Rgb8);
    quint32 state = 1;
    for (int y = 0; y < size.height(); ++y) {
        uchar *p = bitmap.line(y);
        for (qint64 i = 0; i < bitmap.bytesPerLine(); ++i) {
            state = state * 1664525 + 1013904223;
            p[i] = uchar((i / 48 + y / 16) ^ (state >> 30));
        }
    }
    return bitmap;
}

const QString &panoramaFile()
{
    static const QTemporaryDir folder;
    static const QString path = [] {
        const QString name = folder.filePath(QStringLiteral("panorama.jpg"));
        KImage::Save(noisy(kPanorama), name);
        return name;
    }();
    return path;
}

bool loadOurs(const QString &path, const QSize &limit)
{
    LoadRequest request;
    request.limit = limit;
    request.format = PixelFormat::Bgra8Premultiplied;
    KBitmap bitmap;
    return ImageLoader::load(path, request, bitmap) == ImageError::None;
}

bool loadQt(const QString &path, const QSize &limit)
{
    QImageReader reader(path);
    reader.setScaledSize(reader.size().scaled(limit, Qt::KeepAspectRatio));
    return !reader.read().convertToFormat(QImage::Format_ARGB32_Premultiplied).isNull();
}

bool loadQtThenScale(const QString &path, const QSize &limit)
{
    return !QImageReader(path)
                .read()
                .scaled(limit, Qt::KeepAspectRatio, Qt::SmoothTransformation)
                .convertToFormat(QImage::Format_ARGB32_Premultiplied)
                .isNull();
}

using Load = bool (*)(const QString &, const QSize &);

/// Peak of resident memory, in megabytes, that one load adds to a process.
double peakOf(Load load, const QSize &limit)
{
    const QString path = panoramaFile();
    const pid_t child = fork();
    if (child == 0)
        _exit(load(path, limit) ? 0 : 1);
    int status = 0;
    struct rusage usage
    {
    };
    wait4(child, &status, 0, &usage);
    return status == 0 ? double(usage.ru_maxrss) / 1024 : -1;
}

void decode(benchmark::State &state, Load load)
{
    const int width = int(state.range(0));
    const QSize limit(width, width);
    const QString path = panoramaFile();
    state.counters["peak_MB"] = peakOf(load, limit);
    for (auto _ : state) {
        if (!load(path, limit))
            state.SkipWithError("not loaded");
    }
}

void convertOurs(benchmark::State &state)
{
    const KBitmap bitmap = noisy(kPicture);
    for (auto _ : state)
        benchmark::DoNotOptimize(KImage::Convert(bitmap, PixelFormat::Rgba8).line(0));
}

void convertQt(benchmark::State &state)
{
    KBitmap bitmap = noisy(kPicture);
    const QImage image = bitmap.takeImage();
    for (auto _ : state)
        benchmark::DoNotOptimize(image.convertToFormat(QImage::Format_RGBA8888).constBits());
}

void scaleOurs(benchmark::State &state)
{
    const KBitmap bitmap = KImage::Convert(noisy(kPicture), PixelFormat::Bgra8Premultiplied);
    for (auto _ : state)
        benchmark::DoNotOptimize(KImage::Scale(bitmap, kPicture * 0.4).line(0));
}

void scaleQt(benchmark::State &state)
{
    KBitmap bitmap = KImage::Convert(noisy(kPicture), PixelFormat::Bgra8Premultiplied);
    const QImage image = bitmap.takeImage();
    for (auto _ : state)
        benchmark::DoNotOptimize(
            image.scaled(kPicture * 0.4, Qt::IgnoreAspectRatio, Qt::SmoothTransformation)
                .constBits());
}

// Before anything has grown this process: a child starts with its parent's memory.
BENCHMARK_CAPTURE(decode, ours, loadOurs)
    ->Arg(4096)
    ->Arg(8192)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(decode, QImageReader_scaledSize, loadQt)
    ->Arg(4096)
    ->Arg(8192)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(decode, QImageReader_then_scaled, loadQtThenScale)
    ->Arg(4096)
    ->Arg(8192)
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK(convertOurs)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(convertQt)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(scaleOurs)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(scaleQt)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
