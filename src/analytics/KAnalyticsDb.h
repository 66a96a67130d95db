#pragma once

// The store of events that were not sent yet, in SQLite. Owned by KAnalyticsManager, GUI thread.

#include "analytics/KDbSession.h"

class KAnalyticsEvent;

class KAnalyticsDb : public KDbSession
{
    Q_OBJECT

public:
    /// Longer texts are dropped when read: no event and no request of ours comes near.
    static constexpr int kMaxTextLength = 64 * 1024;
    /// Requests waiting in one provider's table; the oldest make way.
    static constexpr int kMaxPendingRequests = 1000;

    KAnalyticsDb(const QString &connectionName, const QString &driver, const QString &filePath,
                 QObject *parent = nullptr);

    void addEvent(const KAnalyticsEvent &event);
    /// The JSON texts in the order they came in; the table is empty afterwards. Empty, and the
    /// table as it was, where rows cannot be deleted.
    QStringList takeEvents();

    /// Has no effect once an id is stored.
    void setUserId(const QString &id);
    QString userId();

    /// A provider's table of request bodies that wait to be sent again.
    void createRequestTable(const QString &table);
    void addRequest(const QString &table, const QString &body);
    QStringList takeRequests(const QString &table);

public slots:
    void setFilePath(QString filePath) override;

protected:
    void createTables() override;
    QStringList tablesToCopy() const override;

private:
    QStringList takeTexts(const QString &selection, const QString &deletion, int maxRows);

    QStringList m_requestTables;
};
