#include "net/FlatBinaryJson.h"

#include <QJsonValue>
#include <QtEndian>

#include <cstring>

namespace {

// Header: tag and version. Then the map: its size, its count shifted by one with the lowest bit set
// for a map, the offset of its table of entries. Offsets count from the map's start.
constexpr char kTag[] = "qbjs";
constexpr quint32 kVersion = 1;
constexpr quint32 kHeaderBytes = 8;
constexpr quint32 kMapBytes = 12;

enum ValueType : quint32 { Null = 0, Bool = 1, Double = 2, String = 3 };

/// An entry's word: type, whether the value is the short form (an integer in the word, a Latin-1
/// text), whether the key is Latin-1, and the value or its offset.
struct ValueWord
{
    explicit ValueWord(quint32 word)
        : type(word & 7U)
        , shortForm((word & 8U) != 0)
        , latinKey((word & 16U) != 0)
        , value(word >> 5)
        , signedValue(qint32(word) >> 5)
    {}
    quint32 type;
    bool shortForm;
    bool latinKey;
    quint32 value;
    qint32 signedValue;
};

/// The bytes of the map; every read is checked against them.
class MapBytes
{
public:
    MapBytes(const char *start, quint32 size)
        : m_start(start)
        , m_size(size)
        , m_textLeft(size)
    {}

    template <class Number>
    std::optional<Number> number(quint64 offset) const
    {
        if (!holds(offset, sizeof(Number)))
            return std::nullopt;
        return qFromLittleEndian<Number>(m_start + offset);
    }

    /// Texts that overlap, so that together they are longer than the document, are refused: a few
    /// bytes could stand for any amount of memory.
    std::optional<QString> text(quint64 offset, bool latin)
    {
        if (latin) {
            const auto length = number<quint16>(offset);
            if (!length || !holds(offset + 2, *length) || !spend(*length))
                return std::nullopt;
            return QString::fromLatin1(m_start + offset + 2, *length);
        }
        const auto length = number<quint32>(offset);
        if (!length || !holds(offset + 4, quint64(*length) * 2) || !spend(*length))
            return std::nullopt;
        QString text(int(*length), Qt::Uninitialized);
        qFromLittleEndian<quint16>(m_start + offset + 4, qsizetype(*length), text.data());
        return text;
    }

    std::optional<QJsonValue> value(const ValueWord &word)
    {
        switch (word.type) {
        case Null:
            return QJsonValue();
        case Bool:
            return QJsonValue(word.value != 0);
        case Double: {
            if (word.shortForm)
                return QJsonValue(word.signedValue);
            const auto bits = number<quint64>(word.value);
            if (!bits)
                return std::nullopt;
            double real = 0;
            std::memcpy(&real, &*bits, sizeof real);
            return QJsonValue(real);
        }
        case String: {
            const auto string = text(word.value, word.shortForm);
            if (!string)
                return std::nullopt;
            return QJsonValue(*string);
        }
        default:
            return std::nullopt;
        }
    }

private:
    [[nodiscard]] bool holds(quint64 offset, quint64 count) const
    {
        return offset <= m_size && count <= m_size - offset;
    }

    [[nodiscard]] bool spend(quint32 length)
    {
        const bool enough = length <= m_textLeft;
        m_textLeft -= enough ? length : 0;
        return enough;
    }

    const char *m_start;
    quint32 m_size;
    quint32 m_textLeft;
};

} // namespace

std::optional<QJsonObject> readFlatBinaryJson(const QByteArray &bytes)
{
    const auto available = quint32(bytes.size());
    if (available < kHeaderBytes + kMapBytes || !bytes.startsWith(kTag) ||
        qFromLittleEndian<quint32>(bytes.constData() + 4) != kVersion)
        return std::nullopt;
    const char *start = bytes.constData() + kHeaderBytes;
    const auto size = qFromLittleEndian<quint32>(start);
    const auto count = qFromLittleEndian<quint32>(start + 4);
    const auto table = qFromLittleEndian<quint32>(start + 8);
    const bool isMap = (count & 1U) != 0;
    if (!isMap || size < kMapBytes || size > available - kHeaderBytes)
        return std::nullopt;

    MapBytes map(start, size);
    QJsonObject object;
    for (quint64 i = 0; i < count >> 1; ++i) {
        const auto offset = map.number<quint32>(table + 4 * i);
        const auto word = offset ? map.number<quint32>(*offset) : std::nullopt;
        if (!word)
            return std::nullopt;
        const ValueWord entry(*word);
        const auto key = map.text(quint64(*offset) + 4, entry.latinKey);
        const auto value = map.value(entry);
        if (!key || !value)
            return std::nullopt;
        object.insert(*key, *value);
    }
    return object;
}
