#include "hmd/OvrLibrary.h"

#include "hmd/OvrTypes.h"

#include <QDir>

namespace OvrLibrary {

QStringList candidates(const QString &ownDirectory, const QStringList &directories,
                       const char *format)
{
    QStringList searched = directories;
    if (!ownDirectory.isEmpty())
        searched.prepend(ownDirectory);

    QStringList files;
    for (QString directory : qAsConst(searched)) {
        if (!directory.isEmpty() && !directory.endsWith(QLatin1Char('/')) &&
            !directory.endsWith(QDir::separator()))
            directory += QDir::separator();
        const QString file = QString::asprintf(format, directory.utf16(), "64", kOvrMajorVersion);
        if (!files.contains(file))
            files.append(file);
    }
    return files;
}

} // namespace OvrLibrary
