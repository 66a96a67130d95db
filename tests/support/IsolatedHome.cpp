#include "support/IsolatedHome.h"

#include <QDir>
#include <QSettings>
#include <QStandardPaths>

namespace test {

IsolatedHome::IsolatedHome()
{
    const QString home = m_folder.path();
    const char *const folders[][2] = {{"HOME", ""},
                                      {"XDG_CONFIG_HOME", "/.config"},
                                      {"XDG_DATA_HOME", "/.local/share"},
                                      {"XDG_CACHE_HOME", "/.cache"}};
    for (const auto &[variable, below] : folders) {
        const QString folder = home + QLatin1String(below);
        QDir().mkpath(folder);
        qputenv(variable, folder.toLocal8Bit());
    }
    QStandardPaths::setTestModeEnabled(true);
    for (const auto format : {QSettings::NativeFormat, QSettings::IniFormat})
        QSettings::setPath(format, QSettings::UserScope, home + QLatin1String("/.config"));
}

} // namespace test
