#include "video/VideoBackends.h"

#include "video/KVideoPlugin.h"

#include <QSysInfo>

std::vector<VideoBackend> videoBackends()
{
    return {KVideoPlugin::vlcBackend(),
            {QStringLiteral("wmf"), QStringLiteral("Windows Media Foundation"),
             KVideoPlugin::tr("This is the Windows native backend.")},
            {QStringLiteral("ds"), QStringLiteral("DirectShow"),
             KVideoPlugin::tr("Use DirectShow filters, try to use this plugin when video failed "
                              "to start with others plugins.")}};
}

QString defaultVideoBackend()
{
    return defaultVideoBackendOnWindows(int(QSysInfo::windowsVersion()));
}
