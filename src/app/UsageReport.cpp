#include "app/UsageReport.h"

#include "analytics/KAnalyticsManager.h"
#include "analytics/KAnalyticsProviders.h"
#include "app/Deployment.h"
#include "foundation/KHttp.h"
#include "foundation/KVersion.h"

#include <QUrl>

#include <memory>

namespace {

const QString kStartStop = QStringLiteral("APP START/STOP");
const QString kExecutionTime = QStringLiteral("EXECUTION TIME");
const QString kFeature = QStringLiteral("FEATURE");
const QString kVrDevice = QStringLiteral("VR DEVICE");

QString upper(const char *prefix, const QString &text)
{
    return QLatin1String(prefix) + text.toUpper();
}

} // namespace

UsageReport::UsageReport(KAnalyticsManager *manager)
    : m_manager(manager)
{}

void UsageReport::begin(const Deployment &deployment, QNetworkAccessManager *network,
                        Consent consent)
{
    const auto &identity = deployment.collectorIdentity;
    std::unique_ptr<KAnalyticsProviderHttp> providers[] = {
        std::make_unique<KAnalyticsProviderGoogleAnalytics>(
            network, deployment.googleAnalyticsServer, deployment.trackingId,
            KVersion::productName()),
        std::make_unique<KAnalyticsProviderDSE>(network, deployment.collectorServer, identity)};
    bool reachable = false;
    for (auto &provider : providers) {
        if (!KHttp::isAllowed(provider->url()))
            continue;
        reachable = true;
        m_manager->addProvider(std::move(provider));
    }
    m_manager->setIsActive(reachable && consent == Consent::Given);
    m_manager->setVersion(KVersion::fullText());
    m_manager->startTimerEvent(kStartStop, kExecutionTime);
}

void UsageReport::sendStart(const Start &start)
{
    const struct
    {
        QString category;
        QString name;
        int value;
    } events[] = {
        {kStartStop, QStringLiteral("FOREGROUND START"), 0},
        {QStringLiteral("MEDIA"), upper("VIDEO BACKEND ", start.videoBackend), 1},
        {kFeature, QStringLiteral("ADOBE PLUGIN"), start.adobePlugin},
        {kFeature, upper("UDP ", start.communicationState), 1},
        {kVrDevice, QStringLiteral("REALSENSE"), start.realSense},
        {kVrDevice, QStringLiteral("SENSOR"), start.sensor},
    };
    for (const auto &event : events)
        m_manager->sendEventAction(event.category, event.name, event.value);
}

void UsageReport::sendDevices(bool headset, bool leapMotion, Consent consent)
{
    // Withdrawn already: only the closing batch still leaves.
    if (consent == Consent::Refused)
        return;
    m_manager->sendEventAction(kVrDevice, QStringLiteral("HMD"), int(headset));
    m_manager->sendEventAction(kVrDevice, QStringLiteral("LEAP MOTION"), int(leapMotion));
    m_manager->flushEvents(true);
}

void UsageReport::end(Consent consent)
{
    const bool withdrawn = m_manager->isActive() && consent == Consent::Refused;
    if (withdrawn)
        m_manager->sendEventAction(QStringLiteral("FEATURE | ANALYTICS"),
                                   QStringLiteral("DISABLE STATS"), 1);
    m_manager->stopTimerEvent(kStartStop, kExecutionTime);
    if (withdrawn)
        m_manager->waitBeforeExit();
}
