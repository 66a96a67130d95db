#include "app/CommandLine.h"

#include "app/MediaChoice.h"
#include "foundation/KVersion.h"

#include <QCommandLineParser>
#include <QCoreApplication>
#include <QDir>
#include <QRegularExpression>

namespace {

struct Options
{
    QCommandLineOption udp{{QStringLiteral("u"), QStringLiteral("udp")},
                           QCoreApplication::translate("main", "Udp mode, can be master or slave."),
                           QCoreApplication::translate("main", "udp"),
                           QString()};
    QCommandLineOption adobePlugin{{QStringLiteral("a"), QStringLiteral("adobeplugin")},
                                   QStringLiteral("command line used by Adobe plugin.")};
    QCommandLineOption customVlc{{QStringLiteral("c"), QStringLiteral("customvlc")},
                                 QStringLiteral("activate custom mode for vlc.")};
    QCommandLineOption touchTable{{QStringLiteral("t"), QStringLiteral("touchtable")},
                                  QStringLiteral("special case for touch table.")};
    QCommandLineOption help{{QStringLiteral("h"), QStringLiteral("help")},
                            QStringLiteral("Displays this help.")};
    QCommandLineOption version{{QStringLiteral("v"), QStringLiteral("version")},
                               QStringLiteral("Displays version information.")};
};

void configure(QCommandLineParser &parser, const Options &options)
{
    parser.setApplicationDescription(
        QStringLiteral("Plays 360-degree and stereoscopic video and panoramic stills."));
    parser.addOptions({options.udp, options.adobePlugin, options.customVlc, options.touchTable,
                       options.help, options.version});
    parser.addPositionalArgument(
        QStringLiteral("files"),
        QCoreApplication::translate("main", "Path of the file(s) to read."),
        QStringLiteral("[files...]"));
}

QString absolute(const QString &file, const QString &directory)
{
    // A stream address stays; anything without a scheme is a path.
    if (!MediaChoice::urlFromText(file).isLocalFile() || file.startsWith(QLatin1String("file:")))
        return file;
    return QDir::cleanPath(QDir(directory).absoluteFilePath(file));
}

} // namespace

CommandLine parseCommandLine(const QStringList &arguments)
{
    CommandLine result;
    if (arguments.size() < 2)
        return result;
    const Options options;
    QCommandLineParser parser;
    configure(parser, options);
    if (!parser.parse(arguments))
        result.error = parser.errorText();
    result.helpRequested = parser.isSet(options.help);
    result.versionRequested = parser.isSet(options.version);
    result.options.insert(QStringLiteral("udp"), parser.value(options.udp));
    result.options.insert(QStringLiteral("adobeplugin"), parser.isSet(options.adobePlugin));
    result.options.insert(QStringLiteral("customvlc"), parser.isSet(options.customVlc));
    result.options.insert(QStringLiteral("touchtable"), parser.isSet(options.touchTable));
    if (!parser.positionalArguments().isEmpty())
        result.options.insert(QStringLiteral("files"), parser.positionalArguments());
    return result;
}

QStringList restartArguments(const QStringList &arguments, const QString &directory)
{
    const Options options;
    QCommandLineParser parser;
    configure(parser, options);
    if (arguments.size() < 2 || !parser.parse(arguments))
        return arguments.mid(1);

    QStringList result;
    if (parser.isSet(options.udp))
        result.append(QStringLiteral("--udp=") + parser.value(options.udp));
    for (const QCommandLineOption &flag :
         {options.adobePlugin, options.customVlc, options.touchTable}) {
        if (parser.isSet(flag))
            result.append(QStringLiteral("--") + flag.names().constLast());
    }
    QStringList files;
    const QStringList given = parser.positionalArguments();
    for (const QString &file : given)
        files.append(absolute(file, directory));
    // A name that begins with a dash would be read as an option otherwise.
    if (!files.isEmpty())
        result.append(QStringList{QStringLiteral("--")} + files);
    return result;
}

bool hasDisplay(const QStringList &arguments, const QProcessEnvironment &environment,
                const QString &kernel)
{
    if (kernel != QLatin1String("linux"))
        return true;
    for (const char *variable : {"DISPLAY", "WAYLAND_DISPLAY", "QT_QPA_PLATFORM"}) {
        if (!environment.value(QLatin1String(variable)).isEmpty())
            return true;
    }
    static const QRegularExpression chosen(QStringLiteral("^--?(platform|display)$"));
    return arguments.indexOf(chosen) >= 0;
}

QString commandLineHelp()
{
    const Options options;
    QCommandLineParser parser;
    configure(parser, options);
    return parser.helpText();
}
