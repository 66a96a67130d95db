#include "crash/reporter/CrashReport.h"

#include <QDir>

std::optional<CrashReport> CrashReport::fromArguments(const QStringList &arguments)
{
    constexpr int kArguments = 9;
    if (arguments.size() != kArguments)
        return std::nullopt;
    CrashReport report;
    QString *const texts[] = {&report.dumpFolder,     &report.productName, &report.extraText,
                              &report.productVersion, &report.locale,      &report.dumpPath,
                              &report.minidumpId,     &report.extraText2};
    auto argument = arguments.cbegin();
    for (QString *text : texts)
        *text = *argument++;
    report.manualMode = *argument == QLatin1String("1");
    return report;
}

QString CrashReport::dumpFile() const
{
    if (minidumpId.isEmpty())
        return {};
    const QString folder = dumpPath.isEmpty() ? dumpFolder : dumpPath;
    return QDir(folder).filePath(minidumpId + QLatin1String(".dmp"));
}
