#include "analytics/KAnalyticsManager.h"

#include "analytics/KAnalyticsDb.h"
#include "analytics/KAnalyticsFile.h"
#include "analytics/KAnalyticsProvider.h"

#include <QCryptographicHash>
#include <QDateTime>
#include <QDir>
#include <QLoggingCategory>
#include <QSettings>
#include <QStandardPaths>
#include <QUuid>

#include <utility>

Q_LOGGING_CATEGORY(analyticsManager, "kanalyticsmanager")

namespace {

std::unique_ptr<KAnalyticsManager> theInstance;

const QString kStoreName = QStringLiteral("analytics");

QString storePath()
{
    const QString folder = QStandardPaths::writableLocation(QStandardPaths::DataLocation);
    if (!QDir().mkpath(folder))
        qCWarning(analyticsManager) << "cannot make the folder" << folder;
    const QByteArray name =
        QCryptographicHash::hash(kStoreName.toUtf8(), QCryptographicHash::Md5).toHex();
    return QDir(folder).filePath(QString::fromLatin1(name));
}

/// The id that the maker's products on this machine share; made where there is none.
QString sharedUserId()
{
    QSettings settings(QStringLiteral("Vedra"), QString());
    const QString key = QStringLiteral("platformDef");
    QString id = settings.value(key, QString()).toString();
    if (id.isEmpty()) {
        id = QUuid::createUuid().toString();
        settings.setValue(key, id);
    }
    return id;
}

} // namespace

KAnalyticsManager::KAnalyticsManager(Store store, UserIdSource userIdSource, QObject *parent)
    : QObject(parent)
    , m_storeKind(store)
    , m_userIdSource(userIdSource)
{
    // Queued, so that a batch asked for from inside a send runs after it.
    connect(this, &KAnalyticsManager::flushEventsAsked, this, &KAnalyticsManager::flushEventsSend,
            Qt::QueuedConnection);
}

KAnalyticsManager::~KAnalyticsManager()
{
    // Providers put unsent requests back, so they go before the store.
    m_providers.clear();
}

KAnalyticsManager *KAnalyticsManager::Instance()
{
    return theInstance.get();
}

void KAnalyticsManager::CreateInstance()
{
    if (!theInstance)
        theInstance = std::make_unique<KAnalyticsManager>();
}

void KAnalyticsManager::DestroyInstance()
{
    theInstance.reset();
}

void KAnalyticsManager::openStore()
{
    if (m_file)
        return;
    const QString path = storePath();
    if (m_storeKind == Store::Database) {
        m_db = std::make_unique<KAnalyticsDb>(kStoreName, QStringLiteral("QSQLITE"), path);
        m_db->setFilePath(path);
    }
    m_file = std::make_unique<KAnalyticsFile>();
    m_file->setFilePath(path);
    readUserId();
    m_session = m_userId + QLatin1Char('|') +
                QDateTime::currentDateTime().toString(QStringLiteral("yyyyMMddhhmmss"));
    for (const auto &provider : m_providers)
        equip(*provider);
}

void KAnalyticsManager::readUserId()
{
    const auto stored = [this] { return m_db ? m_db->userId() : m_file->userId(); };
    m_userId = m_userIdSource == UserIdSource::Shared ? sharedUserId() : stored();
    if (m_userId.isEmpty())
        m_userId = QUuid::createUuid().toString();
    if (m_db)
        m_db->setUserId(m_userId);
    else if (stored() != m_userId)
        m_file->setUserId(m_userId);
}

void KAnalyticsManager::equip(KAnalyticsProvider &provider)
{
    provider.setStore(m_db.get(), m_file.get());
    provider.setReporter({m_userId, m_session, m_version});
    provider.init();
}

void KAnalyticsManager::addProvider(std::unique_ptr<KAnalyticsProvider> provider)
{
    if (m_file)
        equip(*provider);
    m_providers.push_back(std::move(provider));
}

QString KAnalyticsManager::userId()
{
    if (m_isActive)
        openStore();
    return m_userId;
}

QString KAnalyticsManager::session()
{
    if (m_isActive)
        openStore();
    return m_session;
}

void KAnalyticsManager::sendEvent(KAnalyticsEvent::EventType type, QString category, QString name,
                                  QVariant value)
{
    if (!m_isActive)
        return;
    KAnalyticsEvent event(type, category, name);
    event.setValue(value);
    prepare(event);
    write(event);
}

void KAnalyticsManager::sendEventAction(QString category, QString name, QVariant value)
{
    sendEvent(KAnalyticsEvent::EventAction, std::move(category), std::move(name), std::move(value));
}

void KAnalyticsManager::sendEvent(KAnalyticsEvent *event, bool flush)
{
    if (!event)
        return;
    event->deleteLater();
    if (!m_isActive)
        return;
    prepare(*event);
    write(*event);
    if (flush)
        flushEvents(true);
}

void KAnalyticsManager::sendEvent(KAnalyticsEvent *event)
{
    sendEvent(event, false);
}

void KAnalyticsManager::prepare(KAnalyticsEvent &event)
{
    openStore();
    event.setSession(m_session);
}

void KAnalyticsManager::store(const KAnalyticsEvent &event)
{
    if (m_db)
        m_db->addEvent(event);
    else
        m_file->addEvent(event);
    ++m_eventsBufferised;
}

void KAnalyticsManager::write(const KAnalyticsEvent &event)
{
    store(event);
    if (m_eventsBufferised == m_maxEventsBufferised)
        emit flushEventsAsked();
}

void KAnalyticsManager::startTimerEvent(QString category, QString name)
{
    if (!m_isActive)
        return;
    KAnalyticsEventTimer *&timer = m_timers[category + name];
    if (timer)
        timer->restart();
    else
        timer = new KAnalyticsEventTimer(category, name, this);
}

void KAnalyticsManager::stopTimerEvent(QString category, QString name)
{
    KAnalyticsEventTimer *timer = m_timers.take(category + name);
    if (!timer)
        return;
    timer->deleteLater();
    if (!m_isActive)
        return;
    timer->stop();
    prepare(*timer);
    write(*timer);
}

void KAnalyticsManager::count(const QString &category, const QString &name, int step)
{
    if (!m_isActive)
        return;
    KAnalyticsEventCounter *&counter = m_counters[category + name];
    if (!counter)
        counter = new KAnalyticsEventCounter(category, name, this);
    counter->add(step);
}

void KAnalyticsManager::increaseCounterEvent(QString category, QString name)
{
    count(category, name, 1);
}

void KAnalyticsManager::decreaseCounterEvent(QString category, QString name)
{
    count(category, name, -1);
}

void KAnalyticsManager::setMaxEventsBufferised(int maxEventsBufferised)
{
    if (m_maxEventsBufferised == maxEventsBufferised)
        return;
    m_maxEventsBufferised = maxEventsBufferised;
    emit maxEventsBufferisedChanged(maxEventsBufferised);
}

void KAnalyticsManager::setVersion(QString version)
{
    if (m_version == version)
        return;
    m_version = version;
    for (const auto &provider : m_providers)
        provider->setReporter({m_userId, m_session, m_version});
    emit versionChanged(version);
}

void KAnalyticsManager::setIsActive(bool isActive)
{
    if (m_isActive == isActive)
        return;
    m_isActive = isActive;
    emit isActiveChanged(isActive);
}

void KAnalyticsManager::flushEvents(bool delayed)
{
    if (delayed)
        emit flushEventsAsked();
    else
        flushEventsSend();
}

QStringList KAnalyticsManager::takeEvents()
{
    return m_db ? m_db->takeEvents() : m_file->takeEvents();
}

void KAnalyticsManager::flushEventsSend()
{
    const auto counters = std::exchange(m_counters, {});
    for (KAnalyticsEventCounter *counter : counters) {
        counter->deleteLater();
        if (!m_isActive)
            continue;
        prepare(*counter);
        store(*counter);
    }
    m_eventsBufferised = 0;
    // Without a service events wait for a run that has one.
    if (!m_isActive || m_providers.empty())
        return;
    openStore();
    std::vector<std::unique_ptr<KAnalyticsRawEvent>> events;
    const QStringList texts = takeEvents();
    for (const QString &text : texts)
        events.push_back(std::make_unique<KAnalyticsRawEvent>(text));
    for (const auto &provider : m_providers) {
        provider->sendPending();
        for (const auto &event : events)
            provider->sendEvent(*event);
        provider->flushDone();
    }
}

void KAnalyticsManager::waitBeforeExit()
{
    flushEventsSend();
    for (const auto &provider : m_providers)
        provider->waitBeforeExit();
}
