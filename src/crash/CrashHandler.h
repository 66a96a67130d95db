#pragma once

// Writes a minidump when the program dies and starts the reporter. main makes one before the
// window and destroys it last; made and destroyed on the GUI thread. A build without Breakpad
// leaves no dumps and offers the reporter only.

#include <QObject>
#include <QString>

#include <memory>

class KCrashReportProcess;

class CrashHandler
{
public:
    struct Settings
    {
        /// Where dumps are written.
        QString dumpFolder;
        QString productName;
        QString productVersion;
        /// As QLocale::name() gives it.
        QString locale;
        QString extraText;
        /// A MINIDUMP_TYPE, handed unchanged to the dump writer of Windows; the writer of Linux
        /// knows one kind of dump.
        int dumpType = 0;
    };

    explicit CrashHandler(const Settings &settings);
    ~CrashHandler();
    CrashHandler(const CrashHandler &) = delete;
    CrashHandler &operator=(const CrashHandler &) = delete;

    /// Opens the reporter at the user's wish, without a dump.
    void showReporter();

private:
    static std::unique_ptr<QObject> install(const Settings &settings,
                                            const KCrashReportProcess &process);

    std::unique_ptr<KCrashReportProcess> m_process;
    std::unique_ptr<QObject> m_handler;
};
