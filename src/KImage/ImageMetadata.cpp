#include "KImage/ImageMetadata.h"

#include "KImage/CameraProperties.h"
#include "foundation/KException.h"

#include <QLoggingCategory>
#include <QRegularExpression>
#include <QStringList>

#include <cmath>

Q_LOGGING_CATEGORY(metadataLog, "kimage", QtWarningMsg)

namespace {

/// Looks entries up by name, the first of each outside of the thumbnail.
class Lookup
{
public:
    explicit Lookup(const ExifEntries &entries)
        : m_entries(entries)
    {}

    const ExifEntry *find(const char *name) const
    {
        for (const ExifEntry &entry : m_entries) {
            if (entry.flag != ExifFlag::Thumbnail && !entry.binary &&
                entry.name == QLatin1String(name))
                return &entry;
        }
        return nullptr;
    }
    QString text(const char *name) const
    {
        const ExifEntry *entry = find(name);
        return entry ? entry->value : QString();
    }
    double number(const char *name) const { return MetadataText::number(text(name)); }

private:
    const ExifEntries &m_entries;
};

double positive(double value)
{
    return value > 0 ? value : 0.0;
}

/// One decimal at most, as in the table of lenses.
QString shortNumber(double value)
{
    return QString::number(std::round(value * 10) / 10);
}

/// Nikon's notes hold each value as a byte (exponential steps of a 24th).
QString nikonIdentifier(const Lookup &lookup)
{
    constexpr double kSteps = 24;
    constexpr double kShortestFocal = 5;
    const double code = lookup.number("LensIDNumber");
    const double shortest = lookup.number("MinFocalLength");
    const double longest = lookup.number("MaxFocalLength");
    const double wide = lookup.number("MaxApertureAtMinFocal");
    const double tele = lookup.number("MaxApertureAtMaxFocal");
    if (code < 0 || shortest <= 0 || longest <= 0 || wide <= 0 || tele <= 0)
        return QString();
    const auto focal = [](double v) { return std::round(kShortestFocal * std::exp2(v / kSteps)); };
    return QStringList{shortNumber(focal(shortest)), shortNumber(focal(longest)), shortNumber(code),
                       shortNumber(std::exp2(wide / kSteps)), shortNumber(std::exp2(tele / kSteps))}
        .join(' ');
}

/// Lens codes of other makers become identifiers with the focal lengths and apertures of EXIF's own
/// lens data; a code alone would match rows of other lenses.
QString completedIdentifier(const QString &code, const Lookup &lookup)
{
    bool isCode = false;
    code.toUInt(&isCode);
    if (!isCode)
        return code;
    const QStringList lensData = lookup.text("LensSpecification").split(' ', Qt::SkipEmptyParts);
    constexpr int kValues = 4;
    if (lensData.size() != kValues)
        return QString();
    QStringList numbers;
    for (const QString &value : lensData)
        numbers += shortNumber(MetadataText::number(value));
    numbers.insert(2, code);
    return numbers.join(' ');
}

QString withCode(const ExifEntry *entry, const char *const (&names)[4])
{
    if (!entry)
        return QString();
    for (int code = 1; code < 4; ++code) {
        if (entry->value.contains(QLatin1String(names[code]), Qt::CaseInsensitive))
            return QString::asprintf("%s (%d)", qPrintable(entry->value), code + 1);
    }
    return entry->value;
}

void readLens(const Lookup &lookup, ImageMetadata &metadata)
{
    metadata.lensId = lookup.text("LensID").trimmed();
    if (metadata.lensId == QLatin1String("ZenithEs")) {
        // Pictures of this tool carry the direction in which they were taken as their comment.
        double yaw = 0;
        double pitch = 0;
        if (MetadataText::twoNumbers(lookup.text("UserComment"), yaw, pitch)) {
            metadata.yaw = yaw;
            metadata.pitch = pitch;
        }
        return;
    }
    QString identifier = nikonIdentifier(lookup);
    if (identifier.isEmpty())
        identifier = completedIdentifier(metadata.lensId, lookup);
    if (metadata.lensId.isEmpty())
        metadata.lensId = identifier;
    metadata.lensModel = lookup.text("LensModel");
    const QList<LensIDProperties::Entry> lenses =
        LensIDProperties::instance()->getLens(identifier, metadata.maker);
    if (lenses.isEmpty())
        return;
    metadata.lensType = lenses.first().type;
    if (metadata.lensModel.isEmpty())
        metadata.lensModel = lenses.first().name;
}

std::optional<double> cameraScale(const ImageMetadata &metadata)
{
    double scale = 1.0;
    if (metadata.maker.isEmpty() ||
        !CameraProperties::instance()->getSensorScale(metadata.maker, metadata.model, scale))
        return std::nullopt;
    return scale;
}

QString textOf(double value)
{
    return QString::number(value, 'g', 10);
}

} // namespace

QString ImageMetadata::tableText() const
{
    QString text;
    for (const auto &row : table)
        text += row.first + QStringLiteral(": \"%0\";").arg(row.second) + QLatin1Char('\n');
    return text;
}

ImageMetadata Metadata::fromEntries(const ExifEntries &entries, const QSize &size)
{
    static const char *const kUnits[4] = {"none", "inch", "cm", "um"};
    const Lookup lookup(entries);
    ImageMetadata metadata;
    metadata.maker = lookup.text("Make");
    metadata.model = lookup.text("Model");
    metadata.focal = lookup.number("FocalLength");
    metadata.exifFocal35 = lookup.number("FocalLengthIn35mmFilm");
    metadata.exposureTime = lookup.number("ExposureTime");
    metadata.shutterSpeed = lookup.number("ShutterSpeedValue");
    metadata.fNumber = lookup.number("FNumber");
    const char *const dateName = lookup.find("DateTimeOriginal") ? "DateTimeOriginal" : "DateTime";
    metadata.dateTime = MetadataText::date(lookup.text(dateName));
    metadata.iso = lookup.number("ISOSpeedRatings");
    metadata.exposureBias = lookup.number("ExposureBiasValue");
    metadata.width = lookup.number("PixelXDimension");
    metadata.height = lookup.number("PixelYDimension");
    metadata.focalPlaneResX = lookup.number("FocalPlaneXResolution");
    metadata.focalPlaneResY = lookup.number("FocalPlaneYResolution");
    metadata.focalPlaneUnit =
        MetadataText::unitInMillimetres(lookup.text("FocalPlaneResolutionUnit"));
    metadata.latitude =
        MetadataText::coordinate(lookup.text("GPSLatitude"), lookup.text("GPSLatitudeRef"));
    metadata.longitude =
        MetadataText::coordinate(lookup.text("GPSLongitude"), lookup.text("GPSLongitudeRef"));

    FocalInput input;
    input.focal = positive(metadata.focal);
    input.focal35 = positive(metadata.exifFocal35);
    input.width = size.width();
    input.height = size.height();
    input.resolutionX = positive(metadata.focalPlaneResX);
    input.resolutionY = positive(metadata.focalPlaneResY);
    input.unit = positive(metadata.focalPlaneUnit);
    try {
        readLens(lookup, metadata);
        input.cameraScale = cameraScale(metadata);
    } catch (const KException &error) {
        qCWarning(metadataLog) << error.message << error.location;
    }
    metadata.focalLength = FocalLength::compute(input);

    const struct
    {
        const char *label;
        QString text;
    } rows[] = {
        {"Maker", metadata.maker},
        {"Model", metadata.model},
        {"Real focal length", lookup.text("FocalLength")},
        {"35mm f.length", lookup.text("FocalLengthIn35mmFilm")},
        {"Exposure time", lookup.text("ExposureTime")},
        {"Shutter speed", lookup.text("ShutterSpeedValue")},
        {"F Number", lookup.text("FNumber")},
        {"Date Time", lookup.text(dateName)},
        {"ISO", lookup.text("ISOSpeedRatings")},
        {"Exposure bias value", lookup.text("ExposureBiasValue")},
        {"Width", lookup.text("PixelXDimension")},
        {"Height", lookup.text("PixelYDimension")},
        {"Focal plane res X", lookup.text("FocalPlaneXResolution")},
        {"Focal plane res Y", lookup.text("FocalPlaneYResolution")},
        {"Focal plan res. unit", withCode(lookup.find("FocalPlaneResolutionUnit"), kUnits)},
        {"LensID", metadata.lensId},
        {"FOV:", input.focal > 0 ? textOf(FocalLength::fieldOfView(metadata.focalLength.focal35))
                                 : QString()},
    };
    for (const auto &row : rows) {
        if (!row.text.isEmpty())
            metadata.table.append({QString::fromLatin1(row.label), row.text});
    }
    return metadata;
}

void Metadata::applyOptions(ImageMetadata &metadata, const ImageOptions &options)
{
    switch (options.exifMode) {
    case ExifMode::Exif:
        // Without a focal length in the file its place is free.
        if (!(metadata.focal > 0))
            metadata.focalLength.focal35 = options.defaultFocal35mm;
        if (metadata.lensModel.isEmpty())
            metadata.lensModel = options.defaultLensModel;
        break;
    case ExifMode::Default:
        metadata.focalLength.focal35 = options.defaultFocal35mm;
        metadata.lensModel = options.defaultLensModel;
        break;
    case ExifMode::Forced:
        metadata.focalLength.focal35 = options.forcedFocal35mm;
        metadata.lensModel = options.forcedLensModel;
        metadata.k1 = options.forcedK1;
        metadata.k2 = options.forcedK2;
        metadata.k3 = options.forcedK3;
        break;
    }
}
