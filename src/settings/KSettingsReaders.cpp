#include "settings/KSettingsReaders.h"

#include "settings/KSettingsManager.h"

KernelSettingsReader::~KernelSettingsReader() = default;

bool KernelSettingsReader::GetBool(const QString &, bool defaultValue)
{
    return defaultValue;
}

int KernelSettingsReader::GetInt(const QString &, int defaultValue)
{
    return defaultValue;
}

double KernelSettingsReader::GetDouble(const QString &, double defaultValue)
{
    return defaultValue;
}

QString KernelSettingsReader::GetString(const QString &, QString defaultValue)
{
    return defaultValue;
}

namespace {

template <typename Value, typename Getter>
Value lastAnswer(const KSRFromKSRs::Readers &readers, const QString &key, Value result,
                 Getter getter)
{
    for (const auto &reader : readers) {
        if (reader)
            result = (reader.get()->*getter)(key, result);
    }
    return result;
}

} // namespace

KSRFromKSRs::KSRFromKSRs(Readers readers)
    : m_readers(std::move(readers))
{}

// First to last, which a vector by itself does not promise.
KSRFromKSRs::~KSRFromKSRs()
{
    for (auto &reader : m_readers)
        reader.reset();
}

bool KSRFromKSRs::GetBool(const QString &key, bool defaultValue)
{
    return lastAnswer(m_readers, key, defaultValue, &KernelSettingsReader::GetBool);
}

int KSRFromKSRs::GetInt(const QString &key, int defaultValue)
{
    return lastAnswer(m_readers, key, defaultValue, &KernelSettingsReader::GetInt);
}

double KSRFromKSRs::GetDouble(const QString &key, double defaultValue)
{
    return lastAnswer(m_readers, key, defaultValue, &KernelSettingsReader::GetDouble);
}

QString KSRFromKSRs::GetString(const QString &key, QString defaultValue)
{
    return lastAnswer(m_readers, key, std::move(defaultValue), &KernelSettingsReader::GetString);
}

KSRFromKSettingsManager::KSRFromKSettingsManager(KSettingsManager *manager)
    : m_manager(manager)
{}

bool KSRFromKSettingsManager::GetBool(const QString &key, bool defaultValue)
{
    return m_manager->GetBool(key, defaultValue);
}

int KSRFromKSettingsManager::GetInt(const QString &key, int defaultValue)
{
    return m_manager->GetInt(key, defaultValue);
}

double KSRFromKSettingsManager::GetDouble(const QString &key, double defaultValue)
{
    return m_manager->GetDouble(key, defaultValue);
}

QString KSRFromKSettingsManager::GetString(const QString &key, QString defaultValue)
{
    return m_manager->GetString(key, defaultValue);
}

KSRFromQHash::KSRFromQHash(QHash<QString, QVariant> *values)
    : m_values(values)
{}

bool KSRFromQHash::GetBool(const QString &key, bool defaultValue)
{
    const auto entry = m_values->find(key);
    return entry != m_values->end() ? entry->toBool() : defaultValue;
}

int KSRFromQHash::GetInt(const QString &key, int defaultValue)
{
    const auto entry = m_values->find(key);
    return entry != m_values->end() ? entry->toInt() : defaultValue;
}

double KSRFromQHash::GetDouble(const QString &key, double defaultValue)
{
    const auto entry = m_values->find(key);
    return entry != m_values->end() ? entry->toDouble() : defaultValue;
}

QString KSRFromQHash::GetString(const QString &key, QString defaultValue)
{
    const auto entry = m_values->find(key);
    return entry != m_values->end() ? entry->toString() : std::move(defaultValue);
}
