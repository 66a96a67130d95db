#include "crash/KCrashReportProcess.h"

#include <QCoreApplication>
#include <QProcess>
#include <QSysInfo>

namespace {

QString reporterName()
{
    return QSysInfo::kernelType() == QLatin1String("winnt")
               ? QStringLiteral("KCrashReporter_win32.exe")
               : QStringLiteral("KCrashReporter_linux");
}

} // namespace

KCrashReportProcess::KCrashReportProcess(Facts facts, QObject *parent)
    : QObject(parent)
    , m_program(QCoreApplication::applicationDirPath() + QLatin1Char('/') + reporterName())
    , m_workingDirectory(QStringLiteral("."))
    , m_facts(std::move(facts))
{}

QStringList KCrashReportProcess::arguments(const QString &dumpPath, const QString &minidumpId) const
{
    return {m_facts.dumpFolder,
            m_facts.productName,
            m_facts.extraText,
            m_facts.productVersion,
            m_facts.locale,
            dumpPath,
            minidumpId,
            m_facts.extraText2,
            m_manualMode ? QStringLiteral("1") : QStringLiteral("0")};
}

void KCrashReportProcess::run(QString dump_path, QString minidump_id)
{
    QProcess::startDetached(m_program, arguments(dump_path, minidump_id), m_workingDirectory);
}
