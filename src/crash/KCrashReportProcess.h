#pragma once

// Starts the reporter program, which shows the user a crash and its dump. Owned by CrashHandler;
// used on the GUI thread, on Windows also by the thread that handles a crash.

#include <QObject>
#include <QString>
#include <QStringList>

class KCrashReportProcess : public QObject
{
    Q_OBJECT

public:
    /// What the reporter is told, fixed when the crash handler is installed.
    struct Facts
    {
        QString dumpFolder;
        QString productName;
        QString productVersion;
        /// As QLocale::name() gives it.
        QString locale;
        QString extraText;
        QString extraText2;
    };

    explicit KCrashReportProcess(Facts facts, QObject *parent = nullptr);

    /// Absolute path of the reporter, which lies beside this program.
    QString program() const { return m_program; }

    /// The nine arguments in the reporter's order: dump folder, product name, first extra text,
    /// version, locale, @p dumpPath, @p minidumpId, second extra text, "1" in manual mode else "0".
    QStringList arguments(const QString &dumpPath, const QString &minidumpId) const;

    /// Manual mode: the user asked for the reporter, nothing crashed.
    void setManualMode(bool manualMode) { m_manualMode = manualMode; }

public slots:
    /// Starts the reporter for the dump @p minidump_id ".dmp" in the folder @p dump_path; both
    /// empty when there is none. A reporter that cannot be started is no error: the dump stays.
    void run(QString dump_path, QString minidump_id);

private:
    const QString m_program;
    const QString m_workingDirectory;
    const Facts m_facts;
    bool m_manualMode = false;
};
