#include "settings/KSettingsManager.h"

#include "foundation/KVersion.h"
#include "settings/StoreCheck.h"

#include <utility>

namespace {

/// The INI format keeps the section [General] for keys without a group and writes a group named
/// "general" in whatever case as [%General], which reads back as "General". Storing it under that
/// name from the start makes the key of this run and of the next one the same.
QString storeKey(const QString &key)
{
    const QLatin1String group("general/");
    return key.startsWith(group) ? QLatin1String("General/") + key.mid(group.size()) : key;
}

/// @p scope, after the files of that store have been looked at; for initialisers.
QSettings::Scope checked(QSettings::Scope scope, const QString &organization,
                         const QString &application)
{
    StoreCheck::setAsideUnsafeFiles(scope, organization, application);
    return scope;
}

} // namespace

void KernelSettingsWriter::Set(const QString &, const QVariant &) {}

KernelSettingsWriter::~KernelSettingsWriter() = default;

KSettingsManager::KSettingsManager()
    : m_settings(nullptr)
    , m_defaultsOnly(true)
{}

KSettingsManager::KSettingsManager(QSettings::Scope scope, const QString &organization,
                                   const QString &application)
    : m_settings(checked(scope, organization, application), organization, application)
    , m_defaultsOnly(false)
{}

KSettingsManager::~KSettingsManager() = default;

KSettingsManager KSettingsManager::ForUser()
{
    return KSettingsManager(QSettings::UserScope, KVersion::makerName(),
                            KVersion::applicationName());
}

void KSettingsManager::Set(const QString &key, const QVariant &value)
{
    m_settings.setValue(storeKey(key), value);
    if (m_listener)
        m_listener(key);
}

void KSettingsManager::Remove(const QString &key)
{
    m_settings.remove(storeKey(key));
    if (m_listener)
        m_listener(key);
}

void KSettingsManager::SetListener(std::function<void(const QString &)> listener)
{
    m_listener = std::move(listener);
}

bool KSettingsManager::Flush()
{
    m_settings.sync();
    return m_settings.status() == QSettings::NoError;
}

void KSettingsManager::SetDefault(const QString &key, const QVariant &value)
{
    m_registeredDefaults[key] = value;
}

QVariant KSettingsManager::GetVariant(const QString &key, const QVariant &defaultValue)
{
    if (!m_registeredDefaults.contains(key))
        m_registeredDefaults.insert(key, defaultValue);
    return Stored(key, defaultValue);
}

QVariant KSettingsManager::Stored(const QString &key, const QVariant &defaultValue) const
{
    return m_settings.value(storeKey(key), defaultValue);
}

QVariant KSettingsManager::StoredOrRegistered(const QString &key)
{
    const QString stored = storeKey(key);
    if (!m_defaultsOnly && m_settings.contains(stored))
        return m_settings.value(stored);
    return m_registeredDefaults[key];
}

bool KSettingsManager::GetBool(const QString &key)
{
    return StoredOrRegistered(key).toBool();
}

int KSettingsManager::GetInt(const QString &key)
{
    return StoredOrRegistered(key).toInt();
}

double KSettingsManager::GetDouble(const QString &key)
{
    return StoredOrRegistered(key).toDouble();
}

QString KSettingsManager::GetString(const QString &key)
{
    return StoredOrRegistered(key).toString();
}

QStringList KSettingsManager::GetStringList(const QString &key)
{
    return StoredOrRegistered(key).toStringList();
}

QColor KSettingsManager::GetColor(const QString &key)
{
    return StoredOrRegistered(key).value<QColor>();
}

QByteArray KSettingsManager::GetByteArray(const QString &key)
{
    return StoredOrRegistered(key).toByteArray();
}

QRect KSettingsManager::GetRect(const QString &key)
{
    return StoredOrRegistered(key).toRect();
}

QDateTime KSettingsManager::GetDateTime(const QString &key)
{
    return StoredOrRegistered(key).toDateTime();
}

bool KSettingsManager::GetBool(const QString &key, bool defaultValue)
{
    return Stored(key, defaultValue).toBool();
}

int KSettingsManager::GetInt(const QString &key, int defaultValue)
{
    bool converts = false;
    const int value = Stored(key, defaultValue).toInt(&converts);
    return converts ? value : defaultValue;
}

double KSettingsManager::GetDouble(const QString &key, double defaultValue)
{
    bool converts = false;
    const double value = Stored(key, defaultValue).toDouble(&converts);
    return converts ? value : defaultValue;
}

QString KSettingsManager::GetString(const QString &key, const QString &defaultValue)
{
    return Stored(key, defaultValue).toString();
}

QStringList KSettingsManager::GetStringList(const QString &key, const QStringList &defaultValue)
{
    return Stored(key, defaultValue).toStringList();
}

QColor KSettingsManager::GetColor(const QString &key, const QColor &defaultValue)
{
    return Stored(key, defaultValue).value<QColor>();
}

QByteArray KSettingsManager::GetByteArray(const QString &key, const QByteArray &defaultValue)
{
    return Stored(key, defaultValue).toByteArray();
}

QRect KSettingsManager::GetRect(const QString &key, const QRect &defaultValue)
{
    return Stored(key, defaultValue).toRect();
}

QDateTime KSettingsManager::GetDateTime(const QString &key, const QDateTime &defaultValue)
{
    return Stored(key, defaultValue).toDateTime();
}
