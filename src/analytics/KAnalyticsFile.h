#pragma once

// The same service as KAnalyticsDb in one locked file of binary JSON, for a build without a
// database. Owned by KAnalyticsManager, GUI thread; the lock keeps other processes out. Each change
// reads and writes the whole file, which is meant to stay small.

#include <QJsonArray>
#include <QJsonObject>
#include <QLockFile>
#include <QObject>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

class KAnalyticsEvent;

class KAnalyticsFile : public QObject
{
    Q_OBJECT

public:
    /// A larger file is taken for damaged, in bytes.
    static constexpr qint64 kMaxFileBytes = 16 * 1024 * 1024;

    explicit KAnalyticsFile(QObject *parent = nullptr);
    ~KAnalyticsFile() override;

    virtual void setFilePath(QString filePath);

    void addEvent(const KAnalyticsEvent &event);
    /// The JSON texts of all events, which are then gone from the file. Empty when the file cannot
    /// be written, as they would be sent again otherwise.
    QStringList takeEvents();

    QString userId() const;
    void setUserId(const QString &id);

    /// A provider's request bodies.
    QJsonArray array(const QString &name) const;
    [[nodiscard]] bool setArray(const QString &name, const QJsonArray &array);

private:
    using Change = std::function<void(QJsonObject &)>;

    QJsonObject read() const;
    [[nodiscard]] bool change(const Change &change);
    QJsonObject readUnlocked() const;

    QString m_filePath;
    std::unique_ptr<QLockFile> m_lock;
};
