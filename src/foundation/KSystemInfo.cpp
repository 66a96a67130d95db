#include "foundation/KSystemInfo.h"

#include "foundation/SystemInfo.h"

#include <QCoreApplication>
#include <QRegularExpression>

#include <cmath>

#ifdef _OPENMP
#include <omp.h>
#endif

namespace {

/// Both counts of one look, so that they always agree.
const CpuTopology::Counts &topology()
{
    static const CpuTopology::Counts counts = SystemInfo::readTopology();
    return counts;
}

int parallelThreads()
{
#ifdef _OPENMP
    return omp_get_max_threads();
#else
    return 1;
#endif
}

} // namespace

void KSystemInfo::Prepare()
{
    topology();
}

int KSystemInfo::PhysicalCoreCount()
{
    return CpuTopology::coreCount(topology(), parallelThreads());
}

int KSystemInfo::LogicalProcessorCount()
{
    return CpuTopology::logicalCount(topology(), parallelThreads());
}

int KSystemInfo::HyperThreadingFactor()
{
    return LogicalProcessorCount() / PhysicalCoreCount();
}

QStringList KSystemInfo::CacheTexts()
{
    return topology().caches;
}

QString KSystemInfo::CpuName()
{
    return SystemInfo::cpuName();
}

quint64 KSystemInfo::PhysicalMemory()
{
    return SystemInfo::physicalMemory();
}

int KSystemInfo::TotalMemory()
{
    return MemoryUnits(PhysicalMemory());
}

int KSystemInfo::MemoryUnits(quint64 bytes)
{
    constexpr double kUnitsPerByte = 3.7252903e-9; // 2 to the power -28
    return int(std::floor(double(bytes) * kUnitsPerByte + 0.5));
}

KSystemInfo::DiskSpace KSystemInfo::DiskSpaceOf(const QString &path)
{
    return SystemInfo::diskSpace(path);
}

QString KSystemInfo::OsName()
{
    return SystemInfo::osName();
}

QString KSystemInfo::PlatformWord()
{
    return SystemInfo::platformWord();
}

QString KSystemInfo::FileVersion(const QString &path)
{
    return SystemInfo::fileVersion(path);
}

QString KSystemInfo::BytesToText(quint64 count)
{
    static const char *const units[] = {
        QT_TRANSLATE_NOOP("KSystemInfo", "Bytes"), QT_TRANSLATE_NOOP("KSystemInfo", "KB"),
        QT_TRANSLATE_NOOP("KSystemInfo", "MB"), QT_TRANSLATE_NOOP("KSystemInfo", "GB"),
        QT_TRANSLATE_NOOP("KSystemInfo", "TB")};
    constexpr int last = int(sizeof(units) / sizeof(units[0])) - 1;

    auto value = float(count);
    int unit = 0;
    while (value >= 1024.0F && unit < last) {
        value *= 0.0009765625F;
        ++unit;
    }

    QString number = QStringLiteral("%1").arg(double(value)).left(4);
    static const QRegularExpression separator(QStringLiteral("[\\., ]"));
    if (number.lastIndexOf(separator) == 3)
        number.truncate(3);
    return QStringLiteral("%1 %2").arg(number,
                                       QCoreApplication::translate("KSystemInfo", units[unit]));
}
