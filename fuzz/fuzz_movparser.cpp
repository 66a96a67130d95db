// Movie files of any content: walked, parsed, asked and dumped; then what was read is written,
// read again and written again, which must give the same bytes.

#include "MovParserLib/MovFile.h"
#include "MovParserLib/MovParser.h"

#include <sanitizer/allocator_interface.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>

using namespace Orvex::MovParserLib;

namespace {

// A parse may keep so many bytes for each byte of input, and some for its first objects.
constexpr size_t kMemoryPerByte = 64;
constexpr size_t kMemoryAtLeast = 1 << 16;

void require(bool condition, const char *promise)
{
    if (condition)
        return;
    std::printf("broken promise: %s\n", promise);
    std::abort();
}

class MemoryReader final : public FileReader
{
public:
    MemoryReader(const uint8_t *data, size_t size)
        : m_data(data)
        , m_size(size)
    {}
    Status open(const QString &) override { return 0; }
    Status close() override { return 0; }
    Status read(FileBuffer &buffer, qint64 offset, quint32 size) override
    {
        if (size_t(offset) > m_size || size > m_size - size_t(offset))
            return FileReaderError::AttemptToReadPastEof;
        if (buffer.prepare(size, offset, FileBuffer::kSectorSize))
            return FileReaderError::BufferAlloc;
        std::memcpy(buffer.getData(), m_data + offset, size);
        return 0;
    }

private:
    const uint8_t *m_data;
    size_t m_size;
};

class Movie final : public MovFile
{
public:
    Movie() = default;
    MovieAtom &atom() { return m_movie; }
};

void askAll(const MovFile &file)
{
    quint32 a = 0;
    quint32 b = 0;
    double rate = 0;
    float yaw = 0;
    float pitch = 0;
    float roll = 0;
    bool isOrvex = false;
    std::string text;
    const Status statuses[] = {file.getFrameSize(&a, &b),
                               file.getFrameRate(&rate),
                               file.isOrvexFile(&isOrvex),
                               file.getInitialOrientation(&yaw, &pitch, &roll),
                               file.getProjection(&a),
                               file.getStereoMode(&a),
                               file.getWritingTool(text)};
    for (const Status status : statuses)
        require(status == 0 || status >= 0x10000, "a failure carries its domain");
    (void)file.isVideoFile();
}

void lookUp(const SampleTableAtom &table)
{
    for (const quint32 sample : {0U, 1U, 7U, 1000U, 0x7FFFFFFFU, 0xFFFFFFFFU}) {
        quint64 offset = 0;
        quint32 size = 0;
        qint64 composition = 0;
        qint64 decode = 0;
        bool sync = false;
        (void)table.getSampleLocation(sample, &offset, &size, &composition, &decode, &sync);
        if (table.getSampleDecodeTime(sample, &decode) == 0)
            (void)table.getSampleAtTime(decode, &size);
    }
    std::vector<qint64> times;
    quint32 least = 0;
    quint32 most = 0;
    (void)table.getSampleDurationRange(&least, &most);
    if (table.sizes.sizes.count < 10000)
        (void)table.getCompositionTimes(&times);
}

std::vector<char> written(MovieAtom &movie)
{
    std::vector<char> bytes(static_cast<size_t>(movie.computeSize()));
    FileBuffer buffer;
    require(buffer.attach(quint32(bytes.size()), bytes.data()) == 0, "a buffer is attached");
    require(movie.write(buffer) == 0, "what was read can be written");
    require(buffer.remaining() == 0, "the computed size is the written size");
    return bytes;
}

std::string dumped(const MovieAtom &movie)
{
    std::string text;
    movie.print(&text, 0);
    return text;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int *, char ***)
{
    // The parser's reports would drown the fuzzer's own lines, which go past this stream.
    stderr = std::fopen("/dev/null", "w");
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t *data, size_t size)
{
    const size_t before = __sanitizer_get_current_allocated_bytes();
    MemoryReader reader(data, size);
    Movie file;
    quint64 offset = 0;
    const bool parsed = MovParser::parse(reader, qint64(size), &file.atom(), &offset) == 0;
    const size_t kept = __sanitizer_get_current_allocated_bytes() - before;
    require(kept <= kMemoryPerByte * size + kMemoryAtLeast, "memory follows the input");
    if (!parsed)
        return 0;

    askAll(file);
    for (const auto &track : file.movie().tracks) {
        if (const SampleTableAtom *table = track->media.sampleTable())
            lookUp(*table);
    }
    const MovieAtom copy = file.movie();
    require(dumped(copy) == dumped(file.movie()), "a copy dumps alike");

    std::vector<char> first = written(file.atom());
    FileBuffer buffer;
    require(buffer.attach(quint32(first.size()), first.data()) == 0, "a buffer is attached");
    MovieAtom again;
    require(again.read(buffer) == 0, "what was written can be read");
    require(written(again) == first, "the second write equals the first");
    return 0;
}
