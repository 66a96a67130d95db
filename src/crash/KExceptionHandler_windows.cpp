#include "crash/KExceptionHandler.h"

namespace {

/// Runs on the library's handler thread with the crashed thread suspended.
bool dumped(const wchar_t *dumpPath, const wchar_t *minidumpId, void *context,
            EXCEPTION_POINTERS *exinfo, MDRawAssertionInfo *assertion, bool succeeded)
{
    emit static_cast<KExceptionHandler *>(context)->crash_report_dumped(
        QString::fromWCharArray(dumpPath), QString::fromWCharArray(minidumpId), context, exinfo,
        assertion, succeeded);
    return succeeded;
}

} // namespace

// HANDLER_ALL: unhandled exceptions, invalid parameters and pure virtual calls.
KExceptionHandler::KExceptionHandler(const QString &dumpFolder, int dumpType,
                                     const KCrashReportProcess &)
    : google_breakpad::ExceptionHandler(dumpFolder.toStdWString(), nullptr, dumped, this,
                                        HANDLER_ALL, static_cast<MINIDUMP_TYPE>(dumpType),
                                        static_cast<const wchar_t *>(nullptr), nullptr)
{}

KExceptionHandler::~KExceptionHandler() = default;
