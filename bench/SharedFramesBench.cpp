// What it costs to take a frame of another program out of shared memory, against a plain copy of
// the same bytes inside this program.

#include "input/SharedFrameReader.h"
#include "input/SharedMemoryBlock.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>

#include <cstring>
#include <memory>

#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

namespace {

constexpr quint16 kWidth = 3840;
constexpr quint16 kHeight = 1920;
constexpr quint16 kRowBytes = kWidth * 4;
constexpr std::size_t kFrameBytes = std::size_t(kRowBytes) * kHeight;
constexpr quint32 kPixels = 4096;

/// A block of this process's own with one frame in it, gone with the object.
class Block
{
public:
    Block()
    {
        const QByteArray path = name().toLatin1();
        const int descriptor = shm_open(path.constData(), O_CREAT | O_RDWR, 0600);
        const std::size_t bytes = kPixels + kFrameBytes;
        if (ftruncate(descriptor, off_t(bytes)) == 0) {
            void *view = mmap(nullptr, bytes, PROT_WRITE, MAP_SHARED, descriptor, 0);
            std::memset(view, 0x5a, bytes);
            munmap(view, bytes);
        }
        close(descriptor);
    }
    ~Block() { shm_unlink(name().toLatin1().constData()); }
    static QString name()
    {
        return QStringLiteral("/orbilens-bench-%1").arg(QCoreApplication::applicationPid());
    }
};

void sharedFrameBaseline(benchmark::State &state)
{
    const auto source = std::make_unique<std::uint8_t[]>(kFrameBytes);
    const auto target = std::make_unique<std::uint8_t[]>(kFrameBytes);
    std::memset(source.get(), 0x5a, kFrameBytes);
    std::memset(target.get(), 0, kFrameBytes);
    for (auto _ : state) {
        std::memcpy(target.get(), source.get(), kFrameBytes);
        benchmark::ClobberMemory();
    }
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(kFrameBytes));
}
BENCHMARK(sharedFrameBaseline)->Name("shared frame 3840x1920/baseline")->UseRealTime();

void sharedFrame(benchmark::State &state, quint32 pitch)
{
    const Block written;
    SharedMemoryBlock block;
    if (!block.open(Block::name())) {
        state.SkipWithError("no shared memory");
        return;
    }
    SharedFaults faults;
    SharedFrameReader reader(&faults);
    SharedSlot slot;
    slot.dataOffset = kPixels;
    slot.width = kWidth;
    slot.height = kHeight;
    slot.rowBytes = kRowBytes;
    const auto target = std::make_unique<std::uint8_t[]>(std::size_t(pitch) * kHeight);
    std::memset(target.get(), 0, std::size_t(pitch) * kHeight);
    for (auto _ : state) {
        if (!reader.copy(block, slot, target.get(), pitch, kHeight))
            state.SkipWithError("the frame is cut short");
    }
    state.SetBytesProcessed(qint64(state.iterations()) * qint64(kFrameBytes));
}
BENCHMARK_CAPTURE(sharedFrame, whole, kRowBytes)
    ->Name("shared frame 3840x1920/one read")
    ->UseRealTime();
BENCHMARK_CAPTURE(sharedFrame, rows, kRowBytes + 64)
    ->Name("shared frame 3840x1920/row by row")
    ->UseRealTime();

} // namespace

BENCHMARK_MAIN();
