#include "foundation/KException.h"

#include <QCoreApplication>
#include <QFileInfo>

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("KException", text);
}

} // namespace

QString KException::FileNotFound(const QString &path)
{
    return translated(QT_TRANSLATE_NOOP("KException", "File \"%1\" is not found"))
               .arg(QFileInfo(path).absoluteFilePath()) +
           QLatin1Char('\n');
}

QString KException::NotEnoughSpace(const QString &path)
{
    return translated(QT_TRANSLATE_NOOP("KException",
                                        "Not enough free space on \"%1\" to finish operation"))
        .arg(path);
}

QString KException::CannotWrite(const QString &path)
{
    return translated(QT_TRANSLATE_NOOP("KException", "Cannot write into file \"%1\"")).arg(path);
}

QString KException::TemporaryFolderFull()
{
    return translated(QT_TRANSLATE_NOOP("KException", "No more space in temporary folder"));
}

QString KException::ImageLibraryError(const QString &error)
{
    return translated(QT_TRANSLATE_NOOP("KException", "Error GFL : \"%1\"")).arg(error);
}

QString KException::ConcernedFile(const QString &path)
{
    return translated(QT_TRANSLATE_NOOP("KException", "File : \"%1\"")).arg(path);
}
