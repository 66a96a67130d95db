#include "analytics/EventCoding.h"
#include "analytics/KAnalyticsEvent.h"

#include <gtest/gtest.h>

#include <QJsonDocument>
#include <QLocale>
#include <QSysInfo>

namespace {

const EventCoding::Reporter kReporter{"{u}", "{u}|20170214", "2.3.1.400"};

KAnalyticsEvent::EventType typeOf(int number)
{
    return static_cast<KAnalyticsEvent::EventType>(number);
}

} // namespace

TEST(EventCoding, EventsSurviveTheStore)
{
    const std::tuple<int, QVariant, const char *> rows[] = {
        {0, 1, R"("type":"action","value":1)"},
        {0, true, R"("type":"action","value":true)"},
        {0, QStringLiteral("\u00e9\""), "\"type\":\"action\",\"value\":\"\u00e9\\\"\""},
        {1, 5321LL, R"("type":"duration","value":5321)"},
        {2, QVariantMap{{"label", "l"}, {"value", 2.5}},
         R"("type":"counter","value":{"label":"l","value":2.5})"},
        {7, QVariant(), R"("type":"unknow","value":null)"},
    };
    for (const auto &[type, value, json] : rows) {
        KAnalyticsEvent event(typeOf(type), "c", "n");
        event.setSession("s");
        event.setTimestamp(1487073600123);
        event.setValue(value);
        const QString text = event.toJsonText();
        EXPECT_EQ(text.toStdString(), std::string(R"({"category":"c","name":"n","session":"s",)"
                                                  R"("timestamp":1487073600123,)") +
                                          json + "}");
        const auto again = KAnalyticsRawEvent(text).toEvent();
        ASSERT_TRUE(again);
        EXPECT_EQ(again->toJsonText(), text);
    }
    for (const char *text : {"", "[]", "{", "null", "\"x\"", "\xff"})
        EXPECT_FALSE(KAnalyticsRawEvent(QString::fromLatin1(text)).toEvent()) << text;
    for (const char *text : {R"({"timestamp":1e300})", R"({"timestamp":-1e300})",
                             R"({"timestamp":"x","type":5,"value":[[]]})"}) {
        const auto event = KAnalyticsRawEvent(QString::fromLatin1(text)).toEvent();
        ASSERT_TRUE(event) << text;
        EXPECT_EQ(event->timestamp(), 0);
        EXPECT_EQ(
            QJsonDocument::fromJson(EventCoding::record(*event, kReporter))["log_ts"].toString(),
            "1970-01-01T00:00:00Z");
    }
}

TEST(EventCoding, FormsByteForByte)
{
    const std::tuple<int, QVariant, const char *, const char *> rows[] = {
        {0, 1, "", "ev=1"},
        {0, 12345678901.0, "", "ev=12345678901"},
        {0, true, "", "ev=true"},
        {0, "a&b=c d", "own", "ev=a%26b%3Dc%20d"},
        {0, QVariantMap{{"label", "x y"}, {"value", 3.0}}, "", "el=x%20y&ev=3"},
        {0, QVariantMap{}, "", "el=&ev="},
        {1, 5321.0, "", "el=5321&ev=5321"},
        {2, QVariant(), "", "el=NAME%20%2F&ev=0"},
        {2, QVariantMap{{"label", "x"}, {"value", 1}}, "", "el=x&ev=1"},
    };
    const QByteArray system = EventCoding::systemText(QSysInfo::windowsVersion()).toUtf8();
    for (const auto &[type, value, session, end] : rows) {
        SCOPED_TRACE(end);
        KAnalyticsEvent event(typeOf(type), "CAT | \u00e9", "NAME /");
        event.setSession(session);
        event.setValue(value);
        const QByteArray expected =
            "v=1&tid=UA-1&cid=%7Bu%7D&an=Orbilens%20Player&av=2.3.1.400&t=event"
            "&ua=Orbilens%20Player/2.3.1.400%20(" +
            QByteArray(system).replace(' ', "%20") +
            ")&cd1=" + (*session ? "own" : "%7Bu%7D%7C20170214") +
            "&ul=" + QLocale::system().bcp47Name().toLatin1() +
            "&dp=%2Fapp%2FOrbilens%20Player%2FCAT%20%7C%20%C3%A9%2FNAME%20%2F"
            "&ec=CAT%20%7C%20%C3%A9&ea=NAME%20%2F&" +
            end;
        EXPECT_EQ(EventCoding::formBody(event, kReporter, "UA-1", "Orbilens Player").toStdString(),
                  expected.toStdString());
    }
}

TEST(EventCoding, RecordsByteForByte)
{
    KAnalyticsEvent event(KAnalyticsEvent::EventCounter, "c", "N");
    event.setTimestamp(1487073600123);
    event.setValue(QVariantMap{{"label", "l"}, {"value", 2}, {"user_id", "forged"}});
    const QString expected = QStringLiteral(R"({
    "header": {
        "entity_name": "N",
        "event_type": "create",
        "primary_key": [
            "timestamp"
        ],
        "version_id": "2.3.1.400"
    },
    "log_ts": "2017-02-14T12:00:00Z",
    "record": {
        "arch": "%1",
        "event_name": "N",
        "label": "l",
        "locale": "%2",
        "os": "%3",
        "session": "{u}|20170214",
        "timestamp": 1487073600123,
        "user_id": "{u}",
        "value": 2,
        "value_type": "counter"
    }
}
)")
                                 .arg(QSysInfo::currentCpuArchitecture(),
                                      QLocale::system().bcp47Name(), QSysInfo::prettyProductName());
    EXPECT_EQ(EventCoding::record(event, kReporter).toStdString(), expected.toStdString());
    event.setSession("own");
    event.setValue(true);
    const QJsonValue record =
        QJsonDocument::fromJson(EventCoding::record(event, kReporter))["record"];
    EXPECT_EQ(record["session"].toString(), "own");
    EXPECT_EQ(record["value"], QJsonValue(true));
}
