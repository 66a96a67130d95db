#include "video/KVideoPlugin.h"

#include "settings/KSettingsManager.h"
#include "video/KVlcPlayerQml.h"
#include "video/MediaPlayerStates.h"
#include "video/VlcConfig.h"

#include <QCoreApplication>
#include <QQmlEngine>

#include <vlc/vlc.h>

namespace {
const QString kPluginKey = QStringLiteral("application/videoPlugin");
}

KVideoPlugin::KVideoPlugin(KSettingsManager *store, const QString &forcedPlugin, QObject *parent)
    : QObject(parent)
    , m_defaultPlugin(defaultVideoBackend())
    , m_store(store)
{
    qmlRegisterType<KVlcPlayerQml>("VLCQt", 1, 0, "VlcVideoPlayer");
    qmlRegisterUncreatableMetaObject(MediaPlayerStates::staticMetaObject, "KMedia", 1, 0,
                                     "MediaPlayer", QStringLiteral("Enums only"));
    m_currentPlugin =
        forcedPlugin.isEmpty() ? store->GetString(kPluginKey, m_defaultPlugin) : forcedPlugin;
    for (const VideoBackend &backend : videoBackends())
        m_plugins.append(QStringList{backend.identifier, backend.label, backend.description});
    if (m_currentPlugin.isEmpty())
        m_currentPlugin = m_defaultPlugin;

    const QString folder =
        mediaServiceFolder(QCoreApplication::applicationDirPath(), m_currentPlugin);
    if (!folder.isEmpty())
        QCoreApplication::addLibraryPath(folder);
}

VideoBackend KVideoPlugin::vlcBackend()
{
    return {QStringLiteral("vlc"), QStringLiteral("VLC"),
            tr("%1 '%2'").arg(tr("Should play any video, current version is "),
                              QString::fromUtf8(libvlc_get_version()))};
}

void KVideoPlugin::setCurrentPlugin(const QString &plugin)
{
    if (m_currentPlugin == plugin)
        return;
    m_currentPlugin = plugin;
    m_store->Set(kPluginKey, plugin);
    emit currentPluginChanged();
    emit displayMessage(tr("You must restart to apply modifications on video plugin."));
}

bool KVideoPlugin::vlcHwDecoding() const
{
    return VlcConfig::current().hardwareDecoding;
}

void KVideoPlugin::setVlcHwDecoding(bool enabled)
{
    VlcConfig::current().hardwareDecoding = enabled;
    saveConfig();
    emit vlcHwDecodingChanged();
}

bool KVideoPlugin::vlcShaderColorConversion() const
{
    return VlcConfig::current().shaderColorConversion;
}

void KVideoPlugin::setVlcShaderColorConversion(bool enabled)
{
    VlcConfig::current().shaderColorConversion = enabled;
    saveConfig();
    emit vlcShaderColorConversionChanged();
}

int KVideoPlugin::vlcAudioDelay() const
{
    return VlcConfig::current().audioDelay;
}

void KVideoPlugin::setVlcAudioDelay(int delay)
{
    VlcConfig::current().audioDelay = delay;
    saveConfig();
    emit vlcAudioDelayChanged();
}

void KVideoPlugin::resetDefaultValues(const QString &categoryId)
{
    const VlcConfig defaults;
    if (categoryId == QLatin1String("video")) {
        setCurrentPlugin(m_defaultPlugin);
        setVlcHwDecoding(defaults.hardwareDecoding);
        setVlcShaderColorConversion(defaults.shaderColorConversion);
    } else if (categoryId == QLatin1String("audio")) {
        setVlcAudioDelay(defaults.audioDelay);
    }
}

void KVideoPlugin::saveConfig()
{
    VlcConfig::current().save(*m_store);
}
