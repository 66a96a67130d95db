#pragma once

// What processors a machine has: pure arithmetic on what the platform files read, callable from any
// thread. The way from APIC ids to packages, cores and threads is that of Intel's published
// processor topology enumeration method.

#include <QString>
#include <QStringList>
#include <QVector>
#include <QtGlobal>

#include <optional>

namespace CpuTopology {

/// Where one logical processor sits.
struct Place
{
    quint32 package = 0;
    quint32 core = 0; ///< within the package
};

struct Counts
{
    int packages = 0;
    int cores = 0;      ///< of all packages; 0: could not be read
    int logical = 0;    ///< hardware threads; 0: could not be read
    QStringList caches; ///< one text for each kind of cache
};

/// Counts the distinct packages and cores.
Counts count(const QVector<Place> &places);

/// Widths of the two lower fields of an APIC id, in bits.
struct ApicWidths
{
    int thread = 0;
    int threadAndCore = 0;
};

/// The bit of logical processor @p index in masks of @p bits bits for each group.
struct MaskBit
{
    int group = 0;
    int bit = 0;
};

/// Nothing when @p groups masks do not reach so far.
std::optional<MaskBit> maskBit(int index, int groups, int bits);

/// Bits that hold @p values different values.
int bitsFor(quint32 values);

/// From leaf 1 (EBX bits 23 to 16: logical processors of a package) and leaf 4 (EAX bits 31 to 26,
/// plus one: cores of a package), for processors without leaf 0xB.
ApicWidths legacyWidths(quint32 logicalPerPackage, quint32 coresPerPackage);

Place placeOf(quint32 apicId, const ApicWidths &widths);

/// A cache of leaf 4: its registers EAX, EBX and ECX as a text, empty for "no more caches".
QString cacheOfLeaf4(quint32 eax, quint32 ebx, quint32 ecx);

/// A cache of leaf 2 by its descriptor byte, empty for a byte that describes none.
QString cacheOfDescriptor(quint8 descriptor);

QString cacheText(int level, const QString &kind, int kilobytes);

/// The counts to give out: what was read, else @p fallback (the parallel runtime's thread count),
/// else 1. A core count above the logical one is read wrongly and falls back too.
int coreCount(const Counts &counts, int fallback);
int logicalCount(const Counts &counts, int fallback);

} // namespace CpuTopology
