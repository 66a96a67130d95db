#pragma once

// The program's command line as values. Usable before any application object exists, since the
// OpenGL flavour must be chosen before it. Free functions.

#include <QMap>
#include <QProcessEnvironment>
#include <QString>
#include <QStringList>
#include <QVariant>

struct CommandLine
{
    /// "udp" (text), "adobeplugin", "customvlc", "touchtable" (bool), "files" (list of texts, only
    /// with at least one); empty when the program was started without any argument.
    QMap<QString, QVariant> options;
    bool helpRequested = false;
    bool versionRequested = false;
    QString error; ///< for people; empty when all arguments were understood
};

/// Reads @p arguments, the program's name first.
CommandLine parseCommandLine(const QStringList &arguments);

/// The same arguments without the program's name and with files made absolute against
/// @p directory, so that they hold wherever the program is started again from.
QStringList restartArguments(const QStringList &arguments, const QString &directory);

/// Whether a window can be hoped for. Without any display Qt would abort, as if the program had a
/// fault; one that is named but cannot be reached is left to Qt, which knows all its platforms.
/// @p kernel as QSysInfo::kernelType() gives it.
[[nodiscard]] bool hasDisplay(const QStringList &arguments, const QProcessEnvironment &environment,
                              const QString &kernel);

/// Text of --help. Needs an application object for the program's name.
QString commandLineHelp();
