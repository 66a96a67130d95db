#pragma once

// Readers over the store, over a hash in memory and over a chain of readers. Each is a short-lived
// object of whoever reads options and stays on that thread.

#include "settings/KernelSettingsReader.h"

#include <QHash>
#include <QVariant>

#include <memory>
#include <vector>

class KSettingsManager;

/// A chain: each reader's answer is the default of the next, so the last one that holds a key wins.
class KSRFromKSRs final : public KernelSettingsReader
{
public:
    using Readers = std::vector<std::unique_ptr<KernelSettingsReader>>;

    /// Null entries are passed over.
    explicit KSRFromKSRs(Readers readers);
    ~KSRFromKSRs() override;

    bool GetBool(const QString &key, bool defaultValue) override;
    int GetInt(const QString &key, int defaultValue) override;
    double GetDouble(const QString &key, double defaultValue) override;
    QString GetString(const QString &key, QString defaultValue) override;

private:
    Readers m_readers;
};

/// The store's two-argument getters; the store outlives the reader.
class KSRFromKSettingsManager final : public KernelSettingsReader
{
public:
    explicit KSRFromKSettingsManager(KSettingsManager *manager);

    bool GetBool(const QString &key, bool defaultValue) override;
    int GetInt(const QString &key, int defaultValue) override;
    double GetDouble(const QString &key, double defaultValue) override;
    QString GetString(const QString &key, QString defaultValue) override;

private:
    KSettingsManager *m_manager;
};

/// A hash that outlives the reader; values convert as QVariant does (zero where they do not).
class KSRFromQHash final : public KernelSettingsReader
{
public:
    explicit KSRFromQHash(QHash<QString, QVariant> *values);

    bool GetBool(const QString &key, bool defaultValue) override;
    int GetInt(const QString &key, int defaultValue) override;
    double GetDouble(const QString &key, double defaultValue) override;
    QString GetString(const QString &key, QString defaultValue) override;

private:
    QHash<QString, QVariant> *m_values;
};
