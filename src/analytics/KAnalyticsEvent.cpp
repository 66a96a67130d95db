#include "analytics/KAnalyticsEvent.h"

#include <QDateTime>
#include <QJsonDocument>

namespace {

constexpr auto kUnknownType = static_cast<KAnalyticsEvent::EventType>(3);

KAnalyticsEvent::EventType typeFromText(const QString &text)
{
    for (auto type : {KAnalyticsEvent::EventAction, KAnalyticsEvent::EventDuration,
                      KAnalyticsEvent::EventCounter}) {
        if (text == KAnalyticsEvent::typeText(type))
            return type;
    }
    return kUnknownType;
}

} // namespace

KAnalyticsEvent::KAnalyticsEvent(QObject *parent)
    : QObject(parent)
    , m_timestamp(QDateTime::currentMSecsSinceEpoch())
{}

KAnalyticsEvent::KAnalyticsEvent(EventType type, const QString &category, const QString &name,
                                 QObject *parent)
    : KAnalyticsEvent(parent)
{
    m_type = type;
    m_category = category;
    m_name = name;
}

QString KAnalyticsEvent::typeText(EventType type)
{
    switch (type) {
    case EventAction:
        return QStringLiteral("action");
    case EventDuration:
        return QStringLiteral("duration");
    case EventCounter:
        return QStringLiteral("counter");
    }
    return QStringLiteral("unknow");
}

QJsonObject KAnalyticsEvent::toJson() const
{
    return {{QStringLiteral("timestamp"), m_timestamp},
            {QStringLiteral("name"), m_name},
            {QStringLiteral("category"), m_category},
            {QStringLiteral("session"), m_session},
            {QStringLiteral("type"), typeText(m_type)},
            {QStringLiteral("value"), QJsonValue::fromVariant(m_value)}};
}

QString KAnalyticsEvent::toJsonText() const
{
    return QString::fromUtf8(QJsonDocument(toJson()).toJson(QJsonDocument::Compact));
}

void KAnalyticsEvent::setName(const QString &name)
{
    if (m_name == name)
        return;
    m_name = name;
    emit nameChanged(name);
}

void KAnalyticsEvent::setCategory(const QString &category)
{
    if (m_category == category)
        return;
    m_category = category;
    emit categoryChanged(category);
}

void KAnalyticsEvent::setSession(const QString &session)
{
    if (m_session == session)
        return;
    m_session = session;
    emit sessionChanged(session);
}

void KAnalyticsEvent::setTimestamp(qlonglong timestamp)
{
    if (m_timestamp == timestamp)
        return;
    m_timestamp = timestamp;
    emit timestampChanged(timestamp);
}

void KAnalyticsEvent::setType(EventType type)
{
    if (m_type == type)
        return;
    m_type = type;
    emit typeChanged(type);
}

void KAnalyticsEvent::setValue(const QVariant &value)
{
    if (m_value == value)
        return;
    m_value = value;
    emit valueChanged(value);
}

KAnalyticsEventTimer::KAnalyticsEventTimer(const QString &category, const QString &name,
                                           QObject *parent)
    : KAnalyticsEvent(EventDuration, category, name, parent)
{
    m_timer.start();
}

void KAnalyticsEventTimer::stop()
{
    setValue(m_timer.elapsed());
}

KAnalyticsEventCounter::KAnalyticsEventCounter(const QString &category, const QString &name,
                                               QObject *parent)
    : KAnalyticsEvent(EventCounter, category, name, parent)
{}

void KAnalyticsEventCounter::add(int step)
{
    m_counter += step;
    setValue(m_counter);
}

KAnalyticsRawEvent::KAnalyticsRawEvent(QString jsonText, QObject *parent)
    : QObject(parent)
    , m_jsonText(std::move(jsonText))
{}

std::unique_ptr<KAnalyticsEvent> KAnalyticsRawEvent::toEvent() const
{
    const QJsonDocument document = QJsonDocument::fromJson(m_jsonText.toUtf8());
    if (!document.isObject())
        return nullptr;
    const QJsonObject object = document.object();
    const auto text = [&object](const char *key) {
        return object.value(QLatin1String(key)).toString();
    };
    auto event = std::make_unique<KAnalyticsEvent>(typeFromText(text("type")), text("category"),
                                                   text("name"));
    event->setSession(text("session"));
    // JSON knows doubles only; what no timestamp can be becomes the epoch.
    constexpr double kWhole = 9007199254740992.0;
    const double timestamp = object.value(QLatin1String("timestamp")).toDouble();
    event->setTimestamp(timestamp >= 0 && timestamp <= kWhole ? qlonglong(timestamp) : 0);
    event->setValue(object.value(QLatin1String("value")).toVariant());
    return event;
}
