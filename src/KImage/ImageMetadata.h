#pragma once

// What a still's metadata says, as a plain structure. Values, any thread.

#include "KImage/ExifEntry.h"
#include "KImage/FocalLength.h"
#include "KImage/ImageOptions.h"
#include "KImage/LensIDProperties.h"
#include "KImage/MetadataText.h"

#include <QDateTime>
#include <QPair>
#include <QSize>
#include <QString>
#include <QVector>

struct ImageMetadata
{
    QString maker;
    QString model;
    double focal = MetadataText::kUnreadable;        ///< millimetres, real
    double exifFocal35 = MetadataText::kUnreadable;  ///< millimetres, as the file says
    double exposureTime = MetadataText::kUnreadable; ///< seconds
    double shutterSpeed = MetadataText::kUnreadable;
    double fNumber = MetadataText::kUnreadable;
    QDateTime dateTime;
    double iso = MetadataText::kUnreadable;
    double exposureBias = MetadataText::kUnreadable;
    double width = MetadataText::kUnreadable; ///< as noted by the camera
    double height = MetadataText::kUnreadable;
    double focalPlaneResX = MetadataText::kUnreadable; ///< pixels per unit
    double focalPlaneResY = MetadataText::kUnreadable;
    double focalPlaneUnit = MetadataText::kUnreadable; ///< millimetres
    QString lensId;
    double latitude = MetadataText::kUnreadable; ///< degrees
    double longitude = MetadataText::kUnreadable;
    double yaw = 0.0; ///< start angles in degrees, 0 unless the file carries them
    double pitch = 0.0;

    FocalResult focalLength;
    QString lensModel;
    LensType lensType = LensType::Standard;
    double k1 = 0.0; ///< lens distortion coefficients
    double k2 = 0.0;
    double k3 = 0.0;

    /// Label and text of what was kept, in their fixed order.
    QVector<QPair<QString, QString>> table;

    /// The table as lines of label and `: "text";`.
    QString tableText() const;
};

namespace Metadata {

/// From the entries of a file of @p size pixels: numbers, names, focal length. Asks the tables of
/// cameras and lenses; without them those values stay unknown.
ImageMetadata fromEntries(const ExifEntries &entries, const QSize &size);

/// Lets default or forced values compete with those of the file.
void applyOptions(ImageMetadata &metadata, const ImageOptions &options);

} // namespace Metadata
