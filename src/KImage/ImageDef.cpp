#include "KImage/ImageDef.h"

#include "KImage/ExifTagNames.h"
#include "KImage/ImageLoadGuard.h"
#include "KImage/KImage.h"
#include "KImage/MetadataReader.h"

#include <QCoreApplication>
#include <QFileInfo>

#include <algorithm>

namespace {

QString translated(const char *text)
{
    return QCoreApplication::translate("KException", text);
}

QString keyOf(const ExifEntry &entry)
{
    return QStringLiteral("%1_%2").arg(int(entry.flag)).arg(entry.tag);
}

QString quotedValue(const ExifEntry &entry)
{
    return QStringLiteral("\"%1\"").arg(entry.binary ? QStringLiteral("Binary Value")
                                                     : entry.value);
}

} // namespace

ImageDef::ImageDef(const QString &path, const ImageOptions &options, const QSize &limit,
                   QObject *parent)
    : QObject(parent)
    , m_path(path)
    , m_options(options)
{
    m_valid = ImageLoader::describe(path, m_info) == ImageError::None;
    if (!m_valid)
        m_info = ImageInfo();
    m_workingSize = m_valid ? ImageLoader::fitted(m_info.size, limit) : QSize(0, 0);
    readExif();
}

ImageDef::~ImageDef() = default;

void ImageDef::readExif()
{
    const std::optional<ExifEntries> entries = MetadataReader::read(m_path);
    m_exifFailed = !entries;
    m_entries = entries.value_or(ExifEntries());
    constexpr int kTileWidth = 322;
    const auto isTiled = [](const ExifEntry &entry) {
        return entry.flag == ExifFlag::Main && entry.tag == kTileWidth;
    };
    if (m_info.formatName == QLatin1String("TIFF") &&
        std::any_of(m_entries.cbegin(), m_entries.cend(), isTiled))
        m_info.formatName += QLatin1String(" tiled");
    m_metadata = Metadata::fromEntries(m_entries, m_valid ? m_info.size : QSize(0, 0));
    Metadata::applyOptions(m_metadata, m_options);
    for (const ExifEntry &entry : qAsConst(m_entries))
        m_dumpedTags.insert(keyOf(entry), exifTagDescription(entry.tag) + QLatin1String(" | ") +
                                              quotedValue(entry));
}

void ImageDef::DumpExif(QString &text) const
{
    if (m_exifFailed) {
        text += QLatin1String("ImageDef::DumpExif() Error\n");
        return;
    }
    if (m_entries.isEmpty()) {
        text += QLatin1String("No Exif\n");
        return;
    }
    text += QLatin1String("(  Tag  ) ------------------------Value----------------------\n");
    for (const ExifEntry &entry : m_entries) {
        // The value comes last and by itself: it may hold place markers.
        text += QStringLiteral("(%1_%2) %3 | %4")
                    .arg(QString::number(int(entry.flag)), QString::number(entry.tag),
                         exifTagDescription(entry.tag), quotedValue(entry)) +
                QLatin1Char('\n');
    }
}

QString ImageDef::getFilePath() const
{
    return m_path;
}

QString ImageDef::getFileName() const
{
    return QFileInfo(m_path).fileName();
}

QString ImageDef::getDirectory() const
{
    return QFileInfo(m_path).path();
}

int ImageDef::getWidth() const
{
    return m_workingSize.width();
}

int ImageDef::getHeight() const
{
    return m_workingSize.height();
}

int ImageDef::getFullWidth() const
{
    return std::max(m_info.size.width(), 0);
}

int ImageDef::getFullHeight() const
{
    return std::max(m_info.size.height(), 0);
}

bool ImageDef::isValid() const
{
    return m_valid;
}

double ImageDef::getYaw() const
{
    return m_metadata.yaw;
}

double ImageDef::getPitch() const
{
    return m_metadata.pitch;
}

const ImageMetadata &ImageDef::getMetadata() const
{
    return m_metadata;
}

double ImageDef::getFocal35() const
{
    return m_metadata.focalLength.focal35;
}

double ImageDef::getSensorScale() const
{
    return m_metadata.focalLength.scale;
}

QString ImageDef::getLensModel() const
{
    return m_metadata.lensModel;
}

const KBitmap &ImageDef::LockAs(const char *label, Locked &locked, const LoadRequest &request)
{
    const ImageLoadGuard guard(label);
    if (locked.count == 0) {
        if (!QFileInfo::exists(m_path))
            K_THROW(KException::FileNotFound(m_path));
        if (m_info.gray)
            K_THROW(getFileName() + translated(QT_TRANSLATE_NOOP(
                                        "KException", ": gray pictures are not supported.")));
        KBitmap bitmap;
        if (ImageLoader::load(m_path, request, bitmap) != ImageError::None)
            K_THROW(translated(QT_TRANSLATE_NOOP("KException", "File \"%1\" cannot be loaded"))
                        .arg(QFileInfo(m_path).absoluteFilePath()));
        locked.bitmap = std::move(bitmap);
    }
    ++locked.count;
    return locked.bitmap;
}

void ImageDef::Release(Locked &locked)
{
    if (locked.count == 0)
        return;
    if (--locked.count == 0)
        locked.bitmap = KBitmap();
}

const KBitmap &ImageDef::Lock()
{
    LoadRequest request;
    request.limit = m_workingSize;
    request.format = PixelFormat::Rgba8;
    request.raw = m_options.raw;
    return LockAs("ImageDef::Lock", m_working, request);
}

void ImageDef::Unlock()
{
    Release(m_working);
}

const KBitmap &ImageDef::LockFullSize()
{
    LoadRequest request;
    request.format = std::nullopt;
    request.raw = m_options.raw;
    return LockAs("ImageDef::LockFullSize", m_full, request);
}

void ImageDef::UnlockFullSize()
{
    Release(m_full);
}
