#include "MovParserLib/CodecAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

namespace {

/// Fetches bits, the most significant first, from a bounded run of bytes; behind its end all
/// bits are 0.
class BitReader
{
public:
    BitReader(const quint8 *bytes, size_t size)
        : m_bytes(bytes)
        , m_bitCount(size * 8)
    {}

    template <class T>
    void bits(const char *, T &value, int width)
    {
        value = static_cast<T>(fetch(width));
    }
    template <class T>
    void shown(const char *label, T &value, int width, quint32)
    {
        bits(label, value, width);
    }
    void ones(int width) { fetch(width); }
    void reserved(int width) { fetch(width); }
    /// The length of a descriptor: leading bytes of 0x80 only pad it.
    void length(quint8 &value)
    {
        do
            value = quint8(fetch(8));
        while (value == 0x80 && m_position < m_bitCount);
    }
    /// 5 bits, or 6 more behind the escape value (ISO/IEC 14496-3, 1.6.2.1, GetAudioObjectType).
    void objectType(const char *, quint8 &value)
    {
        value = quint8(fetch(5));
        if (value == 31)
            value = quint8(32 + fetch(6));
    }
    void raw(const char *, std::vector<quint8> &bytes, size_t count)
    {
        const size_t from = std::min(m_position, m_bitCount) / 8;
        const size_t present = std::min(count, m_bitCount / 8 - from);
        bytes.assign(m_bytes + from, m_bytes + from + present);
        m_position = (from + count) * 8;
    }
    void block(const char *, const char *heading, std::vector<quint8> &bytes)
    {
        const auto count = size_t(fetch(16));
        raw(heading, bytes, count);
    }
    void sets(const char *label, const char *heading, std::vector<quint8> &first, int count)
    {
        first.clear();
        std::vector<quint8> ignored;
        for (int i = 0; i < count; ++i)
            block(label, heading, i == 0 ? first : ignored);
    }
    void heading(const char *, size_t) {}
    template <class T>
    bool more(std::vector<T> &entries, size_t index, size_t count)
    {
        if (index == 0)
            entries.clear();
        if (index >= count || m_position >= m_bitCount)
            return false;
        entries.emplace_back();
        return true;
    }
    template <class Function>
    void within(size_t count, const Function &function)
    {
        const size_t from = std::min(m_position, m_bitCount) / 8;
        BitReader inner(m_bytes + from, std::min(count, m_bitCount / 8 - from));
        function(inner);
        m_position = (from + count) * 8;
    }

private:
    quint64 fetch(int width)
    {
        quint64 value = 0;
        for (int i = 0; i < width; ++i, ++m_position) {
            const quint64 bit = m_position < m_bitCount
                ? m_bytes[m_position / 8] >> (7 - m_position % 8) & 1
                : 0;
            value = value << 1 | bit;
        }
        return value;
    }

    const quint8 *m_bytes;
    size_t m_bitCount;
    size_t m_position = 0;
};

/// Builds the bytes of a record from its fields.
class BitWriter
{
public:
    std::vector<quint8> result;

    template <class T>
    void bits(const char *, T value, int width)
    {
        store(value, width);
    }
    template <class T>
    void shown(const char *, T value, int width, quint32)
    {
        store(value, width);
    }
    void ones(int width) { store(~quint64(0), width); }
    void reserved(int width) { store(0, width); }
    void block(const char *, const char *, const std::vector<quint8> &bytes)
    {
        const size_t count = std::min<size_t>(bytes.size(), 0xFFFF);
        store(count, 16);
        result.insert(result.end(), bytes.begin(), bytes.begin() + qint64(count));
    }
    void sets(const char *label, const char *heading, const std::vector<quint8> &first, int count)
    {
        for (int i = 0; i < count; ++i)
            block(label, heading, i == 0 ? first : std::vector<quint8>());
    }
    void heading(const char *, size_t) {}
    template <class T>
    bool more(const std::vector<T> &entries, size_t index, size_t count)
    {
        return index < std::min(entries.size(), count);
    }

private:
    void store(quint64 value, int width)
    {
        for (int i = width - 1; i >= 0; --i, ++m_bitCount) {
            if (m_bitCount % 8 == 0)
                result.push_back(0);
            result.back() |= quint8((value >> i & 1) << (7 - m_bitCount % 8));
        }
    }

    size_t m_bitCount = 0;
};

/// Dumps a record.
class BitPrinter
{
public:
    explicit BitPrinter(const Dump &dump)
        : m_dump(dump)
    {}

    template <class T>
    void bits(const char *label, T value, int)
    {
        PrintFields(m_dump).number(label, value);
    }
    template <class T>
    void shown(const char *label, T value, int width, quint32 mask)
    {
        bits(label, quint32(value & mask), width);
    }
    void ones(int) {}
    void reserved(int) {}
    void length(quint8) {}
    void objectType(const char *label, quint8 value) { bits(label, value, 5); }
    void raw(const char *heading, const std::vector<quint8> &bytes, size_t)
    {
        m_dump.bytes(heading, bytes, "%02x ");
        m_dump.line("]");
    }
    void block(const char *label, const char *heading, const std::vector<quint8> &bytes)
    {
        bits(label, quint32(bytes.size()), 16);
        raw(heading, bytes, 0);
    }
    void sets(const char *label, const char *heading, const std::vector<quint8> &first, int count)
    {
        if (count > 0)
            block(label, heading, first);
    }
    void heading(const char *format, size_t index)
    {
        std::array<char, 32> text;
        std::snprintf(text.data(), text.size(), format, int(index));
        m_dump.line("%s", text.data());
    }
    template <class T>
    bool more(const std::vector<T> &entries, size_t index, size_t)
    {
        return index < entries.size();
    }
    template <class Function>
    void within(size_t, const Function &function)
    {
        function(*this);
    }

private:
    const Dump &m_dump;
};

bool readPayload(FileBuffer &buffer, qint64 end, std::vector<quint8> *payload)
{
    RawBlock block;
    const bool ok = block.read(buffer, end);
    *payload = std::move(block.bytes);
    return ok;
}

template <class Record>
bool readRecord(Record &record, FileBuffer &buffer, qint64 end)
{
    if (!readPayload(buffer, end, &record.payload))
        return false;
    BitReader reader(record.payload.data(), record.payload.size());
    Record::fields(record, reader);
    return true;
}

template <class Record>
std::vector<quint8> bytesOf(const Record &record)
{
    if (!record.payload.empty())
        return record.payload;
    BitWriter writer;
    Record::fields(record, writer);
    return std::move(writer.result);
}

template <class Record>
bool writeRecord(const Record &record, FileBuffer &buffer)
{
    const std::vector<quint8> bytes = bytesOf(record);
    return buffer.write(bytes.data(), quint32(bytes.size())) == 0;
}

template <class Record>
void dumpRecord(const Record &record, const Dump &dump)
{
    BitPrinter printer(dump);
    Record::fields(record, printer);
}

template <size_t N>
bool isOneOf(quint8 value, const quint8 (&values)[N])
{
    return std::find(std::begin(values), std::end(values), value) != std::end(values);
}

} // namespace

bool AvcRecord::read(FileBuffer &buffer, qint64 end)
{
    return readRecord(*this, buffer, end);
}

bool AvcRecord::write(FileBuffer &buffer) const
{
    return writeRecord(*this, buffer);
}

quint64 AvcRecord::size() const
{
    return bytesOf(*this).size();
}

void AvcRecord::dump(const Dump &dump, const char *) const
{
    dumpRecord(*this, dump);
}

bool HevcRecord::read(FileBuffer &buffer, qint64 end)
{
    return readRecord(*this, buffer, end);
}

bool HevcRecord::write(FileBuffer &buffer) const
{
    return writeRecord(*this, buffer);
}

quint64 HevcRecord::size() const
{
    return bytesOf(*this).size();
}

void HevcRecord::dump(const Dump &dump, const char *) const
{
    dumpRecord(*this, dump);
}

bool EsDescriptor::read(FileBuffer &buffer, qint64 end)
{
    if (!readPayload(buffer, end, &payload))
        return false;
    // Some writers put another version and flags in front of the first descriptor.
    const bool direct = payload.empty() || payload.front() == 3;
    const size_t skipped = direct ? 0 : std::min<size_t>(4, payload.size());
    BitReader reader(payload.data() + skipped, payload.size() - skipped);
    fields(*this, reader);
    return true;
}

bool EsDescriptor::write(FileBuffer &buffer) const
{
    return buffer.write(payload.data(), quint32(payload.size())) == 0;
}

void EsDescriptor::dump(const Dump &dump, const char *) const
{
    dumpRecord(*this, dump);
}

bool EsDescriptor::isGeneralAudio(quint8 objectType)
{
    return isOneOf(objectType, {1, 2, 3, 4, 6, 7, 17, 19, 20, 21, 22, 23});
}

bool EsDescriptor::isErrorResilient(quint8 objectType)
{
    return isOneOf(objectType, {17, 19, 20, 23});
}

template class AtomOf<AVCCAtom, MovAtom>;
template class AtomOf<HVCCAtom, MovAtom>;
template class AtomOf<EsdsAtom, MovFullAtom>;

} // namespace Orvex::MovParserLib
