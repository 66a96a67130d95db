#pragma once

// Plain facts about the machine and their texts; static functions, callable from any thread. The
// processors are looked at once, by KFoundation at the start or else by the first query.

#include "foundation/CpuTopology.h"

#include <QString>
#include <QStringList>
#include <QtGlobal>

class KSystemInfo
{
public:
    /// Looks at the processors now, while no worker runs; what was seen is kept.
    static void Prepare();

    /// At least 1 each: of the processors, else what the parallel runtime would use.
    static int PhysicalCoreCount();
    static int LogicalProcessorCount();
    /// Logical processors of a core.
    static int HyperThreadingFactor();
    /// One text for each kind of cache: "Level 1 Data, size(KBytes)= 32".
    static QStringList CacheTexts();

    static QString CpuName();

    /// Bytes of physical memory, 0 where the system does not say.
    static quint64 PhysicalMemory();
    /// The same in units of 256 megabytes, rounded.
    static int TotalMemory();
    static int MemoryUnits(quint64 bytes);

    struct DiskSpace
    {
        quint64 free = 0; ///< bytes that this user may take
        quint64 total = 0;
    };
    /// Of the drive that holds @p path; zeros for a removable drive and where it cannot be told,
    /// which is no sign of a full one.
    static DiskSpace DiskSpaceOf(const QString &path);

    /// Name and version of the operating system, for people.
    static QString OsName();
    /// What the update server calls this platform.
    static QString PlatformWord();
    /// Version of the program file @p path, of as many numbers as it gives; empty where program
    /// files carry none.
    static QString FileVersion(const QString &path);

    /// @p count in the largest fitting unit up to "TB" with at most four characters before it,
    /// cut and not rounded: "1.5 KB", "120 KB".
    static QString BytesToText(quint64 count);
};
