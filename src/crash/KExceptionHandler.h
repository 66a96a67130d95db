#pragma once

// Breakpad's in-process handler as an object of Qt. CrashHandler owns the one of the program, made
// and destroyed on the GUI thread; its callback runs wherever the crash happened.

#include <QObject>
#include <QString>

#include <memory>

#ifdef Q_OS_WIN
#include <client/windows/handler/exception_handler.h>
#else
#include <client/linux/handler/exception_handler.h>
#include <google_breakpad/common/minidump_format.h>
// Belongs to the signal's one shape for all platforms.
struct EXCEPTION_POINTERS;
#endif

class KCrashReportProcess;
class ReporterLauncher;

class KExceptionHandler : public QObject, public google_breakpad::ExceptionHandler
{
    Q_OBJECT

public:
    /// @p dumpType: see CrashHandler::Settings. @p process tells what a crash starts.
    KExceptionHandler(const QString &dumpFolder, int dumpType, const KCrashReportProcess &process);
    ~KExceptionHandler() override;

signals:
    /// A dump was written, or could not be. Emitted on Windows, where a thread of the library's own
    /// runs the callback; on Linux it runs inside a signal of the crashed thread, where nothing of
    /// Qt may be called, and the reporter is started without it.
    void crash_report_dumped(QString dump_path, QString minidump_id, void *context,
                             EXCEPTION_POINTERS *exinfo, MDRawAssertionInfo *assertion,
                             bool succeeded);

private:
#ifndef Q_OS_WIN
    KExceptionHandler(const QString &dumpFolder, std::unique_ptr<ReporterLauncher> launcher);

    std::unique_ptr<ReporterLauncher> m_launcher;
#endif
};
