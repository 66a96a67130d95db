#include "KImage/ImageFormats.h"

#include "KImage/VipsCodec.h"

#include <QFileInfo>
#include <QImageReader>

#include <algorithm>

namespace ImageFormats {

namespace {

/// Camera raws.
const QStringList &rawSuffixes()
{
    static const QStringList suffixes{
        QStringLiteral("ARW"), QStringLiteral("CRW"), QStringLiteral("CR2"), QStringLiteral("RAF"),
        QStringLiteral("NEF"), QStringLiteral("DNG"), QStringLiteral("SRF"), QStringLiteral("SR2"),
        QStringLiteral("ORF"), QStringLiteral("MRW"), QStringLiteral("PEF"), QStringLiteral("MEF"),
        QStringLiteral("MOS")};
    return suffixes;
}

} // namespace

ImageClass classOf(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toUpper();
    if (rawSuffixes().contains(suffix))
        return ImageClass::Raw;
    if (suffix == QLatin1String("HDR") || suffix == QLatin1String("EXR"))
        return ImageClass::HighDynamicRange;
    return ImageClass::Ordinary;
}

QStringList pictureSuffixes()
{
    QStringList suffixes = VipsCodec::suffixes();
    // What cameras call the small JPEG beside a raw or a film.
    suffixes += QStringLiteral("thm");
    for (const QString &raw : rawSuffixes())
        suffixes += raw.toLower();
    const QList<QByteArray> ofQt = QImageReader::supportedImageFormats();
    for (const QByteArray &suffix : ofQt)
        suffixes += QString::fromLatin1(suffix).toLower();
    suffixes.removeDuplicates();
    std::sort(suffixes.begin(), suffixes.end());
    return suffixes;
}

QString saveFormat(const QString &path)
{
    const QString suffix = QFileInfo(path).suffix().toLower();
    if (suffix == QLatin1String("jpg"))
        return QStringLiteral("jpeg");
    if (suffix == QLatin1String("tif"))
        return QStringLiteral("tiff");
    return suffix == QLatin1String("hdr") ? QStringLiteral("hdri") : QString();
}

} // namespace ImageFormats
