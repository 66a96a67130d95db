#pragma once

// What KSystemInfo asks of the platform, one file each, and the decisions on the answers. Free
// functions without state, callable from any thread.

#include "foundation/CpuTopology.h"
#include "foundation/KSystemInfo.h"

namespace SystemInfo {

// Answered by SystemInfo_<platform>.cpp; unknown facts are empty or 0.
CpuTopology::Counts readTopology();
QString cpuName();
quint64 physicalMemory();
KSystemInfo::DiskSpace diskSpace(const QString &path);
QString osName();
QString platformWord();
QString fileVersion(const QString &path);

// Decisions for Linux.

/// From a tree like that below /sys/devices/system/cpu.
CpuTopology::Counts topologyFromSysfs(const QString &folder);
/// The first "model name" of a text like /proc/cpuinfo, trimmed.
QString cpuNameFromProc(const QString &text);
/// Name from a text like /etc/os-release, " 64-bit" for a 32-bit process on a 64-bit system, and
/// the kernel's version.
QString linuxOsName(const QString &osRelease, const QString &kernelVersion, const QString &machine,
                    int processBits);

// Decisions for Windows.

/// What the version queries of Windows answer.
struct WindowsVersion
{
    int major = 0;
    int minor = 0;
    bool server = false;
    int servicePack = 0;
    bool wow64 = false; ///< a 32-bit process on a 64-bit system
    QString kernelFileVersion;
};
QString windowsOsName(const WindowsVersion &version);

/// Path of the product version in a version resource: of a language and code page, or of a
/// language in Unicode.
QString productVersionPath(quint16 language, quint16 codePage);
QString productVersionPath(quint16 language);

/// A version text's numbers, which commas or points separate, joined by points.
QString versionFromResource(const QString &text);

} // namespace SystemInfo
