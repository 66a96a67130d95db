#pragma once

// What goes wrong with pictures: the three messages of the bitmap operations, and the loader's
// error codes with their texts. Free functions, callable from any thread.

#include "foundation/KException.h"

#include <QString>

/// Of reading and writing files; the names are those that the messages show.
enum class ImageError {
    None,
    FileOpen,
    FileRead,
    FileCreate,
    FileWrite,
    NoMemory,
    UnknownFormat,
    BadBitmap,
    BadFormatIndex,
    BadParameters,
    Unknown
};

namespace KImageErrors {

QString invalidBitmap();
QString invalidParameter();
QString notEnoughMemory();

/// "GFL_ERROR_FILE_OPEN" and the like; empty for None.
QString name(ImageError error);

/// Error and file in two lines, as a KException's message.
QString text(ImageError error, const QString &path);

} // namespace KImageErrors
