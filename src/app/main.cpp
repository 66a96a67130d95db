// Program entry: what must be decided before the application object exists, the order in which the
// process-wide facilities come up and go down, and the restart.

#include "analytics/KAnalyticsManager.h"
#include "app/Application.h"
#include "app/CommandLine.h"
#include "app/OpenGLFlavour.h"
#include "crash/CrashHandler.h"
#include "foundation/KFoundation.h"
#include "foundation/KHeap.h"
#include "foundation/KVersion.h"
#include "settings/KSettingsManager.h"
#include "video/VlcConfig.h"

#include <QDir>
#include <QLocale>
#include <QProcess>
#include <QSysInfo>
#include <QThread>

#include <cstdio>
#include <memory>

namespace {

// Exit statuses; the manual page names them.
constexpr int kNoDisplay = 1;
constexpr int kUsageError = 2;
constexpr unsigned long kRestartDelaySeconds = 1;

/// Answers --help and --version, which need no display. Returns whether there was anything to
/// answer.
bool answered(const CommandLine &commandLine, int &argc, char **argv)
{
    if (!commandLine.helpRequested && !commandLine.versionRequested)
        return false;
    const QCoreApplication application(argc, argv);
    const QString text = commandLine.helpRequested ? commandLineHelp()
                                                   : KVersion::productName() + QLatin1Char(' ') +
                                                         KVersion::fullText() + QLatin1Char('\n');
    std::fputs(qPrintable(text), stdout);
    return true;
}

/// Qt takes the flavour only before the application object exists, so the store is asked directly.
void chooseRenderer(const CommandLine &commandLine)
{
    KSettingsManager store = KSettingsManager::ForUser();
    const bool desktop =
        openGLFlavourOfThisRun(store, commandLine.options) == OpenGLFlavour::Desktop;
    QCoreApplication::setAttribute(desktop ? Qt::AA_UseDesktopOpenGL : Qt::AA_UseOpenGLES);
}

QStringList argumentsOf(int argc, char **argv)
{
    QStringList arguments;
    for (int i = 0; i < argc; ++i)
        arguments.append(QString::fromLocal8Bit(argv[i]));
    return arguments;
}

/// What a later start needs to know of this one.
struct Restart
{
    QString executable;
    QStringList arguments;
};

/// The language of the settings, which reaches the crash reporter only; without one the texts are
/// told to be as they stand in the source, which is what the user saw.
std::unique_ptr<CrashHandler> installCrashHandler()
{
    KSettingsManager store = KSettingsManager::ForUser();
    const QLocale locale(store.GetString(QStringLiteral("application/language")));
    CrashHandler::Settings settings;
    settings.dumpFolder = QDir::tempPath();
    settings.productName = KVersion::productName();
    settings.productVersion = KVersion::fullText();
    settings.locale = locale.name();
    settings.dumpType = store.GetInt(QStringLiteral("application/dump_type"), 0);
    return std::make_unique<CrashHandler>(settings);
}

int run(int &argc, char **argv, const QString &name, Restart *restart)
{
    auto application = std::make_unique<Application>(name, argc, argv);
    // Qt has taken its own options out by now; what is left and unknown is the user's mistake.
    const CommandLine commandLine = parseCommandLine(QCoreApplication::arguments());
    if (!commandLine.error.isEmpty()) {
        std::fprintf(stderr, "%s\n%s", qPrintable(commandLine.error),
                     qPrintable(commandLineHelp()));
        return kUsageError;
    }
    restart->executable = QCoreApplication::applicationFilePath();
    restart->arguments = application->restartArguments();
    QDir::setCurrent(QCoreApplication::applicationDirPath());

    const std::unique_ptr<CrashHandler> crashHandler = installCrashHandler();
    application->setCrashHandler(crashHandler.get());
    KFoundation::Initialize();
    VlcConfig vlcConfig;
    VlcConfig::publish(&vlcConfig);
    KAnalyticsManager::CreateInstance();
    application->init();
    const int result = QCoreApplication::exec();
    KAnalyticsManager::DestroyInstance(); // its requests go over the application's network manager
    application.reset(); // the peers use the foundation to their end, and save the configuration
    VlcConfig::publish(nullptr);
    KFoundation::Shutdown();
    return result;
}

} // namespace

int main(int argc, char **argv)
{
    KHeap::ShareBetweenThreads();
    qputenv("QT_AUTO_SCREEN_SCALE_FACTOR", "1");
    qputenv("QT_NO_FT_CACHE", "1");
    const QString name =
        QStringLiteral("%1 - %2").arg(KVersion::makerName(), KVersion::applicationName());

    const CommandLine early = parseCommandLine(argumentsOf(argc, argv));
    if (answered(early, argc, argv))
        return 0;
    if (!hasDisplay(argumentsOf(argc, argv), QProcessEnvironment::systemEnvironment(),
                    QSysInfo::kernelType())) {
        std::fputs("There is no display to show a window on.\n", stderr);
        return kNoDisplay;
    }
    chooseRenderer(early);

    Restart restart;
    const int result = run(argc, argv, name, &restart);
    if (result == Application::kRestartStatus) {
        QThread::sleep(kRestartDelaySeconds);
        QProcess::startDetached(restart.executable, restart.arguments);
    }
    return result;
}
