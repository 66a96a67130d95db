#pragma once

// Starts the reporter from inside a crashed process. Owned by KExceptionHandler; made on the GUI
// thread, start() runs in a signal handler of the crashed thread.

#include <QByteArrayList>

#include <array>
#include <climits>
#include <vector>

class KCrashReportProcess;

class ReporterLauncher
{
public:
    /// Prepares the command line, since nothing may be allocated after a crash.
    explicit ReporterLauncher(const KCrashReportProcess &process);
    ReporterLauncher(const ReporterLauncher &) = delete;
    ReporterLauncher &operator=(const ReporterLauncher &) = delete;

    /// Starts the reporter for the dump at @p dumpFile, detached. Calls nothing but what may be
    /// called in a signal handler: no heap, no lock, no Qt.
    void start(const char *dumpFile);

private:
    QByteArray m_program;
    QByteArrayList m_texts;
    std::vector<char *> m_arguments;
    std::array<char, PATH_MAX> m_dumpFolder{};
    std::array<char, NAME_MAX> m_minidumpId{};
};
