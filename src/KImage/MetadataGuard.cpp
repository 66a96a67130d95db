#include "KImage/MetadataGuard.h"

#include <QFile>
#include <QSet>
#include <QVector>
#include <QtEndian>

#include <algorithm>
#include <array>

namespace MetadataGuard {

namespace {

constexpr int kEntryBytes = 12;
/// Those with more entries Exiv2 takes for no directories at all.
constexpr int kMostEntries = 256;
/// Exiv2 follows fewer.
constexpr int kMostDirectories = 64;

constexpr quint16 kXmp = 700;
/// XMP, IPTC, an editor's resources, colour profile.
constexpr std::array<quint16, 4> kPacketTags{kXmp, 33723, 34377, 34675};
/// Values that are offsets of further directories: SubIFDs, EXIF, GPS, interoperability.
constexpr std::array<quint16, 4> kDirectoryTags{330, 34665, 34853, 40965};

/// Bytes of one value of each type; 1 for types that are unknown.
qint64 typeBytes(quint16 type)
{
    constexpr std::array<int, 14> kBytes{1, 1, 1, 2, 4, 8, 1, 1, 2, 4, 8, 4, 8, 4};
    return type < kBytes.size() ? kBytes[type] : 1;
}

class Tiff
{
public:
    Tiff(const uchar *data, qint64 size)
        : m_data(data)
        , m_size(size)
        , m_bigEndian(data[0] == 'M')
    {}

    TiffClaims claims()
    {
        constexpr int kFirstDirectory = 4;
        follow(number<quint32>(kFirstDirectory));
        while (!m_pending.isEmpty())
            walk(m_pending.takeLast());
        return m_claims;
    }

private:
    /// 0 beyond the end of the file.
    template <class Number>
    Number number(qint64 at) const
    {
        if (at > m_size - qint64(sizeof(Number)))
            return 0;
        return m_bigEndian ? qFromBigEndian<Number>(m_data + at)
                           : qFromLittleEndian<Number>(m_data + at);
    }

    /// One directory, those it names, and the next in its chain.
    void walk(quint32 offset)
    {
        constexpr int kCountBytes = 2;
        const auto count = qint64(number<quint16>(offset));
        if (count > kMostEntries)
            return;
        for (qint64 i = 0; i < count; ++i)
            entry(offset + kCountBytes + i * kEntryBytes);
        follow(number<quint32>(offset + kCountBytes + count * kEntryBytes));
    }

    void entry(qint64 at)
    {
        constexpr int kInPlace = 4;
        const auto tag = number<quint16>(at);
        const auto count = qint64(number<quint32>(at + 4));
        const qint64 bytes = count * typeBytes(number<quint16>(at + 2));
        if (bytes > m_size)
            return; // cannot be there, and so is not read
        if (tag == kXmp)
            m_claims.xmp = std::max(m_claims.xmp, bytes);
        if (contains(kPacketTags, tag))
            m_claims.largestPacket = std::max(m_claims.largestPacket, bytes);
        m_claims.values += bytes > kInPlace ? bytes : 0;
        if (contains(kDirectoryTags, tag)) {
            const qint64 first = count == 1 ? at + 8 : number<quint32>(at + 8);
            for (qint64 i = 0; i < std::min<qint64>(count, kMostDirectories); ++i)
                follow(number<quint32>(first + i * 4));
        }
    }

    void follow(quint32 offset)
    {
        if (offset == 0 || m_seen.contains(offset) || m_seen.size() == kMostDirectories)
            return;
        m_seen.insert(offset);
        m_pending.append(offset);
    }

    template <class Tags>
    static bool contains(const Tags &tags, quint16 tag)
    {
        return std::find(tags.begin(), tags.end(), tag) != tags.end();
    }

    const uchar *m_data;
    qint64 m_size;
    bool m_bigEndian;
    TiffClaims m_claims;
    QVector<quint32> m_pending;
    QSet<quint32> m_seen;
};

} // namespace

TiffClaims claimsOf(const uchar *data, qint64 size)
{
    constexpr int kHeaderBytes = 8;
    if (size < kHeaderBytes || data[0] != data[1] || (data[0] != 'I' && data[0] != 'M'))
        return {};
    return Tiff(data, size).claims();
}

bool packetsWithinBounds(const QString &path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly) || file.size() <= kLargestPacket)
        return true; // what cannot be read is told apart by the decoder
    const uchar *data = file.map(0, file.size());
    return !data || claimsOf(data, file.size()).largestPacket <= kLargestPacket;
}

} // namespace MetadataGuard
