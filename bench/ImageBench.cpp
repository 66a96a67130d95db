// Stills: from a file to what a texture takes, against QImageReader and QImage doing the same. Time
// and the peak of memory are measured apart: each decode for memory runs in a process of its own.

#include "KImage/ImageLoader.h"
#include "KImage/KImage.h"

#include <QCoreApplication>
#include <QFile>
#include <QImageReader>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

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

struct Loader
{
    const char *name;
    bool (*load)(const QString &, const QSize &);
};
constexpr Loader kLoaders[] = {
    {"ours", loadOurs}, {"reader", loadQt}, {"readerThenScaled", loadQtThenScale}};

const char *const kLoadOnly = "--load";

/// Peak of resident memory in megabytes of a process that does nothing but one load.
double peakOf(const Loader &loader, int width)
{
    const QByteArray path = QFile::encodeName(panoramaFile());
    const QByteArray side = QByteArray::number(width);
    const pid_t child = fork();
    if (child == 0) {
        execl("/proc/self/exe", "image_bench", kLoadOnly, loader.name, path.constData(),
              side.constData(), nullptr);
        _exit(1);
    }
    int status = 0;
    struct rusage usage
    {
    };
    wait4(child, &status, 0, &usage);
    return status == 0 ? double(usage.ru_maxrss) / 1024 : -1;
}

/// What such a process does; its exit status.
int loadOnly(const QByteArray &name, const char *path, const char *width)
{
    for (const Loader &loader : kLoaders) {
        const int side = QByteArray(width).toInt();
        if (name == loader.name && loader.load(QFile::decodeName(path), QSize(side, side)))
            return 0;
    }
    return 1;
}

void decode(benchmark::State &state, const Loader &loader, int width)
{
    const QString path = panoramaFile();
    state.counters["peak_MB"] = peakOf(loader, width);
    for (auto _ : state) {
        if (!loader.load(path, QSize(width, width)))
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

void registerAll()
{
    const struct
    {
        const char *name;
        const Loader &loader;
        int width;
    } decodes[] = {{"jpeg_16384_to_4096/baseline", kLoaders[1], 4096},
                   {"jpeg_16384_to_4096/ours", kLoaders[0], 4096},
                   {"jpeg_16384_to_8192/baseline", kLoaders[2], 8192},
                   {"jpeg_16384_to_8192/ours", kLoaders[0], 8192}};
    for (const auto &entry : decodes)
        benchmark::RegisterBenchmark(
            entry.name,
            [entry](benchmark::State &state) { decode(state, entry.loader, entry.width); })
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
    const struct
    {
        const char *name;
        void (*function)(benchmark::State &);
    } others[] = {{"convert_rgb_to_rgba/baseline", convertQt},
                  {"convert_rgb_to_rgba/ours", convertOurs},
                  {"scale_to_two_fifths/baseline", scaleQt},
                  {"scale_to_two_fifths/ours", scaleOurs}};
    for (const auto &entry : others)
        benchmark::RegisterBenchmark(entry.name, entry.function)
            ->Unit(benchmark::kMillisecond)
            ->UseRealTime();
}

} // namespace

int main(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    QCoreApplication::addLibraryPath(QStringLiteral(ORBILENS_BINARY_DIR "/src/app"));
    constexpr int kArgumentsToLoad = 5;
    if (argc == kArgumentsToLoad && qstrcmp(argv[1], kLoadOnly) == 0)
        return loadOnly(argv[2], argv[3], argv[4]);
    registerAll();
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
