#include "foundation/CpuTopology.h"

#include <QSet>

#include <algorithm>

namespace CpuTopology {

namespace {

/// Kinds by their number in leaf 4.
QString kindOfLeaf4(quint32 number)
{
    switch (number) {
    case 1:
        return QStringLiteral("Data");
    case 2:
        return QStringLiteral("Instruction");
    default:
        return QStringLiteral("Unified");
    }
}

/// Of the descriptor table in Intel's manual (volume 2A, CPUID, "Encoding of CPUID Leaf 2
/// Descriptors"): the caches of processors too old for leaf 4.
struct Descriptor
{
    quint8 byte;
    int level;
    const char *kind;
    int kilobytes;
};
constexpr Descriptor kDescriptors[] = {
    {0x06, 1, "Instruction", 8},  {0x08, 1, "Instruction", 16}, {0x09, 1, "Instruction", 32},
    {0x0A, 1, "Data", 8},         {0x0C, 1, "Data", 16},        {0x0D, 1, "Data", 16},
    {0x0E, 1, "Data", 24},        {0x1D, 2, "Unified", 128},    {0x21, 2, "Unified", 256},
    {0x22, 3, "Unified", 512},    {0x23, 3, "Unified", 1024},   {0x24, 2, "Unified", 1024},
    {0x25, 3, "Unified", 2048},   {0x29, 3, "Unified", 4096},   {0x2C, 1, "Data", 32},
    {0x30, 1, "Instruction", 32}, {0x41, 2, "Unified", 128},    {0x42, 2, "Unified", 256},
    {0x43, 2, "Unified", 512},    {0x44, 2, "Unified", 1024},   {0x45, 2, "Unified", 2048},
    {0x46, 3, "Unified", 4096},   {0x47, 3, "Unified", 8192},   {0x48, 2, "Unified", 3072},
    {0x4A, 3, "Unified", 6144},   {0x4B, 3, "Unified", 8192},   {0x4C, 3, "Unified", 12288},
    {0x4D, 3, "Unified", 16384},  {0x4E, 2, "Unified", 6144},   {0x60, 1, "Data", 16},
    {0x66, 1, "Data", 8},         {0x67, 1, "Data", 16},        {0x68, 1, "Data", 32},
    {0x78, 2, "Unified", 1024},   {0x79, 2, "Unified", 128},    {0x7A, 2, "Unified", 256},
    {0x7B, 2, "Unified", 512},    {0x7C, 2, "Unified", 1024},   {0x7D, 2, "Unified", 2048},
    {0x7F, 2, "Unified", 512},    {0x80, 2, "Unified", 512},    {0x82, 2, "Unified", 256},
    {0x83, 2, "Unified", 512},    {0x84, 2, "Unified", 1024},   {0x85, 2, "Unified", 2048},
    {0x86, 2, "Unified", 512},    {0x87, 2, "Unified", 1024},   {0xD0, 3, "Unified", 512},
    {0xD1, 3, "Unified", 1024},   {0xD2, 3, "Unified", 2048},   {0xD6, 3, "Unified", 1024},
    {0xD7, 3, "Unified", 2048},   {0xD8, 3, "Unified", 4096},   {0xDC, 3, "Unified", 1536},
    {0xDD, 3, "Unified", 3072},   {0xDE, 3, "Unified", 6144},   {0xE2, 3, "Unified", 2048},
    {0xE3, 3, "Unified", 4096},   {0xE4, 3, "Unified", 8192},   {0xEA, 3, "Unified", 12288},
    {0xEB, 3, "Unified", 18432},  {0xEC, 3, "Unified", 24576},
};

/// The lower @p width bits; a width of 32 or more keeps all.
quint32 lowBits(quint32 value, int width)
{
    return width >= 32 ? value : value & ((quint32(1) << width) - 1);
}

quint32 shiftedDown(quint32 value, int width)
{
    return width >= 32 ? 0 : value >> width;
}

} // namespace

Counts count(const QVector<Place> &places)
{
    QSet<quint32> packages;
    QSet<quint64> cores;
    for (const Place &place : places) {
        packages.insert(place.package);
        cores.insert(quint64(place.package) << 32 | place.core);
    }
    Counts counts;
    counts.packages = packages.size();
    counts.cores = cores.size();
    counts.logical = places.size();
    return counts;
}

std::optional<MaskBit> maskBit(int index, int groups, int bits)
{
    if (index < 0 || bits <= 0 || index / bits >= groups)
        return std::nullopt;
    return MaskBit{index / bits, index % bits};
}

int bitsFor(quint32 values)
{
    int bits = 0;
    while (bits < 32 && (quint64(1) << bits) < values)
        ++bits;
    return bits;
}

ApicWidths legacyWidths(quint32 logicalPerPackage, quint32 coresPerPackage)
{
    const quint32 cores = std::max(coresPerPackage, 1U);
    ApicWidths widths;
    widths.threadAndCore = bitsFor(std::max(logicalPerPackage, cores));
    widths.thread = std::max(widths.threadAndCore - bitsFor(cores), 0);
    return widths;
}

Place placeOf(quint32 apicId, const ApicWidths &widths)
{
    Place place;
    place.package = shiftedDown(apicId, widths.threadAndCore);
    place.core = shiftedDown(lowBits(apicId, widths.threadAndCore), widths.thread);
    return place;
}

QString cacheOfLeaf4(quint32 eax, quint32 ebx, quint32 ecx)
{
    const quint32 kind = eax & 0x1F;
    if (kind == 0)
        return QString();
    const quint64 ways = (ebx >> 22) + 1;
    const quint64 partitions = ((ebx >> 12) & 0x3FF) + 1;
    const quint64 lineBytes = (ebx & 0xFFF) + 1;
    const quint64 sets = quint64(ecx) + 1;
    return cacheText(int((eax >> 5) & 7), kindOfLeaf4(kind),
                     int(ways * partitions * lineBytes * sets / 1024));
}

QString cacheOfDescriptor(quint8 descriptor)
{
    const auto *found =
        std::find_if(std::begin(kDescriptors), std::end(kDescriptors),
                     [descriptor](const Descriptor &entry) { return entry.byte == descriptor; });
    if (found == std::end(kDescriptors))
        return QString();
    return cacheText(found->level, QLatin1String(found->kind), found->kilobytes);
}

QString cacheText(int level, const QString &kind, int kilobytes)
{
    return QString::asprintf("Level %d %s, size(KBytes)= %d", level, qPrintable(kind), kilobytes);
}

int coreCount(const Counts &counts, int fallback)
{
    if (counts.cores > 0 && counts.cores <= counts.logical)
        return counts.cores;
    return std::max(fallback, 1);
}

int logicalCount(const Counts &counts, int fallback)
{
    return counts.logical > 0 ? counts.logical : std::max(fallback, 1);
}

} // namespace CpuTopology
