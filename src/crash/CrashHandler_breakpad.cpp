// Installing the handler where Breakpad is built in.

#include "crash/CrashHandler.h"

#include "crash/KCrashReportProcess.h"
#include "crash/KExceptionHandler.h"

#include <QDebug>

std::unique_ptr<QObject> CrashHandler::install(const Settings &settings,
                                               const KCrashReportProcess &process)
{
    auto handler =
        std::make_unique<KExceptionHandler>(settings.dumpFolder, settings.dumpType, process);
    // Direct, since no event loop turns after a crash.
    const auto connection =
        QObject::connect(handler.get(),
                         SIGNAL(crash_report_dumped(QString, QString, void *, EXCEPTION_POINTERS *,
                                                    MDRawAssertionInfo *, bool)),
                         &process, SLOT(run(QString, QString)), Qt::DirectConnection);
    const QByteArray folder = settings.dumpFolder.toLocal8Bit();
    if (connection)
        qInfo("Crash dump path : %s", folder.constData());
    else
        qWarning("Failed at connecting the crash report dumped slot.... %s", folder.constData());
    return handler;
}
