#include "update/KUpdateManager.h"
#include "foundation/KSystemInfo.h"
#include "settings/KSettingsManager.h"
#include "support/HttpServer.h"
#include "support/Soon.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QSignalSpy>

namespace {

using test::HttpServer;

const char kKey[] = "general/last_update_check";

/// Answers by the path of the request.
struct Site
{
    QByteArray stable;
    QByteArray beta;
    QByteArray changeLog = HttpServer::reply("200 OK", " <b>new</b> ");

    QByteArray operator()(const HttpServer::Request &request) const
    {
        if (request.line.contains("/changelog"))
            return changeLog;
        return request.line.contains("/stable/") ? stable : beta;
    }
};

QByteArray ok(const QByteArray &body)
{
    return HttpServer::reply("200 OK", body);
}

/// One check from its start until nothing more comes.
struct Check
{
    explicit Check(const Site &site, const QString &version = "2.3.1.400", int daysSince = 8)
        : server(site)
        , manager(server.address(), &store)
        , available(&manager, &KUpdateManager::NewVersionAvailable)
        , latest(&manager, &KUpdateManager::AlreadyLatestVersion)
        , cleared(&manager, &KUpdateManager::ClearUserData)
    {
        store.Set(kKey, QDateTime::currentDateTime().addDays(-daysSince));
        manager.Start("lnd", version, "told once");
    }

    /// Whether the check ended after @p count requests.
    bool asked(int count)
    {
        return test::soon([&] { return !manager.isChecking(); }) && server.requests.size() == count;
    }

    bool timeStampWritten()
    {
        return store.GetDateTime(kKey, QDateTime()).secsTo(QDateTime::currentDateTime()) < 3600;
    }

    KSettingsManager store = KSettingsManager::ForUser();
    HttpServer server;
    KUpdateManager manager;
    QSignalSpy available;
    QSignalSpy latest;
    QSignalSpy cleared;
};

} // namespace

TEST(UpdateManager, TellsANewVersionWithItsChangeLog)
{
    test::WarningGuard guard;
    Check check({ok("2.3.2.410_2017-02-14\n"), {}});
    ASSERT_TRUE(check.asked(2));
    ASSERT_SOON(check.available.count() == 1);
    EXPECT_EQ(check.server.requests[0].line,
              "GET /lnd/stable/version?src=lnd/2.3.1.400CHECK&data=told%20once HTTP/1.1");
    EXPECT_EQ(check.server.requests[1].line,
              "GET /lnd/stable/changelog?src=lnd/2.3.1.400 HTTP/1.1");
    EXPECT_EQ(check.cleared.count(), 1);
    EXPECT_EQ(check.latest.count(), 0);
    EXPECT_EQ(check.manager.newVersion(), "2.3.2.410");
    EXPECT_EQ(check.manager.newVersionDate(), QDate(2017, 2, 14));
    EXPECT_EQ(check.manager.newChangeLog(), "<b>new</b>");
    const QString site = check.server.address() + "/lnd/" + KSystemInfo::PlatformWord();
    EXPECT_EQ(check.manager.urlInstaller(), site + "?src=lnd/2.3.1.400");
    EXPECT_EQ(check.manager.urlWebsite(), site + "?src=lnd/2.3.1.400");
    EXPECT_EQ(check.manager.urlHistory(), site + "/history?src=lnd/2.3.1.400");
    EXPECT_TRUE(check.timeStampWritten());

    check.manager.CheckForNewVersion();
    ASSERT_TRUE(check.asked(4));
    EXPECT_FALSE(check.server.requests[2].line.contains("data="));
    EXPECT_TRUE(check.manager.isManualCheck());
}

TEST(UpdateManager, WhatEachAnswerAmountsTo)
{
    const QByteArray current = ok("2.3.1.400_2017-01-01");
    const QByteArray newer = ok("2.3.2.400_2017-02-14");
    const QByteArray rc = ok("2.3.1.320_2017-01-01");
    const QByteArray nonsense = ok("<html>");
    const QByteArray gone = HttpServer::reply("404 Not Found", "2.3.2.400_2017-02-14");
    const QByteArray elsewhere = "HTTP/1.1 302 Found\r\nLocation: /stable/other\r\n"
                                 "Content-Length: 0\r\nConnection: close\r\n\r\n";
    const QByteArray cut = "HTTP/1.1 200 OK\r\nContent-Length: 500\r\n\r\n2.3.2.400_2017-02-14\n";
    const QByteArray endless = ok("2.3.2.400_2017-02-14\n" + QByteArray(100 << 20, 'x'));
    // How many requests, whose change log was asked for (null: none), the new version (empty:
    // none), and whether it was told to be the latest and the time was written.
    const std::tuple<const char *, QString, Site, int, const char *, QString, bool, bool> rows[] = {
        {"equal", "2.3.1.400", {current, {}}, 1, nullptr, "", true, true},
        {"nonsense", "2.3.1.400", {nonsense, {}}, 1, nullptr, "", false, false},
        {"not found", "2.3.1.400", {gone, {}}, 1, nullptr, "", false, false},
        {"redirect", "2.3.1.400", {elsewhere, {}}, 1, nullptr, "", false, false},
        {"cut off", "2.3.1.400", {cut, {}}, 1, nullptr, "", false, false},
        {"endless", "2.3.1.400", {endless, {}}, 1, nullptr, "", false, false},
        {"beta is higher", "2.3.1.310", {current, newer}, 3, "beta", "2.3.2.400", false, true},
        {"stable is higher", "2.3.1.310", {newer, current}, 3, "stable", "2.3.2.400", false, true},
        {"beta failed", "2.3.1.310", {newer, gone}, 3, "stable", "2.3.2.400", false, true},
        {"stable failed", "2.3.1.310", {gone, current}, 3, "beta", "2.3.1.400", false, true},
        {"a candidate", "2.3.1.310", {nonsense, rc}, 3, "beta", "2.3.1.320 RC 20", false, true},
        {"no change log", "2.3.1.400", {newer, {}, gone}, 2, "stable", "", false, true},
        {"endless change log", "2.3.1.400", {newer, {}, endless}, 2, "stable", "", false, true},
    };
    for (const auto &[name, version, site, requests, changeLogOf, expected, latest, stamped] :
         rows) {
        SCOPED_TRACE(name);
        Check check(site, version);
        ASSERT_TRUE(check.asked(requests));
        const QString &newVersion = expected;
        ASSERT_SOON(check.manager.newVersion() == newVersion);
        EXPECT_EQ(check.available.count(), newVersion.isEmpty() ? 0 : 1);
        EXPECT_EQ(check.latest.count(), latest ? 1 : 0);
        EXPECT_EQ(check.timeStampWritten(), stamped);
        if (changeLogOf) {
            EXPECT_TRUE(check.server.requests.last().line.startsWith(QByteArray("GET /lnd/") +
                                                                     changeLogOf + "/changelog"));
        }
    }
}

TEST(UpdateManager, SendsNothingWithoutNeedOrServer)
{
    Check recent({ok("2.3.2.400_2017-02-14"), {}}, "2.3.1.400", 6);
    EXPECT_TRUE(recent.asked(0));
    recent.manager.CheckForNewVersion();
    EXPECT_TRUE(recent.asked(2));

    KSettingsManager store = KSettingsManager::ForUser();
    store.Remove(kKey);
    for (const char *server : {"", "http://example.org/", "ftp://127.0.0.1/"}) {
        KUpdateManager manager(server, &store);
        QSignalSpy resolved(&manager, &KUpdateManager::UrlResolved);
        EXPECT_FALSE(manager.isEnabled());
        manager.Start("lnd", "2.3.1.400", {});
        manager.CheckForNewVersion();
        EXPECT_FALSE(manager.isRunning());
        test::settle();
        EXPECT_EQ(resolved.count(), 0);
    }
}

TEST(UpdateManager, AServerThatNobodyVouchesForIsNoAnswer)
{
    HttpServer server(Site{ok("2.3.2.400_2017-02-14"), {}});
    server.encrypt();
    KSettingsManager store = KSettingsManager::ForUser();
    store.Remove(kKey);
    KUpdateManager manager(server.address(), &store);
    QSignalSpy latest(&manager, &KUpdateManager::AlreadyLatestVersion);
    manager.Start("lnd", "2.3.1.400", {});
    EXPECT_SOON(!manager.isChecking());
    EXPECT_TRUE(server.requests.isEmpty());
    EXPECT_EQ(latest.count(), 0);
    EXPECT_FALSE(store.GetDateTime(kKey, QDateTime()).isValid());
}

TEST(UpdateManager, ARequestOfTheUserJoinsTheCheckUnderWay)
{
    QByteArray answer; // null: the server says nothing
    Site site{answer, {}};
    Check check(site);
    ASSERT_SOON(check.server.requests.size() == 1);
    EXPECT_FALSE(check.manager.isManualCheck());
    check.manager.CheckForNewVersion();
    test::settle();
    EXPECT_TRUE(check.manager.isManualCheck());
    EXPECT_EQ(check.server.requests.size(), 1);
}
