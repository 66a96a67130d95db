#include "foundation/KAccumulators.h"
#include "foundation/KSimpleChronometer.h"

#include <gtest/gtest.h>

#include <QRegularExpression>
#include <QStringList>

#include <thread>

TEST(Chronometer, KeepsTheFirstStartAndTheFirstStop)
{
    const auto letTimePass = [](const KSimpleChronometer &running) {
        const qint64 before = running.Ticks();
        while (running.Ticks() == before)
            std::this_thread::yield();
        return running.Ticks();
    };
    KSimpleChronometer chronometer, other;
    EXPECT_EQ(chronometer.Ticks(), 0);
    chronometer.Start();
    const qint64 before = letTimePass(chronometer);
    chronometer.Start();
    chronometer.Stop();
    const qint64 stopped = chronometer.Ticks();
    EXPECT_GE(stopped, before);
    other.Start();
    letTimePass(other);
    chronometer.Stop();
    EXPECT_EQ(chronometer.Ticks(), stopped);
    chronometer.Restart();
    EXPECT_EQ(chronometer.Ticks(), 0);
}

TEST(Accumulators, CountEachThreadApartWhileOthersReport)
{
    const auto work = [] {
        for (int round = 0; round < 1000; ++round) {
            const QString other = QString::number(round % 50);
            KAccumulators::Begin("work");
            KAccumulators::Begin("work");
            KAccumulators::Begin(other);
            KAccumulators::End("work");
            KAccumulators::End("work");
            KAccumulators::End(other);
        }
        KAccumulators::Report();
    };
    KAccumulators::End("never begun");
    std::thread a(work), b(work);
    a.join();
    b.join();

    const QRegularExpression form("^ (\\w+)@\\d+ : (\\d+), [0-9.e+-]+ (ns|us|ms|s)$");
    QStringList lines = KAccumulators::Report().split("\r\n");
    EXPECT_EQ(lines.takeLast(), "");
    int works = 0, others = 0;
    for (const QString &line : lines) {
        const auto match = form.match(line);
        EXPECT_TRUE(match.hasMatch()) << line.toStdString();
        (match.captured(1) == "work" ? works : others) += match.captured(2).toInt();
    }
    EXPECT_EQ(works, 2000);
    EXPECT_EQ(others, 2000);
}
