#include "analytics/KAnalyticsManager.h"
#include "analytics/KAnalyticsProvider.h"
#include "support/HttpServer.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QDir>
#include <QSettings>
#include <QSignalSpy>
#include <QStandardPaths>
#include <QUuid>

namespace {

/// Notes what it is handed, batch by batch.
class Notebook : public KAnalyticsProvider
{
public:
    explicit Notebook(QStringList &log)
        : m_log(log)
    {}
    void init() override { m_log.append("init " + reporter().version); }
    void sendPending() override { m_log.append("batch"); }
    void sendEvent(const KAnalyticsRawEvent &raw) override
    {
        const auto event = raw.toEvent();
        EXPECT_TRUE(event->session().startsWith(reporter().userId + '|'));
        m_log.append(event->category() + '/' + event->name() + '=' + event->value().toString());
    }
    void flushDone() override { m_log.append("done"); }
    void waitBeforeExit() override { m_log.append("wait"); }

private:
    QStringList &m_log;
};

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DataLocation);
}

QString storePath()
{
    return dataFolder() + "/68c4283db8074b12df1660b31c0220a9"; // printf analytics | md5sum
}

QString sharedId()
{
    return QSettings("Vedra", QString()).value("platformDef").toString();
}

struct KAnalyticsManagerTest : ::testing::TestWithParam<KAnalyticsManager::Store>
{
    KAnalyticsManagerTest()
    {
        QDir(dataFolder()).removeRecursively();
        QSettings("Vedra", QString()).remove("platformDef");
        start();
    }

    void start()
    {
        manager.reset();
        manager = std::make_unique<KAnalyticsManager>(GetParam());
        manager->setVersion("1.2");
        manager->addProvider(std::make_unique<Notebook>(log));
    }

    /// What the provider got in one flush, without the marks of the batch.
    QStringList flushed()
    {
        log.clear();
        manager->flushEvents(false);
        EXPECT_EQ(log.takeFirst(), "batch");
        EXPECT_EQ(log.takeLast(), "done");
        return log;
    }

    test::WarningGuard guard;
    QStringList log;
    std::unique_ptr<KAnalyticsManager> manager;
};

} // namespace

TEST_P(KAnalyticsManagerTest, InactiveTouchesNothing)
{
    manager->setIsActive(false);
    manager->sendEventAction("c", "n", 1);
    manager->sendEvent(new KAnalyticsEvent(KAnalyticsEvent::EventAction, "c", "n"), true);
    manager->startTimerEvent("c", "t");
    manager->stopTimerEvent("c", "t");
    manager->increaseCounterEvent("c", "k");
    manager->flushEvents(true);
    manager->waitBeforeExit();
    test::settle();
    EXPECT_EQ(manager->userId(), QString());
    EXPECT_EQ(log, QStringList("wait"));
    EXPECT_FALSE(QDir(dataFolder()).exists());
    EXPECT_EQ(sharedId(), QString());
}

TEST_P(KAnalyticsManagerTest, TimersCountersAndActionsInOneBatch)
{
    manager->stopTimerEvent("c", "never started");
    manager->startTimerEvent("c", "running");
    manager->startTimerEvent("c", "t");
    manager->startTimerEvent("c", "t");
    manager->increaseCounterEvent("c", "k");
    manager->increaseCounterEvent("c", "k");
    manager->decreaseCounterEvent("c", "k");
    manager->decreaseCounterEvent("c", "down");
    manager->sendEventAction("c", "a", "text");
    manager->sendEvent(KAnalyticsEvent::EventAction, "c", "b", true);
    auto *made = new KAnalyticsEvent(KAnalyticsEvent::EventAction, "c", "made");
    QSignalSpy gone(made, &QObject::destroyed);
    manager->sendEvent(made);
    manager->stopTimerEvent("c", "t");
    QStringList all = flushed();
    ASSERT_EQ(all.size(), 6);
    EXPECT_TRUE(all.takeAt(3).startsWith("c/t="));
    EXPECT_EQ(all.mid(0, 3), QStringList({"c/a=text", "c/b=true", "c/made="}));
    EXPECT_TRUE(all.contains("c/k=1") && all.contains("c/down=-1"));
    EXPECT_SOON(gone.count() == 1);
    EXPECT_EQ(flushed(), QStringList());
}

TEST_P(KAnalyticsManagerTest, TheTenthEventAsksForABatchThatComesLater)
{
    QSignalSpy asked(manager.get(), &KAnalyticsManager::flushEventsAsked);
    for (int i = 0; i < 9; ++i)
        manager->sendEventAction("c", "n", i);
    test::settle();
    EXPECT_EQ(asked.count(), 0);
    log.clear();
    manager->sendEventAction("c", "n", 9);
    EXPECT_EQ(asked.count(), 1);
    EXPECT_EQ(log, QStringList());
    test::settle();
    EXPECT_EQ(log.size(), 12);
    EXPECT_EQ(log.value(10), "c/n=9");
}

TEST_P(KAnalyticsManagerTest, RunsShareTheIdAndEventsWaitForTheNext)
{
    manager->sendEventAction("c", "first run", 1);
    const QString id = manager->userId();
    EXPECT_TRUE(QUuid(id).toString() == id && !QUuid(id).isNull()) << id.toStdString();
    EXPECT_EQ(sharedId(), id);
    EXPECT_EQ(manager->session().section('|', 0, 0), id);
    EXPECT_TRUE(
        QDateTime::fromString(manager->session().section('|', 1), "yyyyMMddhhmmss").isValid());
    EXPECT_TRUE(QFile::exists(storePath()));

    manager.reset();
    EXPECT_EQ(KAnalyticsManager(GetParam(), KAnalyticsManager::UserIdSource::Stored).userId(), id);
    {
        KAnalyticsManager alone(GetParam());
        alone.flushEvents(false); // nobody takes them
    }
    start();
    manager->userId();
    log.clear();
    manager->waitBeforeExit();
    EXPECT_EQ(log, QStringList({"batch", "c/first run=1", "done", "wait"}));

    manager.reset();
    ASSERT_TRUE(QFile::remove(storePath()));
    start();
    EXPECT_EQ(manager->userId(), id);
}

INSTANTIATE_TEST_SUITE_P(Stores, KAnalyticsManagerTest,
                         ::testing::Values(KAnalyticsManager::Store::Database,
                                           KAnalyticsManager::Store::File));
