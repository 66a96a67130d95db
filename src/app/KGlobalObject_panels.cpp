// What the settings window and the popups ask of KGlobalObject.

#include "app/Application.h"
#include "app/KGlobalObject.h"
#include "settings/KSettings.h"
#include "settings/KSettingsManager.h"
#include "video/VlcConfig.h"
#include "video/VlcInstance.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

namespace {

const QString kInstance = QStringLiteral("instance");
const QString kMedia = QStringLiteral("media");

} // namespace

bool KGlobalObject::isVlcCustom() const
{
    return VlcConfig::current().customMode;
}

QString KGlobalObject::getVlcCmdInfos(bool custom, const QString &kind) const
{
    const VlcConfig &config = VlcConfig::current();
    const QLatin1Char separator(',');
    if (kind == kInstance) {
        return custom ? config.customInstanceArguments
                      : vlcDefaultInstanceArguments().join(separator);
    }
    if (kind == kMedia)
        return custom ? config.customMediaOptions : vlcDefaultMediaOptions().join(separator);
    return {};
}

void KGlobalObject::setVlcCustomCmd(const QString &kind, const QString &text)
{
    VlcConfig &config = VlcConfig::current();
    if (kind == kInstance)
        config.customInstanceArguments = text;
    else if (kind == kMedia)
        config.customMediaOptions = text;
    else
        return;
    config.save(*m_application->settings()->settingsManager());
}

QString KGlobalObject::aboutThirdParty() const
{
    Q_INIT_RESOURCE(notices);
    QFile file(QStringLiteral(":/notices/third-party.html"));
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

bool KGlobalObject::isWritableFolder(const QUrl &folder) const
{
    const QString path = folder.toLocalFile();
    if (path.isEmpty())
        return false;
    QFileInfo nearest(QDir::cleanPath(QLatin1Char('/') + path));
    while (!nearest.exists() && !nearest.isRoot())
        nearest.setFile(nearest.path());
    return nearest.isDir() && nearest.isWritable();
}
