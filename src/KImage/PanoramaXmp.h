#pragma once

// The XMP packet that marks a picture as an equirectangular panorama (Photo Sphere XMP metadata).
// Free function, any thread.

#include <QByteArray>
#include <QSize>
#include <QString>

namespace PanoramaXmp {

/// UTF-8 text of the packet for a whole panorama of @p size.
QByteArray packet(const QSize &size, const QString &stitchingSoftware, int sourcePhotos = 1);

} // namespace PanoramaXmp
