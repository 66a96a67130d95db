// What usage statistics, update check and crash handler together cost at a start: the time in which
// a fresh process sets them up as the program does, against the time in which the program itself
// comes to its first frame. Both are medians of twenty starts.

#include "analytics/KAnalyticsManager.h"
#include "app/Deployment.h"
#include "app/UsageReport.h"
#include "crash/CrashHandler.h"
#include "settings/KSettingsManager.h"
#include "support/probe/ProbedPlayer.h"
#include "update/KUpdateManager.h"

#include <benchmark/benchmark.h>

#include <QCoreApplication>
#include <QDir>
#include <QNetworkAccessManager>
#include <QTcpServer>
#include <QTemporaryDir>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <functional>
#include <vector>

namespace {

constexpr int kStarts = 20;
constexpr double kLimit = 0.02;
const char kPartsOption[] = "--set-up-only";

double seconds()
{
    return std::chrono::duration<double>(std::chrono::steady_clock::now().time_since_epoch())
        .count();
}

/// What the program does for the three between its first line and its event loop.
void setUp(const QString &server, QNetworkAccessManager *network)
{
    CrashHandler::Settings crash;
    crash.dumpFolder = QDir::tempPath();
    const CrashHandler handler(crash);

    Deployment deployment;
    deployment.googleAnalyticsServer = server;
    deployment.collectorServer = server;
    KAnalyticsManager::CreateInstance();
    UsageReport report(KAnalyticsManager::Instance());
    report.begin(deployment, network, UsageReport::Consent::Given);
    report.sendStart({"vlc", false, "off", false, false});

    KSettingsManager store = KSettingsManager::ForUser();
    KUpdateManager updates(server, &store);
    updates.Start("lnd", "2.3.1.400", QString());
    // The check goes on by itself; nothing of a start waits for it.
}

/// This program as a fresh process: prints the seconds that setting up took.
int setUpOnly(int argc, char **argv)
{
    QCoreApplication application(argc, argv);
    // The program has both for its own ends.
    QNetworkAccessManager network;
    const double begin = seconds();
    setUp(QString::fromLocal8Bit(argv[2]), &network);
    std::printf("%.9f\n", seconds() - begin);
    std::fflush(stdout);
    std::_Exit(0); // what was begun is not waited for
}

double median(const std::function<double()> &measure)
{
    std::vector<double> values;
    for (int i = 0; i < kStarts; ++i)
        values.push_back(measure());
    std::nth_element(values.begin(), values.begin() + kStarts / 2, values.end());
    return values[kStarts / 2];
}

/// Negative when the program could not be started.
double toFirstFrame()
{
    test::ProbedPlayer player;
    const double begin = seconds();
    if (!player.start(QProcessEnvironment::systemEnvironment(),
                      {QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg")}))
        return -1;
    const double shown = player.ask("first-frame").toDouble() * 1e-9;
    player.quit();
    return shown - begin;
}

double toSetUp(const QString &server)
{
    const QTemporaryDir home;
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert("HOME", home.path());
    for (const char *folder : {"XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_CACHE_HOME"})
        environment.insert(folder, home.path());
    QProcess process;
    process.setProcessEnvironment(environment);
    process.start(QCoreApplication::applicationFilePath(), {kPartsOption, server});
    return process.waitForFinished() ? process.readAllStandardOutput().toDouble() : -1;
}

void report(benchmark::State &state, double time)
{
    for (auto _ : state)
        state.SetIterationTime(time);
    if (time <= 0)
        state.SkipWithError("a start failed");
}

void baseline(benchmark::State &state)
{
    report(state, median(toFirstFrame));
}

void withoutServers(benchmark::State &state)
{
    report(state, median([] { return toSetUp(QString()); }));
    state.counters["limit"] = kLimit;
}

void withServers(benchmark::State &state)
{
    // Takes connections and says nothing.
    QTcpServer server;
    server.listen(QHostAddress::LocalHost);
    const QString address = QStringLiteral("http://127.0.0.1:%1").arg(server.serverPort());
    report(state, median([&] { return toSetUp(address); }));
}

} // namespace

int main(int argc, char **argv)
{
    if (argc == 3 && qstrcmp(argv[1], kPartsOption) == 0)
        return setUpOnly(argc, argv);
    const QCoreApplication application(argc, argv);
    const struct
    {
        const char *name;
        void (*run)(benchmark::State &);
    } rows[] = {{"start/baseline", baseline},
                {"start/services", withoutServers},
                {"start/with servers", withServers}};
    for (const auto &row : rows)
        benchmark::RegisterBenchmark(row.name, row.run)
            ->UseManualTime()
            ->Iterations(1)
            ->Repetitions(1)
            ->Unit(benchmark::kMillisecond);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    return 0;
}
