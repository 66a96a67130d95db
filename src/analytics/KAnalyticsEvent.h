#pragma once

// One thing that happened in a run, and its variants: timed, counted, and still in its stored text.
// Made by KAnalyticsManager or for it; GUI thread only.

#include <QElapsedTimer>
#include <QJsonObject>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

class KAnalyticsEvent : public QObject
{
    Q_OBJECT
    Q_PROPERTY(QString name READ name WRITE setName NOTIFY nameChanged)
    Q_PROPERTY(QString category READ category WRITE setCategory NOTIFY categoryChanged)
    Q_PROPERTY(QString session READ session WRITE setSession NOTIFY sessionChanged)
    Q_PROPERTY(qlonglong timestamp READ timestamp WRITE setTimestamp NOTIFY timestampChanged)
    Q_PROPERTY(EventType type READ type WRITE setType NOTIFY typeChanged)
    Q_PROPERTY(QVariant value READ value WRITE setValue NOTIFY valueChanged)

public:
    // With a fixed type, as numbers from elsewhere get in.
    enum EventType : int { EventAction = 0, EventDuration = 1, EventCounter = 2 };
    Q_ENUM(EventType)

    /// An action at this moment.
    explicit KAnalyticsEvent(QObject *parent = nullptr);
    KAnalyticsEvent(EventType type, const QString &category, const QString &name,
                    QObject *parent = nullptr);

    QString name() const { return m_name; }
    QString category() const { return m_category; }
    /// Identifier of the run it happened in.
    QString session() const { return m_session; }
    /// Milliseconds since the epoch.
    qlonglong timestamp() const { return m_timestamp; }
    EventType type() const { return m_type; }
    /// A number, a bool, a text, or a map with "label" and "value".
    QVariant value() const { return m_value; }

    /// The flat object of the store: timestamp, name, category, session, type and value.
    QJsonObject toJson() const;
    /// Its text, one line.
    QString toJsonText() const;

    /// "action", "duration" or "counter"; "unknow" for anything else.
    static QString typeText(EventType type);

public slots:
    void setName(const QString &name);
    void setCategory(const QString &category);
    void setSession(const QString &session);
    void setTimestamp(qlonglong timestamp);
    void setType(KAnalyticsEvent::EventType type);
    void setValue(const QVariant &value);

signals:
    void nameChanged(QString name);
    void categoryChanged(QString category);
    void sessionChanged(QString session);
    void timestampChanged(qlonglong timestamp);
    void typeChanged(KAnalyticsEvent::EventType type);
    void valueChanged(QVariant value);

private:
    QString m_name;
    QString m_category;
    QString m_session;
    qlonglong m_timestamp;
    EventType m_type = EventAction;
    QVariant m_value;
};

/// How long something took.
class KAnalyticsEventTimer : public KAnalyticsEvent
{
    Q_OBJECT

public:
    KAnalyticsEventTimer(const QString &category, const QString &name, QObject *parent = nullptr);

    void restart() { m_timer.restart(); }
    /// Sets the value to the milliseconds since the last start.
    void stop();

private:
    QElapsedTimer m_timer;
};

/// How often something happened.
class KAnalyticsEventCounter : public KAnalyticsEvent
{
    Q_OBJECT

public:
    KAnalyticsEventCounter(const QString &category, const QString &name, QObject *parent = nullptr);

    /// Counts @p step more; the value follows.
    void add(int step);

private:
    int m_counter = 0;
};

/// An event as the store holds it.
class KAnalyticsRawEvent : public QObject
{
    Q_OBJECT

public:
    explicit KAnalyticsRawEvent(QString jsonText, QObject *parent = nullptr);

    QString jsonText() const { return m_jsonText; }

    /// The event again; null when the text is no JSON object.
    [[nodiscard]] std::unique_ptr<KAnalyticsEvent> toEvent() const;

private:
    const QString m_jsonText;
};
