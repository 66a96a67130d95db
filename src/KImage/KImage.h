#pragma once

// The program's bitmap library: reads, converts, scales, caches and saves pixel data, with rows in
// parallel. Free functions without state, callable from any thread. All throw a KException:
// "Invalid Bitmap" for one that holds no pixels, "Invalid Parameter" for another argument out of
// range, "Not enough memory" when pixels cannot be had, and for files the loader's messages.

#include "KImage/ImageLoader.h"
#include "KImage/KBitmap.h"
#include "KImage/KImage_Copy.h"

#include <QByteArray>
#include <QSize>
#include <QString>

namespace KImage {

/// The pixels of a file; see ImageLoader::load.
KBitmap Read(const QString &path, const LoadRequest &request = {});

KBitmap Convert(const KBitmap &bitmap, PixelFormat format);

KBitmap Scale(const KBitmap &bitmap, const QSize &size);

/// Puts the pixels into a file of the temporary folder and returns its path. Throws "No more space
/// in temporary folder" when they do not fit there.
QString ID_WriteToCache(const KBitmap &bitmap);
/// Pixels from such a file, which stays.
KBitmap ID_Read(const QString &cacheFile);

/// What is written into a file beside the pixels; empty parts are left out.
struct SaveOptions
{
    int quality = 90; ///< of a JPEG, 1 to 100
    QString software; ///< EXIF texts; the time of writing goes with them
    QString maker;
    QString model;
    QByteArray xmpPacket; ///< see PanoramaXmp
    QByteArray iptc;      ///< see MetadataReader::Blocks
    QByteArray iccProfile;
};

/// Saves as "jpeg", "tiff" or "hdri" by the suffix "jpg", "tif" or "hdr"; another suffix is an
/// invalid parameter. An existing file is replaced only by a whole new one.
void Save(const KBitmap &bitmap, const QString &path, const SaveOptions &options = {});
QByteArray SaveIntoMemory(const KBitmap &bitmap, const QString &format,
                          const SaveOptions &options = {});

} // namespace KImage
