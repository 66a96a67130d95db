#include "update/UpdateDecision.h"
#include "foundation/KHttp.h"

#include <gtest/gtest.h>

TEST(UpdateDecision, VersionsAndTheirMaturity)
{
    // Shown as null: no version.
    const std::tuple<const char *, const char *, bool> rows[] = {
        {"2.3.1.400", "2.3.1.400", true},
        {"2.3.1.401", "2.3.1.401", false},
        {"2.3.1.399", "2.3.1.399 RC 99", false},
        {"2.3.1.300", "2.3.1.300 RC 0", false},
        {"2.3.1.212", "2.3.1.212 Beta 12", false},
        {"2.3.1.100", "2.3.1.100 Alpha 0", false},
        {"02.3.1.7", "2.3.1.7 Internal 7", false},
        {"0.0.0.4294967295", "0.0.0.4294967295", false},
        {"2.3", nullptr, false},
        {"2.3.1.400.5", nullptr, false},
        {"99999999999.1.1.1", nullptr, false},
        {"2.3.1.-1", nullptr, false},
        {"2.3. 1.4", nullptr, false},
        {"2.3.1.+4", nullptr, false},
        {"2..1.4", nullptr, false},
        {"", nullptr, false}};
    for (const auto &[text, shown, stable] : rows) {
        SCOPED_TRACE(text);
        const auto version = ProductVersion::parse(text);
        ASSERT_EQ(version.has_value(), shown != nullptr);
        if (!version)
            continue;
        EXPECT_EQ(version->text() + version->suffix(), shown);
        EXPECT_EQ(version->isStable(), stable);
    }
    const char *const ascending[] = {"1.9.9.999", "2.2.10.0", "2.3.0.0",  "2.3.1.99",
                                     "2.3.1.400", "2.3.2.1",  "2.10.0.0", "10.0.0.0"};
    for (std::size_t i = 1; i < std::size(ascending); ++i)
        EXPECT_TRUE(*ProductVersion::parse(ascending[i - 1]) < *ProductVersion::parse(ascending[i]))
            << ascending[i];
}

TEST(UpdateDecision, BodiesOfVersionReplies)
{
    // Expected as null: no version.
    const std::tuple<QByteArray, const char *> rows[] = {
        {"2.3.2.410_2017-02-14", "2.3.2.410 2017-02-14"},
        {"\n2.3.2.410_2017-02-14\r\n\r\n", "2.3.2.410 2017-02-14"},
        {"# news\n2.3.2.410_2017-02-14\n9.9.9.9_2018-01-01", "2.3.2.410 2017-02-14"},
        {"2.3.2.410", nullptr},
        {"2.3.2.410_", nullptr},
        {"2.3.2.410_2017-02-30", nullptr},
        {"2.3.2.410_17", nullptr},
        {"x2.3.2.410_2017-02-14", nullptr},
        {"2.3.2.410_2017-02-14<br>", nullptr},
        {"12.3.2.4.10_2017-02-14", nullptr},
        {"99999999999.1.1.1_2017-02-14", nullptr},
        {"<html><body>404</body></html>", nullptr},
        {QByteArray("\xff\xfe\0\x32", 4), nullptr},
        {"", nullptr},
    };
    for (const auto &[body, expected] : rows) {
        SCOPED_TRACE(body.constData());
        const auto reply = UpdateDecision::readVersionReply(body);
        ASSERT_EQ(reply.has_value(), expected != nullptr);
        if (reply) {
            EXPECT_EQ(reply->version.text() + ' ' + reply->date.toString(Qt::ISODate), expected);
        }
    }
}

TEST(UpdateDecision, AWeekBetweenScheduledChecks)
{
    const QDateTime now(QDate(2017, 2, 14), QTime(12, 0));
    EXPECT_FALSE(UpdateDecision::isDue(now.addSecs(-604800), now));
    EXPECT_TRUE(UpdateDecision::isDue(now.addSecs(-604801), now));
    EXPECT_FALSE(UpdateDecision::isDue(now, now));
    EXPECT_TRUE(UpdateDecision::isDue(now.addSecs(1), now)) << "a clock that was put right";
    EXPECT_TRUE(UpdateDecision::isDue(QDateTime(), now));
}

TEST(UpdateDecision, ChangeLogsLoadAndRunNothing)
{
    const QByteArray rows[][2] = {
        {"  <h2>New</h2>\n<ul><li>One &amp; two</li></ul>\n ",
         "<h2>New</h2>\n<ul><li>One &amp; two</li></ul>"},
        {"a<img src='http://x/y.png'>b<IMG\nSRC=z />c", "abc"},
        {"a<script>alert(1)</script>b<STYLE>p{background:url(http://x)}</style >c", "abc"},
        {"a<script>never closed", "a"},
        {"<p style=\"background-image:url(http://x)\" onclick=x>t</p>", "<p>t</p>"},
        {"<a href=\"https://x/y?z=1\" title=q>l</a>", "<a href=\"https://x/y?z=1\">l</a>"},
        {"<a href='javascript:alert(1)'>l</a><a href=file:///etc>m</a>", "<a>l</a><a>m</a>"},
        {"<scr<script>x</script>ipt>y", "y"},
        {"<<img src=x>>", ">"},
        {"<body background=http://x><link href=http://x><table background=x>", "<table>"},
        {"text<img src=x", "text"},
        {"\xff\xfe", "\xef\xbf\xbd\xef\xbf\xbd"},
    };
    for (const auto &[body, expected] : rows)
        EXPECT_EQ(UpdateDecision::safeChangeLog(body).toUtf8(), expected);
}

TEST(Http, OnlyEncryptedOrOnThisMachine)
{
    const std::tuple<const char *, bool> rows[] = {{"https://example.org/x", true},
                                                   {"http://127.0.0.1:80/", true},
                                                   {"http://localhost", true},
                                                   {"http://[::1]:8080/", true},
                                                   {"http://example.org", false},
                                                   {"http://localhost.example.org", false},
                                                   {"http://127.0.0.1.example.org", false},
                                                   {"ftp://127.0.0.1", false},
                                                   {"file:///etc/passwd", false},
                                                   {"https://", false},
                                                   {"/collect", false},
                                                   {"", false}};
    for (const auto &[url, allowed] : rows)
        EXPECT_EQ(KHttp::isAllowed(QUrl(url)), allowed) << url;
}
