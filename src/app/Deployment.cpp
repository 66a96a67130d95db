#include "app/Deployment.h"

#include "resources/SceneResources.h"

#include <QFile>
#include <QJsonDocument>
#include <QJsonObject>

Deployment Deployment::fromJson(const QByteArray &json)
{
    Deployment result;
    auto &collector = result.collectorIdentity;
    const struct
    {
        const char *path;
        QString &text;
    } fields[] = {{"analytics/googleAnalytics/server", result.googleAnalyticsServer},
                  {"analytics/googleAnalytics/trackingId", result.trackingId},
                  {"analytics/collector/server", result.collectorServer},
                  {"analytics/collector/apiKey", collector.apiKey},
                  {"analytics/collector/userAgent", collector.userAgent},
                  {"analytics/collector/dataCategory", collector.dataCategory},
                  {"analytics/collector/environment", collector.environment},
                  {"analytics/collector/urlEnvironment", collector.urlEnvironment},
                  {"updates/server", result.updateServer},
                  {"updates/productId", result.productId},
                  {"links/documentation", result.documentationUrl},
                  {"links/privacy", result.privacyUrl},
                  {"links/leapMotionSdk", result.leapMotionSdkUrl},
                  {"links/realSenseSdk", result.realSenseSdkUrl}};
    const QJsonObject root = QJsonDocument::fromJson(json).object();
    for (const auto &field : fields) {
        QJsonValue value = root;
        const QStringList keys = QString::fromLatin1(field.path).split(QLatin1Char('/'));
        for (const QString &key : keys)
            value = value.toObject().value(key);
        field.text = value.toString();
    }
    return result;
}

Deployment Deployment::ofThisBuild()
{
    initDeploymentResource();
    QFile file(QStringLiteral(":/deployment.json"));
    return file.open(QIODevice::ReadOnly) ? fromJson(file.readAll()) : Deployment();
}
