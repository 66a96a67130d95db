#include "analytics/EventCoding.h"

#include "analytics/KAnalyticsEvent.h"

#include <QCryptographicHash>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QLocale>
#include <QSysInfo>
#include <QUrl>
#include <QUrlQuery>

namespace {

const QString kLabel = QStringLiteral("label");
const QString kValue = QStringLiteral("value");

QString encoded(const QString &text)
{
    return QString::fromLatin1(QUrl::toPercentEncoding(text));
}

QString sessionOf(const KAnalyticsEvent &event, const EventCoding::Reporter &reporter)
{
    return event.session().isEmpty() ? reporter.session : event.session();
}

/// Numbers come back from the store as doubles; whole ones are written without an exponent.
QString valueText(const QVariant &value)
{
    constexpr double kWhole = 9007199254740992.0;
    if (value.userType() == QMetaType::Double) {
        const double number = value.toDouble();
        if (number >= -kWhole && number <= kWhole && number == double(qint64(number)))
            return QString::number(qint64(number));
    }
    return value.toString();
}

/// Durations and counters are told apart by a label beside their number.
QVariant labelled(const KAnalyticsEvent &event)
{
    QVariant value = event.value();
    const bool measured = event.type() == KAnalyticsEvent::EventDuration ||
                          event.type() == KAnalyticsEvent::EventCounter;
    if (!measured || value.userType() == QMetaType::QVariantMap)
        return value;
    const QString text = valueText(value);
    return QVariantMap{{kLabel, text.isEmpty() ? event.name() : text}, {kValue, value.toDouble()}};
}

QString windowsName(int windowsVersion)
{
    switch (windowsVersion) {
    case QSysInfo::WV_VISTA:
        return QStringLiteral("Windows NT 6.0");
    case QSysInfo::WV_WINDOWS7:
        return QStringLiteral("Windows NT 6.1");
    case QSysInfo::WV_WINDOWS8:
        return QStringLiteral("Windows NT 6.2 ");
    case QSysInfo::WV_WINDOWS8_1:
        return QStringLiteral("Windows NT 6.3 ");
    case QSysInfo::WV_WINDOWS10:
        return QStringLiteral("Windows NT 10.0 ");
    default:
        return QStringLiteral("Windows");
    }
}

} // namespace

QString EventCoding::systemText(int windowsVersion)
{
    if (windowsVersion != QSysInfo::WV_None)
        return QStringLiteral("Windows;U;%1").arg(windowsName(windowsVersion));
    return QStringLiteral("Linux;U;%1 %2").arg(QSysInfo::productType(), QSysInfo::productVersion());
}

QString EventCoding::userAgent(const QString &productName, const QString &version)
{
    return QStringLiteral("%1/%2 (%3)")
        .arg(productName, version, systemText(QSysInfo::windowsVersion()));
}

QByteArray EventCoding::formBody(const KAnalyticsEvent &event, const Reporter &reporter,
                                 const QString &trackingId, const QString &applicationName)
{
    QUrlQuery query;
    const auto add = [&query](const char *key, const QString &text) {
        // A null text would lose its "=".
        query.addQueryItem(QLatin1String(key), text.isNull() ? QStringLiteral("") : text);
    };
    add("v", QStringLiteral("1"));
    add("tid", trackingId);
    add("cid", encoded(reporter.userId));
    add("an", applicationName);
    add("av", reporter.version);
    add("t", QStringLiteral("event"));
    add("ua", userAgent(applicationName, reporter.version));
    add("cd1", encoded(sessionOf(event, reporter)));
    add("ul", QLocale::system().bcp47Name());
    add("dp",
        encoded(
            QStringLiteral("/app/%1/%2/%3").arg(applicationName, event.category(), event.name())));
    add("ec", encoded(event.category()));
    add("ea", encoded(event.name()));
    const QVariant value = labelled(event);
    if (value.userType() == QMetaType::QVariantMap) {
        const QVariantMap map = value.toMap();
        add("el", encoded(valueText(map.value(kLabel))));
        add("ev", encoded(valueText(map.value(kValue))));
    } else {
        add("ev", encoded(valueText(value)));
    }
    return query.toString(QUrl::FullyEncoded).toLatin1();
}

QByteArray EventCoding::record(const KAnalyticsEvent &event, const Reporter &reporter)
{
    QJsonObject record;
    if (event.value().userType() == QMetaType::QVariantMap)
        record = QJsonObject::fromVariantMap(event.value().toMap());
    else
        record.insert(kValue, QJsonValue::fromVariant(event.value()));
    // Inserted after a map's entries, which thus cannot take their places.
    record.insert(QStringLiteral("timestamp"), event.timestamp());
    record.insert(QStringLiteral("user_id"), reporter.userId);
    record.insert(QStringLiteral("session"), sessionOf(event, reporter));
    record.insert(QStringLiteral("value_type"), KAnalyticsEvent::typeText(event.type()));
    record.insert(QStringLiteral("event_name"), event.name());
    record.insert(QStringLiteral("os"), QSysInfo::prettyProductName());
    record.insert(QStringLiteral("arch"), QSysInfo::currentCpuArchitecture());
    record.insert(QStringLiteral("locale"), QLocale::system().bcp47Name());

    const QJsonObject header{
        {QStringLiteral("version_id"), reporter.version},
        {QStringLiteral("entity_name"), event.name()},
        {QStringLiteral("event_type"), QStringLiteral("create")},
        {QStringLiteral("primary_key"), QJsonArray{QStringLiteral("timestamp")}}};
    const QJsonObject message{
        {QStringLiteral("log_ts"), utcText(QDateTime::fromMSecsSinceEpoch(event.timestamp()))},
        {QStringLiteral("header"), header},
        {QStringLiteral("record"), record}};
    return QJsonDocument(message).toJson(QJsonDocument::Indented);
}

QString EventCoding::utcText(const QDateTime &time)
{
    return time.toUTC().toString(QStringLiteral("yyyy-MM-dd'T'hh:mm:ss'Z'"));
}

QByteArray EventCoding::accessToken(const QByteArray &random, const QByteArray &time,
                                    const QByteArray &apiKey)
{
    return QCryptographicHash::hash(random + time + apiKey, QCryptographicHash::Sha512).toHex();
}

bool EventCoding::collectorAccepted(const QString &body)
{
    const QJsonDocument document = QJsonDocument::fromJson(body.toUtf8());
    return document.object().value(QLatin1String("status")).toString().toUpper() ==
           QLatin1String("OK");
}
