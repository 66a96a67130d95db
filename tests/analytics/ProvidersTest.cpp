#include "analytics/EventCoding.h"
#include "analytics/KAnalyticsDb.h"
#include "analytics/KAnalyticsEvent.h"
#include "analytics/KAnalyticsFile.h"
#include "analytics/KAnalyticsProviders.h"
#include "support/HttpServer.h"
#include "support/WarningGuard.h"

#include <gtest/gtest.h>

#include <QCryptographicHash>
#include <QDateTime>
#include <QNetworkAccessManager>
#include <QSignalSpy>
#include <QTemporaryDir>

#include <algorithm>
#include <memory>
#include <vector>

namespace {

using test::HttpServer;

const EventCoding::Reporter kReporter{"{u}", "{u}|1", "2.3.1.400"};
const KAnalyticsProviderDSE::Identity kIdentity{"the-key", "agent", "cat/egory", "prod",
                                                "production"};

QByteArray accepted()
{
    return HttpServer::reply("200 OK", R"({"status":"ok"})");
}

std::unique_ptr<KAnalyticsRawEvent> raw(const QString &name)
{
    KAnalyticsEvent event(KAnalyticsEvent::EventAction, "c", name);
    event.setTimestamp(1487073600123);
    event.setValue(1);
    return std::make_unique<KAnalyticsRawEvent>(event.toJsonText());
}

/// Both providers over one store and one server, as in the program.
struct ProvidersTest : ::testing::TestWithParam<bool>
{
    ProvidersTest()
    {
        if (GetParam()) {
            db = std::make_unique<KAnalyticsDb>("test", "QSQLITE", ":memory:");
            EXPECT_TRUE(db->openDb());
        }
        file.setFilePath(folder.filePath("file"));
        make();
    }

    void make()
    {
        providers.clear();
        providers.push_back(std::make_unique<KAnalyticsProviderGoogleAnalytics>(
            &network, server.address() + '/', "UA-1", "Orbilens Player"));
        providers.push_back(
            std::make_unique<KAnalyticsProviderDSE>(&network, server.address() + "/%1", kIdentity));
        for (const auto &provider : providers) {
            provider->setStore(db.get(), &file);
            provider->setReporter(kReporter);
            provider->init();
        }
    }

    void batch(const QStringList &names)
    {
        for (const auto &provider : providers) {
            provider->sendPending();
            for (const QString &name : names)
                provider->sendEvent(*raw(name));
            provider->flushDone();
        }
    }

    void finish()
    {
        for (const auto &provider : providers)
            provider->waitBeforeExit();
    }

    /// Bodies that wait, per table; they stay.
    QVector<int> waiting()
    {
        QVector<int> counts;
        for (const QString table : {"providerGA", "providerDSE"}) {
            counts.append(db ? db->select("SELECT value FROM " + table, {}, 9999).size()
                             : file.array(table).size());
        }
        return counts;
    }

    /// How often the body of the event @p name arrived at the path of one service.
    int arrivals(const QByteArray &path, const QByteArray &name) const
    {
        int count = 0;
        for (const auto &request : server.requests)
            count += request.line.contains(path) && request.body.contains(name);
        return count;
    }

    test::WarningGuard guard{{"RESPONSE ERROR", "HTTP error:"}};
    QTemporaryDir folder;
    HttpServer server{[](const HttpServer::Request &) { return accepted(); }};
    QNetworkAccessManager network;
    std::unique_ptr<KAnalyticsDb> db;
    KAnalyticsFile file;
    std::vector<std::unique_ptr<KAnalyticsProviderHttp>> providers;
};

} // namespace

TEST_P(ProvidersTest, RequestsByteForByte)
{
    batch({"first", "second"});
    finish();
    ASSERT_EQ(server.requests.size(), 4);
    std::sort(server.requests.begin(), server.requests.end(),
              [](const auto &a, const auto &b) { return a.line + a.body < b.line + b.body; });
    const auto event = raw("first")->toEvent();

    const auto &form = server.requests[0];
    EXPECT_EQ(form.line, "POST /collect HTTP/1.1");
    EXPECT_EQ(form.header("Content-Type"), "application/x-www-form-urlencoded");
    EXPECT_EQ(form.header("User-Agent"),
              EventCoding::userAgent("Orbilens Player", "2.3.1.400").toUtf8());
    EXPECT_EQ(form.header("Content-Length").toInt(), form.body.size());
    EXPECT_EQ(form.body, EventCoding::formBody(*event, kReporter, "UA-1", "Orbilens Player"));

    QSet<QByteArray> tokens;
    for (int i : {2, 3}) {
        const auto &record = server.requests[i];
        EXPECT_EQ(record.line, "POST /production/dse-ep/MessageProxy HTTP/1.1");
        const std::tuple<const char *, QByteArray> headers[] = {
            {"uuid_text", "{u}"},
            {"user-agent", "agent"},
            {"content-type", "application/json"},
            {"_xovdatacategory_", "cat/egory"},
            {"_xovenvironment_", "prod"},
            {"Content-Length", QByteArray::number(record.body.size())}};
        for (const auto &[name, value] : headers)
            EXPECT_EQ(record.header(name), value) << name;
        const QByteArray time = record.header("dt");
        EXPECT_TRUE(QDateTime::fromString(time, "yyyy-MM-dd'T'hh:mm:ss'Z'").isValid())
            << time.constData();
        QCryptographicHash hash(QCryptographicHash::Sha512);
        for (const QByteArray &part : {record.header("r"), time, QByteArray("the-key")})
            hash.addData(part);
        EXPECT_EQ(record.header("access_token"), hash.result().toHex());
        tokens.insert(record.header("access_token"));
        for (const QByteArray &header : record.headers)
            EXPECT_FALSE(header.contains("the-key")) << header.constData();
        EXPECT_FALSE(record.body.contains("the-key"));
    }
    EXPECT_EQ(tokens.size(), 2);
    EXPECT_EQ(server.requests[2].body, EventCoding::record(*event, kReporter));
    EXPECT_EQ(waiting(), QVector<int>({0, 0}));
}

TEST_P(ProvidersTest, WhichAnswersCountAsTaken)
{
    const QByteArray redirect = "HTTP/1.1 307 Away\r\nLocation: /elsewhere\r\n"
                                "Content-Length: 0\r\nConnection: close\r\n\r\n";
    const std::tuple<const char *, QByteArray, QVector<int>> rows[] = {
        {"ok", accepted(), {0, 0}},
        {"no content", HttpServer::reply("204 No Content", ""), {0, 1}},
        {"not ok", HttpServer::reply("200 OK", R"({"status":"no"})"), {0, 1}},
        {"text after a NUL",
         HttpServer::reply("200 OK", QByteArray("{\"status\":\"ok\"}\0x", 17)),
         {0, 0}},
        {"nonsense", HttpServer::reply("200 OK", "\xff\xfe"), {0, 1}},
        {"endless", HttpServer::reply("200 OK", QByteArray(100 << 20, ' ')), {0, 1}},
        {"server error", HttpServer::reply("500 Oops", R"({"status":"ok"})"), {1, 1}},
        {"forbidden", HttpServer::reply("403 No", R"({"status":"ok"})"), {1, 1}},
        {"redirect", redirect, {1, 1}},
        {"cut off", "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{\"status\"", {1, 1}},
        {"not HTTP", QByteArray("ok\n\n"), {1, 1}},
    };
    for (const auto &[name, reply, stillWaiting] : rows) {
        SCOPED_TRACE(name);
        server.setAnswer([answer = reply](const HttpServer::Request &) { return answer; });
        batch({"event"});
        finish();
        EXPECT_EQ(waiting(), stillWaiting);
        server.setAnswer([](const HttpServer::Request &) { return accepted(); });
        batch({});
        finish();
        EXPECT_EQ(waiting(), QVector<int>({0, 0}));
    }
}

TEST_P(ProvidersTest, AServerThatNobodyVouchesForGetsNothing)
{
    server.encrypt();
    make();
    batch({"event"});
    finish();
    EXPECT_EQ(waiting(), QVector<int>({1, 1}));
    EXPECT_TRUE(server.requests.isEmpty());
}

TEST_P(ProvidersTest, OfflineLosesAndDoublesNothing)
{
    server.stop();
    const QStringList names{"e0", "e1", "e2", "e3", "e4", "e5", "e6", "e7", "e8", "e9"};
    batch(names);
    finish();
    EXPECT_EQ(waiting(), QVector<int>({10, 10}));
    batch({});
    finish();
    EXPECT_EQ(waiting(), QVector<int>({10, 10}));
    server.restart();
    batch({"late"});
    finish();
    EXPECT_EQ(waiting(), QVector<int>({0, 0}));
    for (const char *path : {"/collect", "/MessageProxy"}) {
        for (const QString &name : names)
            EXPECT_EQ(arrivals(path, name.toLatin1()), 1);
        EXPECT_EQ(arrivals(path, "late"), 1);
    }
}

TEST_P(ProvidersTest, WhatWasNotPostedAtTheEndGoesBack)
{
    server.setAnswer([](const HttpServer::Request &) { return QByteArray(); });
    QStringList names;
    for (int i = 0; i < KAnalyticsProviderHttp::kMaxPostsInFlight + 3; ++i)
        names.append(QString::number(i));
    batch(names);
    providers.clear();
    EXPECT_EQ(waiting(), QVector<int>({3, 3}));
    test::settle();
}

INSTANTIATE_TEST_SUITE_P(Stores, ProvidersTest, ::testing::Bool());

TEST(Providers, SilenceIsWaitedForTenSecondsOnceAndNoLonger)
{
    test::WarningGuard guard;
    HttpServer server([](const HttpServer::Request &) { return QByteArray(); });
    QNetworkAccessManager network;
    KAnalyticsFile file;
    KAnalyticsProviderGoogleAnalytics idle(&network, server.address(), "UA-1", "p");
    KAnalyticsProviderGoogleAnalytics one(&network, server.address(), "UA-1", "p");
    KAnalyticsProviderDSE two(&network, server.address(), kIdentity);
    QSignalSpy oneGaveUp(&one, &KAnalyticsProviderHttp::noMoreRepliesWaiting);
    QSignalSpy twoGaveUp(&two, &KAnalyticsProviderHttp::noMoreRepliesWaiting);
    idle.setStore(nullptr, &file);
    idle.waitBeforeExit(); // returns, or the test never ends
    for (auto *provider : std::initializer_list<KAnalyticsProviderHttp *>{&one, &two}) {
        provider->setStore(nullptr, &file);
        provider->sendPending();
        provider->sendEvent(*raw("e"));
    }
    one.waitBeforeExit();
    EXPECT_EQ(oneGaveUp.count(), 1);
    EXPECT_EQ(server.requests.size(), 2);
    two.waitBeforeExit();
    EXPECT_EQ(twoGaveUp.count(), 1);
}
