#pragma once

// What the player tells the reporter about a crash; a plain value.

#include <QString>
#include <QStringList>

#include <optional>

struct CrashReport
{
    QString dumpFolder;
    QString productName;
    QString extraText;
    QString productVersion;
    QString locale;
    QString dumpPath;
    QString minidumpId;
    QString extraText2;
    /// The user opened the reporter, nothing crashed.
    bool manualMode = false;

    /// Reads the nine arguments that follow the program's name; nothing for any other count.
    [[nodiscard]] static std::optional<CrashReport> fromArguments(const QStringList &arguments);

    /// Path of the dump; empty when the report names none.
    QString dumpFile() const;
};
