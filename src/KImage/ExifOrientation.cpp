#include "KImage/ExifOrientation.h"

#include <QtEndian>

#include <cstring>

namespace {

constexpr int kHeaderBytes = 8;
constexpr int kEntryBytes = 12;
constexpr quint16 kOrientationTag = 0x0112;
constexpr quint16 kShortType = 3;

} // namespace

int exifOrientation(const uchar *data, qint64 size)
{
    if (size < kHeaderBytes)
        return 0;
    const bool little = std::memcmp(data, "II*\0", 4) == 0;
    if (!little && std::memcmp(data, "MM\0*", 4) != 0)
        return 0;
    const auto u16 = [=](qint64 at) {
        return little ? qFromLittleEndian<quint16>(data + at) : qFromBigEndian<quint16>(data + at);
    };
    const auto u32 = [=](qint64 at) {
        return little ? qFromLittleEndian<quint32>(data + at) : qFromBigEndian<quint32>(data + at);
    };
    const qint64 directory = u32(4);
    if (directory < kHeaderBytes || directory + 2 > size)
        return 0;
    const int count = u16(directory);
    if (directory + 2 + qint64(count) * kEntryBytes > size)
        return 0;
    int orientation = 1;
    bool found = false;
    for (int i = 0; i < count; ++i) {
        const qint64 entry = directory + 2 + qint64(i) * kEntryBytes;
        if (u16(entry) != kOrientationTag)
            continue;
        orientation = u16(entry + 8);
        if (found || u16(entry + 2) != kShortType || u32(entry + 4) != 1 || orientation < 1 ||
            orientation > 8)
            return 0;
        found = true;
    }
    return orientation;
}
