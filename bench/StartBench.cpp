// What a start costs. The first frame with a still, against the smallest window that shows the same
// still: the very first start, when nothing of it is cached, and a later one. And what usage
// statistics, update check and crash handler together add: the time in which a fresh process sets
// them up as the program does, against the time to the program's first frame. All are medians;
// what is compared starts by turns.

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
#include <cmath>
#include <cstdio>
#include <functional>
#include <limits>
#include <utility>
#include <vector>

namespace {

constexpr int kStarts = 20;
constexpr int kStillStarts = 11;
constexpr double kServicesLimit = 0.02;
constexpr double kStillLimit = 1.5;
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

double median(std::vector<double> values)
{
    const auto middle = values.begin() + std::ptrdiff_t(values.size() / 2);
    std::nth_element(values.begin(), middle, values.end());
    return *middle;
}

double median(const std::function<double()> &measure)
{
    std::vector<double> values;
    for (int i = 0; i < kStarts; ++i)
        values.push_back(measure());
    return median(std::move(values));
}

const QString kStill = QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");

/// Negative when the program could not be started.
double toFirstFrame()
{
    test::ProbedPlayer player;
    const double begin = seconds();
    if (!player.start(QProcessEnvironment::systemEnvironment(), {kStill}))
        return -1;
    const double shown = player.ask("first-frame").toDouble() * 1e-9;
    player.quit();
    return shown - begin;
}

/// The player's time to a frame with the still; infinite when none came. A player that was started
/// before keeps its home and with it its caches.
double toStill(test::ProbedPlayer &player)
{
    const double begin = seconds();
    double shown = 0;
    const bool came = player.start(QProcessEnvironment::systemEnvironment(), {kStill}) &&
                      player.waitFor([&](const QJsonObject &) {
                          shown = player.ask("picture-frame").toDouble() * 1e-9;
                          return shown > 0;
                      });
    return player.quit() == 0 && came ? shown - begin : std::numeric_limits<double>::infinity();
}

double toMinimalStill()
{
    QProcess process;
    const double begin = seconds();
    process.start(QStringLiteral(ORBILENS_MINIMAL_STILL), {kStill});
    const bool came = process.waitForFinished() && process.exitCode() == 0;
    return came ? process.readAllStandardOutput().toDouble() * 1e-9 - begin
                : std::numeric_limits<double>::infinity();
}

struct StillTimes
{
    double minimal;
    double first;
    double later;
};

const StillTimes &stillTimes()
{
    static const StillTimes times = [] {
        test::ProbedPlayer known;
        toStill(known); // fills its caches
        std::vector<double> minimal;
        std::vector<double> first;
        std::vector<double> later;
        for (int i = 0; i < kStillStarts; ++i) {
            test::ProbedPlayer fresh;
            minimal.push_back(toMinimalStill());
            first.push_back(toStill(fresh));
            later.push_back(toStill(known));
        }
        return StillTimes{median(minimal), median(first), median(later)};
    }();
    return times;
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
    if (time <= 0 || std::isinf(time))
        state.SkipWithError("a start failed");
}

void minimalStill(benchmark::State &state)
{
    report(state, stillTimes().minimal);
}

void firstStart(benchmark::State &state)
{
    report(state, stillTimes().first);
}

void laterStart(benchmark::State &state)
{
    report(state, stillTimes().later);
    state.counters["limit"] = kStillLimit;
}

void baseline(benchmark::State &state)
{
    report(state, median(toFirstFrame));
}

void withoutServers(benchmark::State &state)
{
    report(state, median([] { return toSetUp(QString()); }));
    state.counters["limit"] = kServicesLimit;
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
    } rows[] = {{"still/baseline", minimalStill},   {"still/first start", firstStart},
                {"still/later start", laterStart},  {"start/baseline", baseline},
                {"start/services", withoutServers}, {"start/with servers", withServers}};
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
