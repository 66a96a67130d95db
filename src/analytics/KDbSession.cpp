#include "analytics/KDbSession.h"

#include <QFile>
#include <QLoggingCategory>
#include <QSqlDriver>
#include <QSqlError>
#include <QSqlQuery>
#include <QSqlRecord>
#include <QVariant>

#include <utility>

Q_LOGGING_CATEGORY(dbSession, "dbsession")
Q_LOGGING_CATEGORY(dbSessionQuery, "dbsessionquery")

namespace {

// SQLite's primary result codes; extended ones hold them in their low byte.
constexpr int kBusy = 5;
constexpr int kLocked = 6;
constexpr int kCorrupt = 11;
constexpr int kNotADatabase = 26;
constexpr int kPrimaryCode = 0xff;

const QString kRollback = QStringLiteral("ROLLBACK TO SAVEPOINT load;");
const char kSqlite[] = "QSQLITE";
const char kMemory[] = ":memory:";

} // namespace

KDbSession::KDbSession(QString connectionName, QString driver, QString filePath, QObject *parent)
    : QObject(parent)
    , m_connectionName(std::move(connectionName))
    , m_driver(std::move(driver))
    , m_filePath(std::move(filePath))
{}

KDbSession::~KDbSession()
{
    close();
}

bool KDbSession::isOpen() const
{
    if (!QSqlDatabase::contains(m_connectionName))
        return false;
    const QSqlDatabase database = QSqlDatabase::database(m_connectionName, false);
    return database.isValid() && database.isOpen();
}

void KDbSession::setFilePath(QString filePath)
{
    close();
    m_filePath = std::move(filePath);
    openDb();
}

bool KDbSession::openDb()
{
    close();
    if (!tryOpen() && m_damaged && !m_madeAnew)
        makeAnew();
    return isOpen();
}

bool KDbSession::tryOpen()
{
    m_lockedElsewhere = false;
    m_damaged = false;
    {
        QSqlDatabase database = QSqlDatabase::addDatabase(m_driver, m_connectionName);
        database.setDatabaseName(m_filePath);
        // Waiting for another program's lock would stall the interface at each statement.
        if (m_driver == QLatin1String(kSqlite))
            database.setConnectOptions(QStringLiteral("QSQLITE_BUSY_TIMEOUT=0"));
        if (!database.open()) {
            qCWarning(dbSession) << "[openDb]"
                                 << "Error while opening" << m_filePath
                                 << database.lastError().text();
            database = QSqlDatabase();
            close();
            return false;
        }
    }
    // Statistics may lose a row, but a player must not wait for the disk.
    if (m_driver == QLatin1String(kSqlite))
        exec({QStringLiteral("PRAGMA page_size = 4096"),
              QStringLiteral("PRAGMA cache_size = 16384"),
              QStringLiteral("PRAGMA temp_store = MEMORY"),
              QStringLiteral("PRAGMA journal_mode = OFF"),
              QStringLiteral("PRAGMA locking_mode = EXCLUSIVE"),
              QStringLiteral("PRAGMA synchronous = OFF"),
              // Takes the lock now, so that a second program knows at once.
              QStringLiteral("BEGIN EXCLUSIVE"), QStringLiteral("COMMIT")});
    if (!m_damaged && !m_lockedElsewhere)
        createTables();
    if (m_damaged || m_lockedElsewhere) {
        qCWarning(dbSession) << "[openDb]"
                             << "Error while opening" << m_filePath
                             << (m_damaged ? "damaged" : "in use by another program");
        close();
        return false;
    }
    m_savepointOpen = exec(QStringLiteral("SAVEPOINT load;"));
    return true;
}

bool KDbSession::makeAnew()
{
    m_madeAnew = true;
    closeAndRemove();
    return tryOpen();
}

void KDbSession::noteError(const QString &statement, const QSqlError &error)
{
    qCDebug(dbSessionQuery) << statement << error.text();
    const int code = error.nativeErrorCode().toInt() & kPrimaryCode;
    m_lockedElsewhere = m_lockedElsewhere || code == kBusy || code == kLocked;
    m_damaged = m_damaged || code == kCorrupt || code == kNotADatabase;
}

bool KDbSession::exec(const QString &statement, const QVariantMap &values)
{
    if (!isOpen())
        return false;
    {
        QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
        const bool prepared = query.prepare(statement);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            query.bindValue(value.key(), *value);
        if (prepared && query.exec())
            return true;
        noteError(statement, query.lastError());
    }
    // Damage that only shows while the store is in use; while it opens, openDb() sees to it.
    if (!m_savepointOpen || !m_damaged || m_madeAnew)
        return false;
    return makeAnew() && exec(statement, values);
}

void KDbSession::exec(const QStringList &statements)
{
    for (const QString &statement : statements)
        exec(statement);
}

QStringList KDbSession::select(const QString &statement, const QVariantMap &values, int maxRows)
{
    QStringList rows;
    if (!isOpen())
        return rows;
    {
        QSqlQuery query(QSqlDatabase::database(m_connectionName, false));
        query.setForwardOnly(true);
        const bool prepared = query.prepare(statement);
        for (auto value = values.cbegin(); value != values.cend(); ++value)
            query.bindValue(value.key(), *value);
        if (prepared && query.exec()) {
            const int last = query.record().count() - 1;
            while (rows.size() < maxRows && query.next())
                rows.append(query.value(last).toString());
        }
        if (query.lastError().isValid())
            noteError(statement, query.lastError());
    }
    if (m_damaged && !m_madeAnew)
        makeAnew();
    return rows;
}

void KDbSession::commit()
{
    if (!m_savepointOpen)
        return;
    // Releasing the outermost savepoint is SQLite's commit; the driver's own one comes before the
    // next savepoint, which it would end.
    exec(QStringLiteral("RELEASE SAVEPOINT load;"));
    if (!isOpen())
        return;
    QSqlDatabase::database(m_connectionName, false).commit();
    exec(QStringLiteral("SAVEPOINT load;"));
}

void KDbSession::rollback()
{
    if (m_savepointOpen)
        exec(kRollback);
}

void KDbSession::close()
{
    if (!QSqlDatabase::contains(m_connectionName))
        return;
    if (isOpen()) {
        // Closed from here on: nothing is repaired on the way out.
        if (std::exchange(m_savepointOpen, false))
            exec(kRollback);
        QSqlDatabase::database(m_connectionName, false).close();
    }
    m_savepointOpen = false;
    QSqlDatabase::removeDatabase(m_connectionName);
}

void KDbSession::closeAndRemove()
{
    close();
    if (m_filePath != QLatin1String(kMemory) && QFile::exists(m_filePath))
        QFile::remove(m_filePath);
}

void KDbSession::createTable(const QString &table, const QString &columns)
{
    exec(QStringLiteral("CREATE TABLE IF NOT EXISTS %1( %2 );").arg(table, columns));
}

void KDbSession::copy(KDbSession &target)
{
    const QStringList tables = tablesToCopy();
    for (const QString &table : tables) {
        if (!isOpen() || !target.isOpen())
            return;
        QSqlQuery rows(QSqlDatabase::database(m_connectionName, false));
        rows.setForwardOnly(true);
        if (!rows.exec(QStringLiteral("SELECT * FROM %1").arg(table)))
            continue;
        const QSqlRecord record = rows.record();
        QStringList columns;
        QStringList places;
        for (int i = 0; i < record.count(); ++i) {
            columns.append(record.fieldName(i));
            places.append(QStringLiteral(":v%1").arg(i));
        }
        const QString copyName = table + QLatin1String("_copy");
        target.createTable(copyName, columns.join(QLatin1String(", ")));
        const QString insert = QLatin1String("INSERT INTO ") + copyName +
                               QLatin1String(" VALUES (") + places.join(QLatin1String(", ")) +
                               QLatin1Char(')');
        while (rows.next()) {
            QVariantMap values;
            for (int i = 0; i < places.size(); ++i)
                values.insert(places[i], rows.value(i));
            target.exec(insert, values);
        }
    }
    target.commit();
}
