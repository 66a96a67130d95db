#pragma once

// A small wrapper over one SQLite connection with a savepoint that is always open in place of
// transactions. Owned by whoever keeps data in it, used on that one thread. Nothing here fails
// loudly: a session that cannot be opened skips every statement, a failed statement is left out.

#include <QObject>
#include <QSqlDatabase>
#include <QString>
#include <QStringList>
#include <QVariantMap>

class QSqlError;

class KDbSession : public QObject
{
    Q_OBJECT

public:
    /// Opens nothing yet. @p connectionName is the process-wide name of the connection, @p driver
    /// the name of Qt's SQL driver.
    KDbSession(QString connectionName, QString driver, QString filePath, QObject *parent = nullptr);
    /// Closes.
    ~KDbSession() override;

    /// Opens the file at filePath() in exclusive mode; makes a damaged one anew, once. False when
    /// it cannot be opened, for example because another program has it.
    bool openDb();
    bool isOpen() const;

    QString filePath() const { return m_filePath; }

    /// Runs @p statement with the named @p values. False when closed or failed.
    bool exec(const QString &statement, const QVariantMap &values = {});
    /// Runs them in order; a failed one does not stop the rest.
    void exec(const QStringList &statements);
    /// The last column of what @p statement selects as texts, at most @p maxRows of them.
    QStringList select(const QString &statement, const QVariantMap &values, int maxRows);

    /// Makes what was done so far permanent.
    void commit();
    /// Undoes what was done since the last commit.
    void rollback();
    void close();
    /// Closes and deletes the file, unless it is ":memory:".
    void closeAndRemove();

    /// Copies each of tablesToCopy() into a new table with the suffix "_copy" of @p target.
    void copy(KDbSession &target);

public slots:
    /// Closes what is open and opens @p filePath instead.
    virtual void setFilePath(QString filePath);

protected:
    virtual void createTables() = 0;
    virtual QStringList tablesToCopy() const = 0;

    void createTable(const QString &table, const QString &columns);

private:
    bool tryOpen();
    void noteError(const QString &statement, const QSqlError &error);
    bool makeAnew();

    const QString m_connectionName;
    const QString m_driver;
    QString m_filePath;
    bool m_savepointOpen = false;
    bool m_lockedElsewhere = false;
    bool m_damaged = false;
    bool m_madeAnew = false;
};
