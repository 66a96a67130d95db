#pragma once

// One metadata entry of a file as text. Plain value, any thread.

#include <QString>
#include <QVector>

/// Where an entry stands in the file; also the first half of its key in dumps.
enum class ExifFlag {
    Main = 1,
    Exif = 2,
    Interoperability = 4,
    Thumbnail = 8,
    Gps = 16,
    Maker = 32
};

struct ExifEntry
{
    ExifFlag flag = ExifFlag::Main;
    int tag = 0;
    QString name; ///< of the library that reads it: "FocalLength"
    QString value;
    bool binary = false; ///< bytes without a text
};

using ExifEntries = QVector<ExifEntry>;
