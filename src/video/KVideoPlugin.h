#pragma once

// The user's choice of video backend and the settings of the libvlc one, as the scene sees them
// ("kVideoPlugin"). Owned by Application, lives on the GUI thread.

#include "video/VideoBackends.h"

#include <QObject>
#include <QVariantList>

class KSettingsManager;

class KVideoPlugin : public QObject
{
    Q_OBJECT
    Q_PROPERTY(
        QString currentPlugin READ currentPlugin WRITE setCurrentPlugin NOTIFY currentPluginChanged)
    Q_PROPERTY(
        bool vlcHwDecoding READ vlcHwDecoding WRITE setVlcHwDecoding NOTIFY vlcHwDecodingChanged)
    Q_PROPERTY(bool vlcShaderColorConversion READ vlcShaderColorConversion WRITE
                   setVlcShaderColorConversion NOTIFY vlcShaderColorConversionChanged)
    Q_PROPERTY(
        int vlcAudioDelay READ vlcAudioDelay WRITE setVlcAudioDelay NOTIFY vlcAudioDelayChanged)

public:
    /// @p store must outlive this object. A forced backend holds for this run and is not stored.
    explicit KVideoPlugin(KSettingsManager *store, const QString &forcedPlugin = {},
                          QObject *parent = nullptr);

    /// One list of identifier, label and description for each backend.
    Q_INVOKABLE QVariantList pluginsList() const { return m_plugins; }
    /// "video" or "audio"; other categories do nothing.
    Q_INVOKABLE void resetDefaultValues(const QString &categoryId);

    QString currentPlugin() const { return m_currentPlugin; }
    /// Takes effect at the next start.
    void setCurrentPlugin(const QString &plugin);

    // The setters below save and emit also when nothing changes: playback restarts on each.
    bool vlcHwDecoding() const;
    void setVlcHwDecoding(bool enabled);
    bool vlcShaderColorConversion() const;
    void setVlcShaderColorConversion(bool enabled);
    /// Milliseconds.
    int vlcAudioDelay() const;
    void setVlcAudioDelay(int delay);

    /// The entry that every platform has.
    static VideoBackend vlcBackend();

signals:
    void currentPluginChanged();
    void vlcHwDecodingChanged();
    void vlcShaderColorConversionChanged();
    void vlcAudioDelayChanged();
    void displayMessage(QString message);

private:
    void saveConfig();

    QVariantList m_plugins;
    QString m_currentPlugin;
    QString m_defaultPlugin;
    KSettingsManager *m_store;
};
