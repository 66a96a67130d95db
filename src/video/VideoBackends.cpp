#include "video/VideoBackends.h"

QString defaultVideoBackendOnWindows(int version)
{
    constexpr int kWindows10 = 0xC0;
    return version >= kWindows10 ? QStringLiteral("wmf") : QStringLiteral("vlc");
}

QString mediaServiceFolder(const QString &programFolder, const QString &backend)
{
    if (backend != QLatin1String("wmf") && backend != QLatin1String("ds"))
        return {};
    return QStringLiteral("%1/QtPlugins/mediaservice/%2").arg(programFolder, backend);
}
