#include "foundation/SystemInfo.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>
#include <sys/statvfs.h>
#include <sys/sysmacros.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace SystemInfo {

namespace {

QString textOf(const QString &path)
{
    constexpr qint64 kLargestText = 1024 * 1024;
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.read(kLargestText)) : QString();
}

/// A partition has its drive as the parent folder.
bool onRemovableDrive(const QByteArray &path)
{
    struct stat status
    {
    };
    if (stat(path.constData(), &status) != 0)
        return false;
    const QString device =
        QStringLiteral("/sys/dev/block/%1:%2").arg(major(status.st_dev)).arg(minor(status.st_dev));
    const QString folder = QFileInfo(device).canonicalFilePath();
    if (folder.isEmpty())
        return false;
    return textOf(folder + QLatin1String("/removable")).trimmed() == QLatin1String("1") ||
           textOf(folder + QLatin1String("/../removable")).trimmed() == QLatin1String("1");
}

} // namespace

CpuTopology::Counts readTopology()
{
    return topologyFromSysfs(QStringLiteral("/sys/devices/system/cpu"));
}

QString cpuName()
{
    return cpuNameFromProc(textOf(QStringLiteral("/proc/cpuinfo")));
}

quint64 physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES);
    const long pageBytes = sysconf(_SC_PAGE_SIZE);
    return pages > 0 && pageBytes > 0 ? quint64(pages) * quint64(pageBytes) : 0;
}

KSystemInfo::DiskSpace diskSpace(const QString &path)
{
    const QByteArray name = QFile::encodeName(path);
    struct statvfs status
    {
    };
    if (statvfs(name.constData(), &status) != 0 || onRemovableDrive(name))
        return {};
    KSystemInfo::DiskSpace space;
    space.free = quint64(status.f_bavail) * status.f_frsize;
    space.total = quint64(status.f_blocks) * status.f_frsize;
    return space;
}

QString osName()
{
    struct utsname kernel
    {
    };
    if (uname(&kernel) != 0)
        return QString();
    return linuxOsName(textOf(QStringLiteral("/etc/os-release")),
                       QString::fromLocal8Bit(kernel.release),
                       QString::fromLocal8Bit(kernel.machine), int(sizeof(void *)) * 8);
}

QString platformWord()
{
    return QStringLiteral("linux");
}

// Program files carry no version here.
QString fileVersion(const QString &)
{
    return QString();
}

} // namespace SystemInfo
