#include "crash/KExceptionHandler.h"

#include "crash/ReporterLauncher_linux.h"

#include <QFile>

namespace {

/// Runs on the crashed thread inside its signal.
bool dumped(const google_breakpad::MinidumpDescriptor &descriptor, void *launcher, bool succeeded)
{
    static_cast<ReporterLauncher *>(launcher)->start(descriptor.path());
    return succeeded;
}

std::unique_ptr<ReporterLauncher> launcherOf(const KCrashReportProcess &process)
{
    return std::make_unique<ReporterLauncher>(process);
}

} // namespace

// The base takes the launcher's address, so the launcher is made first and kept afterwards.
KExceptionHandler::KExceptionHandler(const QString &dumpFolder, int,
                                     const KCrashReportProcess &process)
    : KExceptionHandler(dumpFolder, launcherOf(process))
{}

KExceptionHandler::KExceptionHandler(const QString &dumpFolder,
                                     std::unique_ptr<ReporterLauncher> launcher)
    // NOLINTNEXTLINE(bugprone-throw-keyword-missing): a handler of exceptions, not one itself.
    : google_breakpad::ExceptionHandler(
          google_breakpad::MinidumpDescriptor(QFile::encodeName(dumpFolder).toStdString()), nullptr,
          dumped, launcher.get(), true, -1)
    , m_launcher(std::move(launcher))
{}

KExceptionHandler::~KExceptionHandler() = default;
