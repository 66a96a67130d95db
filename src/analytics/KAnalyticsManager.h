#pragma once

// Takes in the small named events of the program, stores each at once and hands them to the
// providers in batches. Process-wide, made after the foundation and ended before it; GUI thread.
// Nothing here ever reports to the user or waits for the network, but for waitBeforeExit().

#include "analytics/KAnalyticsEvent.h"

#include <QHash>
#include <QObject>

#include <memory>
#include <vector>

class KAnalyticsDb;
class KAnalyticsFile;
class KAnalyticsProvider;

class KAnalyticsManager : public QObject
{
    Q_OBJECT
    Q_PROPERTY(int maxEventsBufferised READ maxEventsBufferised WRITE setMaxEventsBufferised NOTIFY
                   maxEventsBufferisedChanged)
    Q_PROPERTY(QString userId READ userId)
    Q_PROPERTY(QString version READ version WRITE setVersion NOTIFY versionChanged)
    Q_PROPERTY(bool isActive READ isActive WRITE setIsActive NOTIFY isActiveChanged)

public:
    enum class Store { Database, File };
    /// Where the user's id comes from: shared by the maker's products on this machine, or this
    /// store's own.
    enum class UserIdSource { Shared, Stored };

    /// Opens and writes nothing until the first use while active.
    explicit KAnalyticsManager(Store store = Store::Database,
                               UserIdSource userIdSource = UserIdSource::Shared,
                               QObject *parent = nullptr);
    ~KAnalyticsManager() override;

    /// Null before CreateInstance() and after DestroyInstance().
    static KAnalyticsManager *Instance();
    static void CreateInstance();
    static void DestroyInstance();

    int maxEventsBufferised() const { return m_maxEventsBufferised; }
    QString version() const { return m_version; }
    bool isActive() const { return m_isActive; }

    /// Takes @p provider over, which is served after those before it.
    void addProvider(std::unique_ptr<KAnalyticsProvider> provider);

public slots:
    void sendEvent(KAnalyticsEvent::EventType type, QString category, QString name, QVariant value);
    void sendEventAction(QString category, QString name, QVariant value);
    /// Takes @p event over. With @p flush a batch follows from the event loop.
    void sendEvent(KAnalyticsEvent *event, bool flush);
    void sendEvent(KAnalyticsEvent *event);
    void startTimerEvent(QString category, QString name);
    void stopTimerEvent(QString category, QString name);
    void increaseCounterEvent(QString category, QString name);
    void decreaseCounterEvent(QString category, QString name);
    void setMaxEventsBufferised(int maxEventsBufferised);
    void setVersion(QString version);
    void setIsActive(bool isActive);
    /// Sends what is stored: from the event loop if @p delayed, else now.
    void flushEvents(bool delayed);
    /// Sends what is stored and lets it arrive, ten seconds at most.
    void waitBeforeExit();
    /// Both are empty until the first use while active.
    QString userId();
    QString session();

protected slots:
    void flushEventsSend();

signals:
    void maxEventsBufferisedChanged(int maxEventsBufferised);
    void versionChanged(QString version);
    void isActiveChanged(bool isActive);
    void flushEventsAsked();

private:
    void openStore();
    void readUserId();
    void equip(KAnalyticsProvider &provider);
    void prepare(KAnalyticsEvent &event);
    void store(const KAnalyticsEvent &event);
    /// Stores and asks for a batch when enough came together.
    void write(const KAnalyticsEvent &event);
    void count(const QString &category, const QString &name, int step);
    QStringList takeEvents();

    const Store m_storeKind;
    const UserIdSource m_userIdSource;
    std::unique_ptr<KAnalyticsDb> m_db;
    std::unique_ptr<KAnalyticsFile> m_file;
    std::vector<std::unique_ptr<KAnalyticsProvider>> m_providers;
    int m_eventsBufferised = 0;
    int m_maxEventsBufferised = 10;
    QHash<QString, KAnalyticsEventTimer *> m_timers;
    QHash<QString, KAnalyticsEventCounter *> m_counters;
    QString m_userId;
    QString m_version;
    bool m_isActive = true;
    QString m_session;
};
