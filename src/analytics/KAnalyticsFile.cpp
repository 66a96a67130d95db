#include "analytics/KAnalyticsFile.h"

#include "analytics/KAnalyticsEvent.h"
#include "foundation/KBinaryJson.h"

#include <QFile>
#include <QJsonDocument>
#include <QLoggingCategory>
#include <QSaveFile>

Q_LOGGING_CATEGORY(analyticsProviderFile, "kanalyticsproviderfile")

namespace {

const QString kEvents = QStringLiteral("events");
const QString kUserId = QStringLiteral("userId");

} // namespace

KAnalyticsFile::KAnalyticsFile(QObject *parent)
    : QObject(parent)
{}

KAnalyticsFile::~KAnalyticsFile() = default;

void KAnalyticsFile::setFilePath(QString filePath)
{
    m_filePath = std::move(filePath);
    m_lock = std::make_unique<QLockFile>(m_filePath + QLatin1String(".lock"));
}

QJsonObject KAnalyticsFile::readUnlocked() const
{
    QJsonObject fresh{{kEvents, QJsonArray()}};
    QFile file(m_filePath);
    if (!file.exists())
        return fresh;
    if (!file.open(QIODevice::ReadOnly))
        return {};
    const QByteArray bytes = file.read(kMaxFileBytes + 1);
    if (bytes.size() > kMaxFileBytes)
        return {};
    return KBinaryJson::fromBytes(bytes, KBinaryJson::Values::Nested).value_or(QJsonObject());
}

QJsonObject KAnalyticsFile::read() const
{
    // Nobody waits for another process here.
    if (!m_lock || !m_lock->tryLock(0))
        return {};
    QJsonObject object = readUnlocked();
    m_lock->unlock();
    return object;
}

bool KAnalyticsFile::change(const Change &change)
{
    if (!m_lock || !m_lock->tryLock(0))
        return false;
    QJsonObject object = readUnlocked();
    change(object);
    QSaveFile file(m_filePath);
    const QByteArray bytes = KBinaryJson::toBytes(object);
    const bool written =
        file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size() && file.commit();
    m_lock->unlock();
    if (!written)
        qCDebug(analyticsProviderFile) << "not written" << m_filePath << file.errorString();
    return written;
}

void KAnalyticsFile::addEvent(const KAnalyticsEvent &event)
{
    const bool added = change([&event](QJsonObject &object) {
        QJsonArray events = object.value(kEvents).toArray();
        events.append(event.toJson());
        object.insert(kEvents, events);
    });
    if (!added)
        qCDebug(analyticsProviderFile) << "event lost" << event.name().left(80);
}

QStringList KAnalyticsFile::takeEvents()
{
    QJsonArray events;
    const bool taken = change([&events](QJsonObject &object) {
        events = object.value(kEvents).toArray();
        object.insert(kEvents, QJsonArray());
    });
    QStringList texts;
    if (!taken)
        return texts;
    for (const QJsonValue &event : qAsConst(events))
        texts.append(
            QString::fromUtf8(QJsonDocument(event.toObject()).toJson(QJsonDocument::Compact)));
    return texts;
}

QString KAnalyticsFile::userId() const
{
    return read().value(kUserId).toString();
}

void KAnalyticsFile::setUserId(const QString &id)
{
    const bool stored = change([&id](QJsonObject &object) { object.insert(kUserId, id); });
    if (!stored)
        qCDebug(analyticsProviderFile) << "user id not stored";
}

QJsonArray KAnalyticsFile::array(const QString &name) const
{
    return read().value(name).toArray();
}

bool KAnalyticsFile::setArray(const QString &name, const QJsonArray &array)
{
    return change([&](QJsonObject &object) { object.insert(name, array); });
}
