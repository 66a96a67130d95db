#include "input/realsense/PxcRuntime.h"

namespace PxcRuntime {

QStringList registryKeys()
{
    return {QStringLiteral("Software\\Intel\\RSSDK\\Dispatch"),
            QStringLiteral("Software\\Wow6432Node\\Intel\\RSSDK\\Dispatch")};
}

QString registryValue()
{
    return QStringLiteral("LocalRuntime");
}

QString libraryPath(const QString &value)
{
    QString path = value.trimmed();
    if (path.isEmpty() || path.endsWith(QLatin1String(".dll"), Qt::CaseInsensitive))
        return path;
    while (path.endsWith(QLatin1Char('\\')))
        path.chop(1);
    return path + QLatin1String("\\bin\\win32\\libpxcsession.dll");
}

} // namespace PxcRuntime
