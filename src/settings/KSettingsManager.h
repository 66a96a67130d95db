#pragma once

// The store that survives a restart: QSettings in the platform's native format.
// KSettings owns the one of the running program; others are made for a moment (see ForUser) and
// see the same contents. Belongs to the thread that made it, in the program the GUI thread.

#include "settings/KernelSettingsWriter.h"

#include <QByteArray>
#include <QColor>
#include <QDateTime>
#include <QHash>
#include <QRect>
#include <QSettings>
#include <QStringList>

#include <functional>

class KSettingsManager : public KernelSettingsWriter
{
public:
    /// The application's own default store, of which the one-argument getters ignore the contents.
    KSettingsManager();
    KSettingsManager(QSettings::Scope scope, const QString &organization,
                     const QString &application);
    ~KSettingsManager() override;
    KSettingsManager(const KSettingsManager &) = delete;
    KSettingsManager &operator=(const KSettingsManager &) = delete;

    /// A store object on the user's settings of this release, for code that runs before or outside
    /// of KSettings. A release with another major or minor number has a store of its own.
    [[nodiscard]] static KSettingsManager ForUser();

    void Set(const QString &key, const QVariant &value) override;

    /// Takes the stored value of @p key, or the group below it, out of the store.
    void Remove(const QString &key);

    /// @p listener is called with each key that this object has set or taken out; there is one.
    void SetListener(std::function<void(const QString &key)> listener);

    /// Writes pending changes out and takes in those of other processes. False when the store
    /// could not be read or written; the values of this process stay in force then.
    [[nodiscard]] bool Flush();

    /// Default for the one-argument getters; replaces an earlier one.
    void SetDefault(const QString &key, const QVariant &value);

    /// The stored value, else @p defaultValue, which also becomes the registered default of a key
    /// that has none yet.
    QVariant GetVariant(const QString &key, const QVariant &defaultValue);

    /// One-argument getters: the stored value, else the registered default, else the type's zero.
    /// A value of another type is converted as QVariant does, with zero for what does not convert.
    bool GetBool(const QString &key);
    int GetInt(const QString &key);
    double GetDouble(const QString &key);
    QString GetString(const QString &key);
    QStringList GetStringList(const QString &key);
    QColor GetColor(const QString &key);
    QByteArray GetByteArray(const QString &key);
    QRect GetRect(const QString &key);
    QDateTime GetDateTime(const QString &key);

    /// Two-argument getters: the stored value, else @p defaultValue; registered defaults play no
    /// part. A number that does not convert gives @p defaultValue.
    bool GetBool(const QString &key, bool defaultValue);
    int GetInt(const QString &key, int defaultValue);
    double GetDouble(const QString &key, double defaultValue);
    QString GetString(const QString &key, const QString &defaultValue);
    QStringList GetStringList(const QString &key, const QStringList &defaultValue);
    QColor GetColor(const QString &key, const QColor &defaultValue);
    QByteArray GetByteArray(const QString &key, const QByteArray &defaultValue);
    QRect GetRect(const QString &key, const QRect &defaultValue);
    QDateTime GetDateTime(const QString &key, const QDateTime &defaultValue);

private:
    QVariant StoredOrRegistered(const QString &key);
    QVariant Stored(const QString &key, const QVariant &defaultValue) const;

    QSettings m_settings;
    bool m_defaultsOnly;
    QHash<QString, QVariant> m_registeredDefaults;
    std::function<void(const QString &)> m_listener;
};
