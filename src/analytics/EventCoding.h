#pragma once

// The bytes in which events leave for the two services: form bodies, records and signatures. Plain
// functions without network or store, used by the providers.

#include <QByteArray>
#include <QDateTime>
#include <QString>

class KAnalyticsEvent;

namespace EventCoding {

/// Who reports; the same for all events of a run.
struct Reporter
{
    QString userId;
    /// Stands in for an event that names no session.
    QString session;
    QString version;
};

/// "Orbilens Player/2.3.1.400 (system)", the system as systemText() gives it.
QString userAgent(const QString &productName, const QString &version);

/// "Windows;U;%1" with the name of @p windowsVersion (a QSysInfo::WinVersion), or where that is
/// WV_None what Linux calls itself.
QString systemText(int windowsVersion);

/// Body of one hit of the Google Analytics Measurement Protocol, version 1.
QByteArray formBody(const KAnalyticsEvent &event, const Reporter &reporter,
                    const QString &trackingId, const QString &applicationName);

/// Record of the maker's collector as indented JSON.
QByteArray record(const KAnalyticsEvent &event, const Reporter &reporter);

/// "yyyy-MM-ddThh:mm:ssZ" in UTC.
QString utcText(const QDateTime &time);

/// Signature of a request to the collector: lower-case hexadecimal SHA-512 of the three joined.
QByteArray accessToken(const QByteArray &random, const QByteArray &time, const QByteArray &apiKey);

/// Whether the collector took a record: @p body is a JSON object whose "status" is "OK" in any
/// case.
[[nodiscard]] bool collectorAccepted(const QString &body);

} // namespace EventCoding
