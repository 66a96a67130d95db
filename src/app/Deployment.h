#pragma once

// What the maker of a build decides and no code: servers, identifiers and links. A plain value that
// Application reads once; an empty server or link is one that this build does not have.

#include "analytics/KAnalyticsProviders.h"

#include <QByteArray>
#include <QString>

struct Deployment
{
    QString googleAnalyticsServer;
    QString trackingId;
    QString collectorServer;
    KAnalyticsProviderDSE::Identity collectorIdentity;
    QString updateServer;
    QString productId;
    QString documentationUrl;
    QString privacyUrl;
    QString leapMotionSdkUrl;
    QString realSenseSdkUrl;

    /// Reads resources/deployment.json's form; what is missing or no text stays empty.
    static Deployment fromJson(const QByteArray &json);

    /// The one that was built in.
    static Deployment ofThisBuild();
};
