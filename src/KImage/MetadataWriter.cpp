#include "KImage/MetadataWriter.h"

#include "KImage/KImage.h"
#include "KImage/MetadataReader.h"

#include <QDateTime>

#include <exiv2/exiv2.hpp>

namespace MetadataWriter {

namespace {

constexpr quint16 kDateTime = 306;
constexpr quint16 kSoftware = 305;
constexpr quint16 kMaker = 271;
constexpr quint16 kModel = 272;

/// Into the main directory, which is Exiv2's group "Image".
void setText(Exiv2::ExifData &exif, quint16 tag, const QString &text)
{
    if (!text.isEmpty())
        exif[Exiv2::ExifKey(tag, "Image").key()] = text.toStdString();
}

/// The texts of @p options and the time of now.
void setTexts(Exiv2::ExifData &exif, const KImage::SaveOptions &options)
{
    setText(exif, kDateTime,
            QDateTime::currentDateTime().toString(QStringLiteral("yyyy:MM:dd hh:mm:ss")));
    setText(exif, kSoftware, options.software);
    setText(exif, kMaker, options.maker);
    setText(exif, kModel, options.model);
}

const Exiv2::byte *bytesOf(const QByteArray &bytes)
{
    return reinterpret_cast<const Exiv2::byte *>(bytes.constData());
}

} // namespace

QByteArray embedded(const QByteArray &file, const KImage::SaveOptions &options)
{
    const bool exifWanted =
        !options.software.isEmpty() || !options.maker.isEmpty() || !options.model.isEmpty();
    if (!exifWanted && options.xmpPacket.isEmpty() && options.iptc.isEmpty() &&
        options.iccProfile.isEmpty())
        return file;
    MetadataReader::initialise();
    try {
        const auto image = Exiv2::ImageFactory::open(bytesOf(file), long(file.size()));
        image->readMetadata();
        if (exifWanted && image->checkMode(Exiv2::mdExif) & Exiv2::amWrite)
            setTexts(image->exifData(), options);
        if (!options.xmpPacket.isEmpty() && image->checkMode(Exiv2::mdXmp) & Exiv2::amWrite) {
            image->setXmpPacket(options.xmpPacket.toStdString());
            image->writeXmpFromPacket(true);
        }
        if (!options.iptc.isEmpty() && image->checkMode(Exiv2::mdIptc) & Exiv2::amWrite &&
            Exiv2::IptcParser::decode(image->iptcData(), bytesOf(options.iptc),
                                      uint32_t(options.iptc.size())) != 0)
            K_THROW(KImageErrors::invalidParameter());
        if (!options.iccProfile.isEmpty()) {
            Exiv2::DataBuf profile(bytesOf(options.iccProfile), long(options.iccProfile.size()));
            image->setIccProfile(profile);
        }
        image->writeMetadata();
        Exiv2::BasicIo &io = image->io();
        io.seek(0, Exiv2::BasicIo::beg);
        const Exiv2::DataBuf bytes = io.read(long(io.size()));
        return QByteArray(reinterpret_cast<const char *>(bytes.pData_), int(bytes.size_));
    } catch (const Exiv2::AnyError &error) {
        if (error.code() == Exiv2::kerMemoryContainsUnknownImageType)
            return file;
        K_THROW(KException::ImageLibraryError(KImageErrors::name(ImageError::FileWrite)));
    }
}

QMap<QString, QString> pngTexts(const KImage::SaveOptions &options)
{
    Exiv2::ExifData exif;
    setTexts(exif, options);
    Exiv2::Blob blob;
    Exiv2::ExifParser::encode(blob, Exiv2::littleEndian, exif);
    const QByteArray header("Exif\0\0", 6);
    const QByteArray profile =
        header + QByteArray(reinterpret_cast<const char *>(blob.data()), int(blob.size()));

    constexpr int kBytesPerLine = 36;
    QString text = QStringLiteral("\nexif\n%1\n").arg(profile.size(), 8);
    for (int at = 0; at < profile.size(); at += kBytesPerLine)
        text += QString::fromLatin1(profile.mid(at, kBytesPerLine).toHex()) + QLatin1Char('\n');
    return {{QStringLiteral("Raw profile type exif"), text}};
}

} // namespace MetadataWriter
