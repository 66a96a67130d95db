#include "foundation/SystemInfo.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QHash>
#include <QRegularExpression>

namespace SystemInfo {

namespace {

/// First line of a small file, trimmed; empty when there is none.
QString firstLine(const QString &path)
{
    constexpr int kLongestLine = 4096;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        return QString();
    return QString::fromUtf8(file.readLine(kLongestLine)).trimmed();
}

QString translated(const char *text)
{
    return QCoreApplication::translate("KSystemInfo", text);
}

QString unquoted(const QString &text)
{
    const bool quoted = text.size() >= 2 && (text.startsWith('"') || text.startsWith('\'')) &&
                        text.endsWith(text.at(0));
    return quoted ? text.mid(1, text.size() - 2) : text;
}

/// "48K" or "2M" in kilobytes, -1 for another text.
int kilobytes(const QString &text)
{
    bool ok = false;
    const int number = text.left(text.size() - 1).toInt(&ok);
    if (!ok || number < 0 || number > 1024 * 1024)
        return -1;
    if (text.endsWith('K'))
        return number;
    return text.endsWith('M') ? number * 1024 : -1;
}

QStringList cachesFromSysfs(const QDir &processor)
{
    QStringList texts;
    const QStringList indices =
        QDir(processor.filePath(QStringLiteral("cache")))
            .entryList({QStringLiteral("index*")}, QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    for (const QString &index : indices) {
        const QString folder = processor.filePath(QStringLiteral("cache/") + index);
        const int level = firstLine(folder + QLatin1String("/level")).toInt();
        const int size = kilobytes(firstLine(folder + QLatin1String("/size")));
        if (level > 0 && size >= 0)
            texts +=
                CpuTopology::cacheText(level, firstLine(folder + QLatin1String("/type")), size);
    }
    return texts;
}

} // namespace

CpuTopology::Counts topologyFromSysfs(const QString &folder)
{
    static const QRegularExpression kProcessor(QStringLiteral("^cpu\\d+$"));
    const QDir root(folder);
    const QStringList names = root.entryList(QDir::Dirs | QDir::NoDotAndDotDot, QDir::Name);
    QVector<CpuTopology::Place> places;
    QStringList caches;
    for (const QString &name : names) {
        if (!kProcessor.match(name).hasMatch())
            continue;
        const QDir processor(root.filePath(name));
        // Processors that cannot be switched off have no such file.
        if (firstLine(processor.filePath(QStringLiteral("online"))) == QLatin1String("0"))
            continue;
        bool hasPackage = false;
        bool hasCore = false;
        CpuTopology::Place place;
        // Some virtual machines say -1 where they know no package.
        place.package =
            quint32(firstLine(processor.filePath(QStringLiteral("topology/physical_package_id")))
                        .toInt(&hasPackage));
        place.core = quint32(
            firstLine(processor.filePath(QStringLiteral("topology/core_id"))).toInt(&hasCore));
        if (!hasPackage || !hasCore)
            return CpuTopology::Counts();
        places.append(place);
        if (caches.isEmpty())
            caches = cachesFromSysfs(processor);
    }
    CpuTopology::Counts counts = CpuTopology::count(places);
    counts.caches = caches;
    return counts;
}

QString cpuNameFromProc(const QString &text)
{
    static const QRegularExpression kModel(
        QStringLiteral("^(?:model name|Model|Hardware)\\s*:([^\\n]*)$"),
        QRegularExpression::MultilineOption);
    return QStringLiteral("%1").arg(kModel.match(text).captured(1).trimmed());
}

QString linuxOsName(const QString &osRelease, const QString &kernelVersion, const QString &machine,
                    int processBits)
{
    QHash<QString, QString> values;
    const QStringList lines = osRelease.split('\n');
    for (const QString &line : lines)
        values.insert(line.section('=', 0, 0).trimmed(), unquoted(line.section('=', 1).trimmed()));
    QString name = values.value(QStringLiteral("PRETTY_NAME"));
    if (name.isEmpty())
        name = values.value(QStringLiteral("NAME"), QStringLiteral("Linux"));
    if (processBits == 32 && machine.contains(QLatin1String("64")))
        name += QLatin1String(" 64-bit");
    return name + QStringLiteral(" | %1").arg(kernelVersion);
}

QString windowsOsName(const WindowsVersion &version)
{
    const struct
    {
        int major;
        int minor;
        const char *client;
        const char *server;
    } names[] = {{6, 0, "Vista", "Server 2008"},
                 {6, 1, "7", "Server 2008 R2"},
                 {5, 1, "XP", "XP"},
                 {5, 2, "Server 2003", "Server 2003"},
                 {5, 0, "2000", "2000"}};
    QString name = QStringLiteral(" noname");
    for (const auto &entry : names) {
        if (entry.major == version.major && entry.minor == version.minor)
            name = QLatin1String(version.server ? entry.server : entry.client);
    }
    QString text = QStringLiteral("Microsoft Windows ") + name;
    if (version.wow64)
        text += translated(QT_TRANSLATE_NOOP("KSystemInfo", " 64-bit"));
    if (version.servicePack > 0)
        text += translated(QT_TRANSLATE_NOOP("KSystemInfo", " SP%1")).arg(version.servicePack);
    return text + QStringLiteral(" | %1").arg(version.kernelFileVersion);
}

QString productVersionPath(quint16 language, quint16 codePage)
{
    return QString::asprintf("\\StringFileInfo\\%02X%02X%02X%02X\\ProductVersion",
                             uint(language >> 8), uint(language & 0xFF), uint(codePage >> 8),
                             uint(codePage & 0xFF));
}

QString productVersionPath(quint16 language)
{
    return QString::asprintf("\\StringFileInfo\\%04X04B0\\ProductVersion", uint(language));
}

QString versionFromResource(const QString &text)
{
    static const QRegularExpression kSeparator(QStringLiteral("[\\.,]"));
    QStringList numbers;
    const QStringList parts = text.split(kSeparator, Qt::SkipEmptyParts);
    for (const QString &part : parts)
        numbers += part.trimmed();
    return numbers.join('.');
}

} // namespace SystemInfo
