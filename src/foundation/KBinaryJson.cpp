#include "foundation/KBinaryJson.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonValue>
#include <QtEndian>

#include <cstring>

namespace {

// Header: tag and version. Then the outermost container: its size, its count shifted by one with
// the lowest bit set for a map, the offset of its table. Offsets count from their container's
// start. The table of a list holds value words; that of a map the offsets of entries, each a value
// word and a key.
constexpr char kTag[] = "qbjs";
constexpr quint32 kVersion = 1;
constexpr quint32 kHeaderBytes = 8;
constexpr quint32 kContainerBytes = 12;
constexpr quint32 kWordBytes = 4;
constexpr int kMaxDepth = 32;

enum ValueType : quint32 { Null = 0, Bool = 1, Double = 2, String = 3, Array = 4, Object = 5 };

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

/// How much of a document may still be read. Parts that overlap, so that together they are longer
/// than the document, are refused: a few bytes could stand for any amount of memory.
class Budget
{
public:
    explicit Budget(quint32 bytes)
        : m_left(bytes)
    {}

    [[nodiscard]] bool spend(quint64 bytes)
    {
        const bool enough = bytes <= m_left;
        m_left -= enough ? bytes : 0;
        return enough;
    }

private:
    quint64 m_left;
};

/// The bytes of one container; every read is checked against them.
class Container
{
public:
    /// Nothing when its head claims more than @p available bytes.
    static std::optional<Container> at(const char *start, quint64 available)
    {
        if (available < kContainerBytes)
            return std::nullopt;
        const Container container(start);
        const bool fits = container.m_size >= kContainerBytes && container.m_size <= available;
        return fits ? std::optional(container) : std::nullopt;
    }

    bool isMap() const { return m_isMap; }

    /// @p depth: how many containers deep values may lie, 0 for plain values only.
    std::optional<QJsonObject> map(Budget &budget, int depth) const
    {
        QJsonObject object;
        for (quint64 i = 0; i < m_count; ++i) {
            const auto offset = number<quint32>(m_table + kWordBytes * i);
            const auto word = offset ? number<quint32>(*offset) : std::nullopt;
            if (!word || !budget.spend(kWordBytes))
                return std::nullopt;
            const ValueWord entry(*word);
            const auto key = text(quint64(*offset) + kWordBytes, entry.latinKey, budget);
            const auto content = value(entry, budget, depth);
            if (!key || !content)
                return std::nullopt;
            object.insert(*key, *content);
        }
        return object;
    }

private:
    explicit Container(const char *start)
        : m_start(start)
        , m_size(qFromLittleEndian<quint32>(start))
        , m_count(qFromLittleEndian<quint32>(start + 4) >> 1)
        , m_isMap((qFromLittleEndian<quint32>(start + 4) & 1U) != 0)
        , m_table(qFromLittleEndian<quint32>(start + 8))
    {}

    std::optional<QJsonArray> list(Budget &budget, int depth) const
    {
        QJsonArray array;
        for (quint64 i = 0; i < m_count; ++i) {
            const auto word = number<quint32>(m_table + kWordBytes * i);
            if (!word || !budget.spend(kWordBytes))
                return std::nullopt;
            const auto content = value(ValueWord(*word), budget, depth);
            if (!content)
                return std::nullopt;
            array.append(*content);
        }
        return array;
    }

    std::optional<QJsonValue> nested(const ValueWord &word, Budget &budget, int depth) const
    {
        if (depth == 0 || word.value > m_size)
            return std::nullopt;
        const auto container = at(m_start + word.value, m_size - word.value);
        if (!container || container->isMap() != (word.type == Object))
            return std::nullopt;
        if (container->isMap()) {
            const auto object = container->map(budget, depth - 1);
            return object ? std::optional<QJsonValue>(*object) : std::nullopt;
        }
        const auto array = container->list(budget, depth - 1);
        return array ? std::optional<QJsonValue>(*array) : std::nullopt;
    }

    template <class Number>
    std::optional<Number> number(quint64 offset) const
    {
        if (!holds(offset, sizeof(Number)))
            return std::nullopt;
        return qFromLittleEndian<Number>(m_start + offset);
    }

    std::optional<QString> text(quint64 offset, bool latin, Budget &budget) const
    {
        if (latin) {
            const auto length = number<quint16>(offset);
            if (!length || !holds(offset + 2, *length) || !budget.spend(*length))
                return std::nullopt;
            return QString::fromLatin1(m_start + offset + 2, *length);
        }
        const auto length = number<quint32>(offset);
        if (!length || !holds(offset + 4, quint64(*length) * 2) || !budget.spend(*length))
            return std::nullopt;
        QString text(int(*length), Qt::Uninitialized);
        qFromLittleEndian<quint16>(m_start + offset + 4, qsizetype(*length), text.data());
        return text;
    }

    std::optional<QJsonValue> value(const ValueWord &word, Budget &budget, int depth) const
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
            const auto string = text(word.value, word.shortForm, budget);
            if (!string)
                return std::nullopt;
            return QJsonValue(*string);
        }
        case Array:
        case Object:
            return nested(word, budget, depth);
        default:
            return std::nullopt;
        }
    }

    [[nodiscard]] bool holds(quint64 offset, quint64 count) const
    {
        return offset <= m_size && count <= m_size - offset;
    }

    const char *m_start;
    quint32 m_size;
    quint32 m_count;
    bool m_isMap;
    quint32 m_table;
};

} // namespace

QByteArray KBinaryJson::toBytes(const QJsonObject &object)
{
    return QJsonDocument(object).toBinaryData();
}

std::optional<QJsonObject> KBinaryJson::fromBytes(const QByteArray &bytes, Values values)
{
    const auto available = quint32(bytes.size());
    if (available < kHeaderBytes || !bytes.startsWith(kTag) ||
        qFromLittleEndian<quint32>(bytes.constData() + 4) != kVersion)
        return std::nullopt;
    const auto root = Container::at(bytes.constData() + kHeaderBytes, available - kHeaderBytes);
    if (!root || !root->isMap())
        return std::nullopt;
    Budget budget(available);
    return root->map(budget, values == Values::Nested ? kMaxDepth : 0);
}
