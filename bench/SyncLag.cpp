// How far a slave is behind its master: starts both as real instances of the program on the display
// that is there, turns the master's camera step by step, and compares when each showed which yaw;
// with a film as MEDIUM, also how far their positions are apart.
// Usage: sync_lag [SECONDS [MEDIUM]]

#include "support/probe/ProbedPlayer.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileInfo>
#include <QHash>
#include <QThread>
#include <QUdpSocket>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <vector>

namespace {

constexpr int kStepMs = 7; // not a divisor of the rate, so that every phase comes up
constexpr int kLookMs = 100;

struct Turn
{
    qint64 nanoseconds;
    QByteArray yaw;
};

std::vector<Turn> turns(test::ProbedPlayer &player)
{
    std::vector<Turn> turns;
    for (const QByteArray &line : player.takeTrace()) {
        const QList<QByteArray> words = line.split(' ');
        if (words.size() == 3)
            turns.push_back({words.at(1).toLongLong(), words.at(2)});
    }
    return turns;
}

void print(const char *what, std::vector<double> values)
{
    if (values.empty()) {
        std::printf("%s: nothing was measured\n", what);
        return;
    }
    std::sort(values.begin(), values.end());
    std::printf("%s: median %.1f ms, 99 of 100 within %.1f ms, worst %.1f ms, of %zu\n", what,
                values[values.size() / 2], values[values.size() * 99 / 100], values.back(),
                values.size());
}

/// Milliseconds from the master's turn to the slave's, for each yaw that the slave showed.
std::vector<double> orientationLags(const std::vector<Turn> &master, const std::vector<Turn> &slave)
{
    QHash<QByteArray, qint64> turned;
    for (const Turn &turn : master)
        turned.insert(turn.yaw, turn.nanoseconds);
    std::vector<double> lags;
    for (const Turn &turn : slave) {
        const auto first = turned.constFind(turn.yaw);
        if (first != turned.constEnd())
            lags.push_back(double(turn.nanoseconds - *first) / 1e6);
    }
    return lags;
}

} // namespace

int main(int argc, char **argv)
{
    const QCoreApplication application(argc, argv);
    const QStringList arguments = QCoreApplication::arguments();
    const int seconds = arguments.size() > 1 ? std::max(1, arguments.at(1).toInt()) : 60;
    const QString medium = arguments.size() > 2
                               ? QFileInfo(arguments.at(2)).absoluteFilePath()
                               : QStringLiteral(ORBILENS_SOURCE_DIR "/samples/panorama.jpg");

    QUdpSocket free;
    free.bind(QHostAddress(QHostAddress::LocalHost), 0);
    const QVariantMap settings{
        {QStringLiteral("application/communication/port"), free.localPort()}};
    free.close();
    test::ProbedPlayer slave;
    test::ProbedPlayer master;
    const auto environment = QProcessEnvironment::systemEnvironment();
    const auto plays = [](const QJsonObject &state) {
        return state.value(QStringLiteral("playbackState")).toInt() == 1;
    };
    if (!slave.start(environment, {QStringLiteral("--udp"), QStringLiteral("slave")}, settings) ||
        !master.start(environment, {QStringLiteral("--udp"), QStringLiteral("master"), medium},
                      settings) ||
        !master.waitFor(plays) || !slave.waitFor(plays)) {
        std::fprintf(stderr, "The players could not be started.\n");
        return 1;
    }

    slave.ask("trace");
    master.ask("trace");
    master.ask("sweep " + QByteArray::number(seconds * 1000 / kStepMs) + ' ' +
               QByteArray::number(kStepMs));
    std::vector<double> positionErrors;
    QElapsedTimer timer;
    for (timer.start(); timer.elapsed() < seconds * 1000LL; QThread::msleep(kLookMs)) {
        const QJsonObject there = master.state();
        const QJsonObject here = slave.state();
        const auto position = [](const QJsonObject &state) {
            return state.value(QStringLiteral("position")).toDouble();
        };
        const auto moment = [](const QJsonObject &state) {
            return state.value(QStringLiteral("milliseconds")).toDouble();
        };
        const double duration = there.value(QStringLiteral("duration")).toDouble();
        if (duration <= 0 || !plays(there) || !plays(here))
            continue;
        // Both play on between the two questions, and a film that ends begins again.
        const double expected = position(there) + moment(here) - moment(there);
        const double apart = std::fmod(std::abs(position(here) - expected), duration);
        positionErrors.push_back(std::min(apart, duration - apart));
    }
    print("orientation", orientationLags(turns(master), turns(slave)));
    if (!positionErrors.empty())
        print("media position", positionErrors);
    return slave.quit() == 0 && master.quit() == 0 ? 0 : 1;
}
