#include "KImage/ImageFormats.h"

#include "KImage/StillCodecs.h"

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

/// Those that need no look at how Qt and libvips were built.
const QStringList &certainSuffixes()
{
    static const QStringList suffixes = [] {
        // The last is what cameras call the small JPEG beside a raw or a film.
        QStringList list{QStringLiteral("jpg"), QStringLiteral("jpeg"), QStringLiteral("jpe"),
                         QStringLiteral("png"), QStringLiteral("tif"),  QStringLiteral("tiff"),
                         QStringLiteral("hdr"), QStringLiteral("thm")};
        for (const QString &raw : rawSuffixes())
            list += raw.toLower();
        return list;
    }();
    return suffixes;
}

QStringList suffixesOfQt()
{
    QStringList suffixes;
    const QList<QByteArray> formats = QImageReader::supportedImageFormats();
    for (const QByteArray &suffix : formats)
        suffixes += QString::fromLatin1(suffix).toLower();
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
    QStringList suffixes = certainSuffixes() + suffixesOfQt();
    if (StillCodecs *codecs = stillCodecs())
        suffixes += codecs->suffixes();
    suffixes.removeDuplicates();
    std::sort(suffixes.begin(), suffixes.end());
    return suffixes;
}

bool isPictureSuffix(const QString &suffix)
{
    static const QStringList dependent{QStringLiteral("webp"), QStringLiteral("gif"),
                                       QStringLiteral("heic"), QStringLiteral("heif"),
                                       QStringLiteral("avif"), QStringLiteral("exr")};
    return certainSuffixes().contains(suffix) || suffixesOfQt().contains(suffix) ||
           (dependent.contains(suffix) && pictureSuffixes().contains(suffix));
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
