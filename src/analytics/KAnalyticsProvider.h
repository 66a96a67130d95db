#pragma once

// Turns stored events into requests to one remote service. Made at the start of analytics, owned by
// KAnalyticsManager, which hands it the store; GUI thread.

#include "analytics/EventCoding.h"

#include <QObject>

class KAnalyticsDb;
class KAnalyticsFile;
class KAnalyticsRawEvent;

class KAnalyticsProvider : public QObject
{
    Q_OBJECT

public:
    explicit KAnalyticsProvider(QObject *parent = nullptr);

    /// Both outlive the provider; without a database @p db is null.
    void setStore(KAnalyticsDb *db, KAnalyticsFile *file);
    /// Who the events are from, before the first of them.
    void setReporter(const EventCoding::Reporter &reporter) { m_reporter = reporter; }

    /// Lets what was sent arrive, for a bounded time.
    virtual void waitBeforeExit();
    /// Makes the table of pending requests.
    virtual void init() = 0;
    /// Sends again what failed earlier.
    virtual void sendPending();
    virtual void sendEvent(const KAnalyticsRawEvent &raw) = 0;
    /// A batch is over.
    virtual void flushDone();

protected:
    KAnalyticsDb *db() const { return m_db; }
    KAnalyticsFile *file() const { return m_file; }
    const EventCoding::Reporter &reporter() const { return m_reporter; }

private:
    KAnalyticsDb *m_db = nullptr;
    KAnalyticsFile *m_file = nullptr;
    EventCoding::Reporter m_reporter;
};
