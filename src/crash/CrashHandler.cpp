#include "crash/CrashHandler.h"

#include "crash/KCrashReportProcess.h"

CrashHandler::CrashHandler(const Settings &settings)
    : m_process(std::make_unique<KCrashReportProcess>(KCrashReportProcess::Facts{
          settings.dumpFolder, settings.productName, settings.productVersion, settings.locale,
          settings.extraText, QString()}))
    , m_handler(install(settings, *m_process))
{}

CrashHandler::~CrashHandler() = default;

void CrashHandler::showReporter()
{
    m_process->setManualMode(true);
    m_process->run(QString(), QString());
    m_process->setManualMode(false);
}
