#pragma once

// Which usage events the program sends at its start and end, and on what conditions. Owned by
// Application, GUI thread.

#include <QString>

class KAnalyticsManager;
class QNetworkAccessManager;
struct Deployment;

class UsageReport
{
public:
    /// The user's choice in the settings, read anew for each step.
    enum class Consent { Given, Refused };

    /// What is known as soon as the window is there.
    struct Start
    {
        QString videoBackend;
        bool adobePlugin = false;
        /// Master, slave or off.
        QString communicationState;
        bool realSense = false;
        bool sensor = false;
    };

    /// @p manager outlives this object.
    explicit UsageReport(KAnalyticsManager *manager);

    /// Adds a provider for each server of @p deployment that may be asked. Without any, or without
    /// consent, statistics stay off for this run. @p network outlives the manager's providers.
    void begin(const Deployment &deployment, QNetworkAccessManager *network, Consent consent);
    void sendStart(const Start &start);
    /// A moment later, when the devices have answered; sends what came together.
    void sendDevices(bool headset, bool leapMotion, Consent consent);
    /// The last events: kept for the next run, or sent at once when the user withdrew consent in
    /// this run.
    void end(Consent consent);

private:
    KAnalyticsManager *const m_manager;
};
