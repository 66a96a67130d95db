#include "analytics/KAnalyticsDb.h"
#include "analytics/KAnalyticsEvent.h"
#include "analytics/KAnalyticsFile.h"
#include "foundation/KBinaryJson.h"
#include "support/Files.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QFile>
#include <QFileInfo>
#include <QProcess>
#include <QTemporaryDir>

#include <functional>
#include <memory>

namespace {

/// A store of its own in a folder of its own.
struct Store
{
    QTemporaryDir folder;
    const QString path = folder.filePath("store");

    std::unique_ptr<KAnalyticsDb> open(const QString &connection = "test") const
    {
        auto db = std::make_unique<KAnalyticsDb>(connection, "QSQLITE", path);
        db->openDb();
        return db;
    }

    void write(const QByteArray &bytes) const { test::writeFile(path, bytes); }
    QByteArray read() const { return test::readFile(path); }
};

KAnalyticsEvent *event(const QString &name)
{
    static KAnalyticsEvent event;
    event.setName(name);
    return &event;
}

QStringList names(const QStringList &texts)
{
    QStringList result;
    for (const QString &text : texts)
        result.append(KAnalyticsRawEvent(text).toEvent()->name());
    return result;
}

/// Fills a store enough to have several pages.
void fill(KAnalyticsDb &db)
{
    for (int i = 0; i < 300; ++i)
        db.addEvent(*event(QString::number(i)));
}

/// A file system of 64 KiB, where one may be mounted.
struct SmallDisk
{
    QTemporaryDir folder;
    const bool mounted = mount("size=64k");

    ~SmallDisk()
    {
        if (mounted)
            QProcess::execute("umount", {folder.path()});
    }
    bool mount(const QString &options) const
    {
        return QProcess::execute("mount", {"-t", "tmpfs", "-o", options, "tmpfs", folder.path()}) ==
               0;
    }
};

} // namespace

TEST(EventStore, KeepsWhatWasCommittedOverRuns)
{
    test::WarningGuard guard;
    Store store;
    {
        auto db = store.open();
        ASSERT_TRUE(db->isOpen());
        EXPECT_EQ(db->takeEvents(), QStringList());
        EXPECT_EQ(db->userId(), QString());
        db->addEvent(*event("a"));
        db->addEvent(*event("b"));
        db->setUserId("first");
        db->setUserId("second");
        db->createRequestTable("providerGA");
        db->addRequest("providerGA", "body");
        EXPECT_TRUE(db->exec("INSERT INTO events (value) VALUES(:value)", {{":value", "lost"}}));
    }
    auto db = store.open();
    db->setFilePath(store.path); // closes the first connection
    EXPECT_EQ(names(db->takeEvents()), QStringList({"a", "b"}));
    EXPECT_EQ(db->takeEvents(), QStringList());
    EXPECT_EQ(db->userId(), "first");
    EXPECT_EQ(db->takeRequests("providerGA"), QStringList("body"));
    EXPECT_EQ(db->takeRequests("providerGA"), QStringList());
    db->closeAndRemove();
    EXPECT_FALSE(QFile::exists(store.path));
    EXPECT_FALSE(db->exec("SELECT 1"));
    db->addEvent(*event("c"));
    db->commit();
    db->rollback();
    EXPECT_EQ(db->takeEvents(), QStringList());
}

TEST(EventStore, PendingRequestsAreBounded)
{
    KAnalyticsDb db("test", "QSQLITE", ":memory:");
    ASSERT_TRUE(db.openDb());
    db.createRequestTable("providerGA");
    constexpr int kMore = 5;
    for (int i = 0; i < KAnalyticsDb::kMaxPendingRequests + kMore; ++i)
        db.addRequest("providerGA", QString::number(i));
    const QStringList kept = db.takeRequests("providerGA");
    EXPECT_EQ(kept.size(), KAnalyticsDb::kMaxPendingRequests);
    EXPECT_EQ(kept.first(), QString::number(kMore));
    db.addEvent(*event(QString(KAnalyticsDb::kMaxTextLength + 1, 'x')));
    db.addEvent(*event("short"));
    EXPECT_EQ(names(db.takeEvents()), QStringList("short"));
    db.closeAndRemove();
}

// Written by sqlite3 with the tables of the first release and one row each.
TEST(EventStore, ReadsAStoreOfAnEarlierRelease)
{
    Store store;
    ASSERT_TRUE(QFile::copy(ORBILENS_SOURCE_DIR "/tests/analytics/earlier.sqlite", store.path));
    ASSERT_TRUE(QFile::setPermissions(store.path, QFile::ReadOwner | QFile::WriteOwner));
    auto db = store.open();
    db->createRequestTable("providerGA");
    db->createRequestTable("providerDSE");
    EXPECT_EQ(db->userId(), "{earlier}");
    EXPECT_EQ(names(db->takeEvents()), QStringList("EXECUTION TIME"));
    EXPECT_EQ(db->takeRequests("providerGA"), QStringList("v=1"));
    EXPECT_EQ(db->takeRequests("providerDSE"), QStringList());
}

TEST(EventStore, DamageCostsTheOldContentsOnly)
{
    const std::tuple<const char *, std::function<QByteArray(QByteArray)>> rows[] = {
        {"empty", [](const QByteArray &) { return QByteArray(); }},
        {"garbage", [](const QByteArray &) { return QByteArray(20000, 'x'); }},
        {"a few bytes", [](const QByteArray &) { return QByteArray("SQLite format 3"); }},
        {"truncated", [](const QByteArray &whole) { return whole.left(whole.size() / 2); }},
        {"cut page", [](const QByteArray &whole) { return whole.left(whole.size() - 100); }},
        {"overwritten",
         [](QByteArray whole) {
             return whole.replace(4096, whole.size() - 4096, QByteArray(whole.size() - 4096, 'y'));
         }},
    };
    for (const auto &[name, damage] : rows) {
        SCOPED_TRACE(name);
        test::WarningGuard guard({"openDb", "damaged", "not a database"});
        Store store;
        fill(*store.open());
        store.write(damage(store.read()));
        auto db = store.open();
        EXPECT_TRUE(db->isOpen());
        db->takeEvents();
        db->addEvent(*event("after"));
        db.reset();
        EXPECT_EQ(names(store.open()->takeEvents()).value(0), "after");
    }
}

TEST(EventStore, WhatCannotBeOpenedIsLeftAlone)
{
    test::WarningGuard guard({"openDb"});
    Store store;
    KAnalyticsDb folder("folder", "QSQLITE", store.folder.path());
    EXPECT_FALSE(folder.openDb());
    KAnalyticsDb driver("driver", "QNONE", store.path);
    guard.take();
    EXPECT_FALSE(driver.openDb());
    guard.take(); // Qt names the drivers it has

    auto first = store.open("first");
    first->addEvent(*event("a"));
    auto second = store.open("second");
    EXPECT_FALSE(second->isOpen());
    second->addEvent(*event("lost"));
    second.reset();
    // Into another store everything is copied.
    Store elsewhere;
    auto target = elsewhere.open("target");
    first->copy(*target);
    EXPECT_EQ(names(target->select("SELECT * FROM events_copy", {}, 9)), QStringList("a"));
    EXPECT_EQ(names(first->takeEvents()), QStringList("a"));
}

TEST(EventStore, AReadOnlyOrFullDiskLosesRowsQuietly)
{
    const SmallDisk disk;
    if (!disk.mounted)
        GTEST_SKIP() << "a small file system cannot be mounted here";
    test::WarningGuard guard({"openDb"});
    const auto open = [&disk] {
        auto db = std::make_unique<KAnalyticsDb>("disk", "QSQLITE", disk.folder.filePath("store"));
        db->openDb();
        return db;
    };
    open()->addEvent(*event("kept"));
    ASSERT_TRUE(disk.mount("remount,ro"));
    open()->addEvent(*event("lost"));
    // What cannot be deleted is not handed out, as it would be sent at every start.
    EXPECT_EQ(open()->takeEvents(), QStringList());
    ASSERT_TRUE(disk.mount("remount,rw"));
    EXPECT_EQ(names(open()->takeEvents()), QStringList("kept"));

    const auto db = open();
    fill(*db);
    for (int i = 0; i < 20; ++i)
        db->addEvent(*event(QString(8000, 'x')));
    EXPECT_LE(QFileInfo(db->filePath()).size(), 64 * 1024);
    db->close();
}

TEST(EventFile, OutlivesDamageAndWaitsForNobody)
{
    test::WarningGuard guard;
    Store store;
    KAnalyticsFile file;
    file.addEvent(*event("nowhere"));
    file.setFilePath(store.path);
    EXPECT_EQ(file.takeEvents(), QStringList());
    file.addEvent(*event("a"));
    file.setUserId("id");
    EXPECT_TRUE(file.setArray("providerGA", {"body"}));
    EXPECT_EQ(KBinaryJson::fromBytes(store.read(), KBinaryJson::Values::Nested)->keys(),
              QStringList({"events", "providerGA", "userId"}));
    EXPECT_EQ(names(file.takeEvents()), QStringList("a"));

    for (const QByteArray &damaged :
         {QByteArray(), QByteArray("qbjs"), QByteArray(500, 'x'), store.read().left(60)}) {
        store.write(damaged);
        EXPECT_EQ(file.takeEvents(), QStringList());
        store.write(damaged);
        file.addEvent(*event("after"));
        EXPECT_EQ(names(file.takeEvents()), QStringList("after"));
    }

    file.addEvent(*event("kept"));
    QLockFile lock(store.path + ".lock");
    ASSERT_TRUE(lock.tryLock());
    EXPECT_EQ(file.takeEvents(), QStringList());
    file.addEvent(*event("lost"));
    lock.unlock();
    EXPECT_EQ(names(file.takeEvents()), QStringList("kept"));
}
