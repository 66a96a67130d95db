#include "analytics/KAnalyticsDb.h"

#include "analytics/KAnalyticsEvent.h"

#include <QLoggingCategory>

#include <algorithm>

Q_LOGGING_CATEGORY(analyticsDb, "kanalyticsdb")

namespace {

// Far more than a run makes; a store that holds more is not ours.
constexpr int kMaxEvents = 10000;

const QString kUserId = QStringLiteral("user_id");
const QString kRequestColumns = QStringLiteral("id INTEGER PRIMARY KEY, value TEXT");

} // namespace

KAnalyticsDb::KAnalyticsDb(const QString &connectionName, const QString &driver,
                           const QString &filePath, QObject *parent)
    : KDbSession(connectionName, driver, filePath, parent)
{}

void KAnalyticsDb::setFilePath(QString filePath)
{
    KDbSession::setFilePath(std::move(filePath));
}

void KAnalyticsDb::createTables()
{
    createTable(QStringLiteral("events"), QStringLiteral("id INTEGER PRIMARY KEY, value TEXT"));
    createTable(QStringLiteral("metadata"), QStringLiteral("name TEXT  PRIMARY KEY, value TEXT"));
    for (const QString &table : qAsConst(m_requestTables))
        createTable(table, kRequestColumns);
}

QStringList KAnalyticsDb::tablesToCopy() const
{
    return {QStringLiteral("events")};
}

void KAnalyticsDb::addEvent(const KAnalyticsEvent &event)
{
    if (!exec(QStringLiteral("INSERT INTO events (value) VALUES(:value)"),
              {{QStringLiteral(":value"), event.toJsonText()}}))
        qCDebug(analyticsDb) << "event lost" << event.name();
    commit();
}

QStringList KAnalyticsDb::takeEvents()
{
    return takeTexts(QStringLiteral("SELECT id,value FROM events"),
                     QStringLiteral("DELETE FROM events"), kMaxEvents);
}

QStringList KAnalyticsDb::takeTexts(const QString &selection, const QString &deletion, int maxRows)
{
    QStringList texts = select(selection, {}, maxRows);
    if (texts.isEmpty())
        return {};
    // What stays in the table would be sent again and again.
    const bool deleted = exec(deletion);
    commit();
    if (!deleted)
        return {};
    const auto tooLong = [](const QString &text) { return text.size() > kMaxTextLength; };
    texts.erase(std::remove_if(texts.begin(), texts.end(), tooLong), texts.end());
    return texts;
}

void KAnalyticsDb::setUserId(const QString &id)
{
    exec(QStringLiteral("INSERT INTO metadata (name,value) VALUES(:name, :value)"),
         {{QStringLiteral(":name"), kUserId}, {QStringLiteral(":value"), id}});
    commit();
}

QString KAnalyticsDb::userId()
{
    return select(QStringLiteral("SELECT value FROM metadata WHERE name=:name;"),
                  {{QStringLiteral(":name"), kUserId}}, 1)
        .value(0);
}

void KAnalyticsDb::createRequestTable(const QString &table)
{
    if (!m_requestTables.contains(table))
        m_requestTables.append(table);
    createTable(table, kRequestColumns);
    commit();
}

void KAnalyticsDb::addRequest(const QString &table, const QString &body)
{
    exec(QStringLiteral("INSERT INTO %1 (value) VALUES(:value)").arg(table),
         {{QStringLiteral(":value"), body}});
    exec(QStringLiteral("DELETE FROM %1 WHERE id <= (SELECT MAX(id) FROM %1) - %2")
             .arg(table)
             .arg(kMaxPendingRequests));
    commit();
}

QStringList KAnalyticsDb::takeRequests(const QString &table)
{
    return takeTexts(QStringLiteral("SELECT value FROM %1").arg(table),
                     QStringLiteral("DELETE FROM %1").arg(table), kMaxPendingRequests);
}
