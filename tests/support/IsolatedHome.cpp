#include "support/IsolatedHome.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace test {

IsolatedHome::IsolatedHome()
{
    const QString home = m_folder.path();
    const struct
    {
        const char *variable, *folder;
    } folders[] = {{"HOME", ""},
                   {"XDG_CONFIG_HOME", "/.config"},
                   {"XDG_DATA_HOME", "/.local/share"},
                   {"XDG_CACHE_HOME", "/.cache"}};
    for (const auto &entry : folders) {
        const QString folder = home + QLatin1String(entry.folder);
        QDir().mkpath(folder);
        qputenv(entry.variable, folder.toLocal8Bit());
    }
    QStandardPaths::setTestModeEnabled(true);
    for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, home + QLatin1String("/.config"));
}

} // namespace test
