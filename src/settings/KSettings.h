#pragma once

// The settings of the running program, one object for native code and scene (there `kSettings`).
// Application owns it, loads it directly after construction and saves it last, at a clean exit
// only; it lives on the GUI thread and its signals are direct.

#include <QMap>
#include <QObject>
#include <QString>
#include <QVariant>

#include <memory>

class KSettingsManager;

/// Every key "application/..." is persistent and has a twin "instance/..." with the value in force
/// for this run: a change of the former overwrites the latter, never the other way round, and twins
/// are never saved. The store may give numbers back as text: convert where a value is used.
class KSettings : public QObject
{
    Q_OBJECT

public:
    /// @p applicationName names the store, see KVersion::applicationName().
    explicit KSettings(const QString &applicationName, QObject *parent = nullptr);
    ~KSettings() override;

    /// Sets a known key, with a signal even when the value stays the same; others are ignored.
    /// A URL is kept as its text.
    Q_INVOKABLE void set(QString key, QVariant value);

    /// Flips a key that holds a bool.
    Q_INVOKABLE void toggle(QString key);

    /// The current value as it is held; invalid for an unknown key.
    Q_INVOKABLE QVariant get(QString key) const;

    /// The current value in the type of the key's default, and that default where the value does
    /// not convert; invalid for an unknown key. For the scene, where text and number compare
    /// differently.
    Q_INVOKABLE QVariant getTyped(QString key) const;

    /// Puts an "application/" key back to its default.
    Q_INVOKABLE void resetDefaultValue(QString key);

    /// Takes the values from the store; once, before anyone reads.
    void load();

    /// Writes every "application/" key to the store, which goes to disk at the latest when this
    /// object dies.
    void save();

    /// For keys outside the table; never null.
    KSettingsManager *settingsManager() const;

signals:
    void settingsChanged(QString key);

    /// A key has been written to the store or taken out of it, through settingsManager() or save().
    void storeChanged(QString key);

    /// @p initialValue is what this run started with.
    void settingsNeedRestartChanged(QString key, QVariant value, QVariant initialValue);

private:
    void init();

    std::unique_ptr<KSettingsManager> m_settingsManager;
    QMap<QString, QVariant> m_values;
    QMap<QString, QVariant> m_defaultValues;
    QMap<QString, QVariant> m_needRestartValues;
};
