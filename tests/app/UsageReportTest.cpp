#include "app/UsageReport.h"
#include "analytics/KAnalyticsManager.h"
#include "app/Deployment.h"
#include "support/HttpServer.h"
#include "support/Soon.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QNetworkAccessManager>
#include <QRegularExpression>
#include <QStandardPaths>
#include <QTimer>

namespace {

using Consent = UsageReport::Consent;
using test::HttpServer;

QString dataFolder()
{
    return QStandardPaths::writableLocation(QStandardPaths::DataLocation);
}

/// One run of the program against a server that takes everything.
struct ProgramRun
{
    explicit ProgramRun(Consent consent, const QString &host = {})
    {
        Deployment deployment;
        deployment.googleAnalyticsServer = host.isEmpty() ? server.address() : host;
        deployment.collectorServer = deployment.googleAnalyticsServer;
        report.begin(deployment, &network, consent);
    }

    /// Names of the events that arrived at the collector, in their order, without a repetition.
    QStringList arrived() const
    {
        QStringList names;
        for (const auto &request : server.requests) {
            static const QRegularExpression name("\"event_name\": \"([^\"]*)\"");
            const auto match = name.match(request.body);
            if (match.hasMatch())
                names.append(match.captured(1));
        }
        names.sort();
        return names;
    }

    HttpServer server{[](const HttpServer::Request &) {
        return HttpServer::reply("200 OK", R"({"status":"OK"})");
    }};
    QNetworkAccessManager network;
    KAnalyticsManager manager;
    UsageReport report{&manager};
};

const UsageReport::Start kStart{"vlc", true, "master", false, true};

struct UsageReportTest : ::testing::Test
{
    UsageReportTest() { QDir(dataFolder()).removeRecursively(); }
};

} // namespace

TEST(Deployment, ASourceBuildNamesNoServer)
{
    const Deployment own = Deployment::ofThisBuild();
    EXPECT_EQ(own.googleAnalyticsServer + own.collectorServer + own.updateServer +
                  own.documentationUrl + own.privacyUrl,
              "");
    EXPECT_EQ(own.trackingId, "UA-31415926-7");
    EXPECT_EQ(own.collectorIdentity.dataCategory, "orvex/orbilensplayer");
    EXPECT_EQ(own.productId, "lnd");
    for (const char *json : {"", "[]", "{\"updates\":[]}", "{\"updates\":{\"server\":5}}"})
        EXPECT_EQ(Deployment::fromJson(json).updateServer, "") << json;
    EXPECT_EQ(Deployment::fromJson(R"({"updates":{"server":"https://x"}})").updateServer,
              "https://x");
}

TEST_F(UsageReportTest, NothingIsKeptWithoutConsentOrServer)
{
    for (const auto &[consent, host] : {std::pair<Consent, QString>(Consent::Refused, ""),
                                        {Consent::Given, "http://example.org"}}) {
        ProgramRun run(consent, host);
        run.report.sendStart(kStart);
        run.report.sendDevices(true, true, consent);
        run.report.end(consent);
        test::settle();
        EXPECT_FALSE(run.manager.isActive());
        EXPECT_TRUE(run.server.requests.isEmpty());
        EXPECT_FALSE(QDir(dataFolder()).exists());
    }
}

TEST_F(UsageReportTest, AnUsualRunAndTheNextOne)
{
    QStringList expected{"ADOBE PLUGIN", "FOREGROUND START", "HMD",        "LEAP MOTION",
                         "REALSENSE",    "SENSOR",           "UDP MASTER", "VIDEO BACKEND VLC"};
    {
        ProgramRun run(Consent::Given);
        run.report.sendStart(kStart);
        run.report.sendDevices(true, false, Consent::Given);
        ASSERT_SOON(run.server.requests.size() == 16);
        EXPECT_EQ(run.arrived(), expected);
        run.report.end(Consent::Given);
        test::settle();
        EXPECT_EQ(run.server.requests.size(), 16);
    }
    ProgramRun next(Consent::Given);
    next.report.sendDevices(false, false, Consent::Given);
    ASSERT_SOON(next.server.requests.size() == 6);
    EXPECT_EQ(next.arrived(), QStringList({"EXECUTION TIME", "HMD", "LEAP MOTION"}));
}

TEST_F(UsageReportTest, WithdrawnConsentSendsTheClosingBatchOnly)
{
    ProgramRun run(Consent::Given);
    run.report.sendDevices(true, true, Consent::Refused);
    test::settle();
    EXPECT_TRUE(run.server.requests.isEmpty());
    // As in the program, after the event loop has ended.
    QObject scope;
    QObject::connect(qApp, &QCoreApplication::aboutToQuit, &scope,
                     [&run] { run.report.end(Consent::Refused); });
    QTimer::singleShot(0, qApp, &QCoreApplication::quit);
    QCoreApplication::exec();
    EXPECT_EQ(run.arrived(), QStringList({"DISABLE STATS", "EXECUTION TIME"}));
    EXPECT_EQ(run.server.requests.size(), 4);
}
