#pragma once

// The two services that events go to. Made at the start of analytics, owned by KAnalyticsManager,
// GUI thread.

#include "analytics/KAnalyticsProviderHttp.h"

/// Google Analytics by its Measurement Protocol, version 1: one form per event. Any success of HTTP
/// counts, the protocol answers nothing else.
class KAnalyticsProviderGoogleAnalytics : public KAnalyticsProviderHttp
{
    Q_OBJECT

public:
    /// @p server is the address without the path of the collection.
    KAnalyticsProviderGoogleAnalytics(QNetworkAccessManager *network, const QString &server,
                                      const QString &trackingId, const QString &applicationName,
                                      QObject *parent = nullptr);

    void sendEvent(const KAnalyticsRawEvent &raw) override;

protected:
    QNetworkRequest request() const override;
    bool checkResponse(const QString &body) const override;

private:
    const QString m_trackingId;
    const QString m_applicationName;
};

/// The maker's own collector: one signed JSON record per event.
class KAnalyticsProviderDSE : public KAnalyticsProviderHttp
{
    Q_OBJECT

public:
    struct Identity
    {
        /// Signs requests and never travels.
        QString apiKey;
        QString userAgent;
        QString dataCategory;
        QString environment;
        /// Takes the place of "%1" in the server's address.
        QString urlEnvironment;
    };

    /// @p server is the address without the path of the collector.
    KAnalyticsProviderDSE(QNetworkAccessManager *network, const QString &server,
                          const Identity &identity, QObject *parent = nullptr);

    void sendEvent(const KAnalyticsRawEvent &raw) override;

protected:
    QNetworkRequest request() const override;
    bool checkResponse(const QString &body) const override;

private:
    const Identity m_identity;
};
