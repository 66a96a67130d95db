#include "KImage/KImageErrors.h"

#include <QCoreApplication>

namespace KImageErrors {

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("KException", text);
}

} // namespace

QString invalidBitmap()
{
    return translated(QT_TRANSLATE_NOOP("KException", "Invalid Bitmap"));
}

QString invalidParameter()
{
    return translated(QT_TRANSLATE_NOOP("KException", "Invalid Parameter"));
}

QString notEnoughMemory()
{
    return translated(QT_TRANSLATE_NOOP("KException", "Not enough memory"));
}

QString name(ImageError error)
{
    switch (error) {
    case ImageError::None:
        return QString();
    case ImageError::FileOpen:
        return QStringLiteral("GFL_ERROR_FILE_OPEN");
    case ImageError::FileRead:
        return QStringLiteral("GFL_ERROR_FILE_READ");
    case ImageError::FileCreate:
        return QStringLiteral("GFL_ERROR_FILE_CREATE");
    case ImageError::FileWrite:
        return QStringLiteral("GFL_ERROR_FILE_WRITE");
    case ImageError::NoMemory:
        return QStringLiteral("GFL_ERROR_NO_MEMORY");
    case ImageError::UnknownFormat:
        return QStringLiteral("GFL_ERROR_UNKNOWN_FORMAT");
    case ImageError::BadBitmap:
        return QStringLiteral("GFL_ERROR_BAD_BITMAP");
    case ImageError::BadFormatIndex:
        return QStringLiteral("GFL_ERROR_BAD_FORMAT_INDEX");
    case ImageError::BadParameters:
        return QStringLiteral("GFL_ERROR_BAD_PARAMETERS");
    case ImageError::Unknown:
        break;
    }
    return QStringLiteral("GFL_UNKNOWN_ERROR");
}

QString text(ImageError error, const QString &path)
{
    return KException::ImageLibraryError(name(error)) + QLatin1Char('\n') +
           KException::ConcernedFile(path);
}

} // namespace KImageErrors
