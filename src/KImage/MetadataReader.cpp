#include "KImage/MetadataReader.h"

#include "KImage/MetadataGuard.h"

#include <QFile>
#include <QFileInfo>
#include <QMutex>

#include <exiv2/exiv2.hpp>

#include <array>
#include <cctype>
#include <cmath>

namespace MetadataReader {

namespace {

/// Longer values are data of the camera, not text for people.
constexpr long kLongestText = 4096;
/// Far more entries than any camera writes.
constexpr int kMostEntries = 20000;

QMutex xmpMutex;

void lockXmp(void *, bool lock)
{
    if (lock)
        xmpMutex.lock();
    else
        xmpMutex.unlock();
}

ExifFlag flagOf(const std::string &group)
{
    if (group == "Photo")
        return ExifFlag::Exif;
    if (group == "Iop")
        return ExifFlag::Interoperability;
    if (group == "Thumbnail")
        return ExifFlag::Thumbnail;
    if (group == "GPSInfo")
        return ExifFlag::Gps;
    return group.rfind("Image", 0) == 0 || group.rfind("SubImage", 0) == 0 ? ExifFlag::Main
                                                                           : ExifFlag::Maker;
}

QString text(const std::string &bytes)
{
    return QString::fromStdString(bytes.substr(0, bytes.find('\0'))).trimmed();
}

/// Degrees, minutes and seconds. Only the last two are read with a fraction, so one of the degrees
/// goes to the minutes.
QString coordinate(const Exiv2::Value &value)
{
    std::array<double, 3> parts{};
    for (long i = 0; i < 3; ++i) {
        const Exiv2::Rational rational = value.toRational(i);
        if (rational.second == 0)
            return QString();
        parts[std::size_t(i)] = double(rational.first) / rational.second;
    }
    constexpr double kMinutesPerDegree = 60;
    const double wholeDegrees = std::floor(parts[0]);
    parts[1] += (parts[0] - wholeDegrees) * kMinutesPerDegree;
    parts[0] = wholeDegrees;
    return QStringLiteral("%1\u00B0 %2' %3\"")
        .arg(parts[0], 0, 'g', 8)
        .arg(parts[1], 0, 'g', 8)
        .arg(parts[2], 0, 'g', 8);
}

bool isNumber(const std::string &printed)
{
    const auto first = static_cast<unsigned char>(printed.empty() ? '0' : printed.front());
    return std::isdigit(first) != 0 || first == '-' || first == '(' || first == '+';
}

/// The entry's value in words where the library has words for it.
ExifEntry entryOf(const Exiv2::Exifdatum &datum, const Exiv2::ExifData &all)
{
    ExifEntry entry;
    entry.flag = flagOf(datum.groupName());
    entry.tag = datum.tag();
    entry.name = QString::fromStdString(datum.tagName());

    const Exiv2::TypeId type = datum.typeId();
    if (datum.size() > kLongestText) {
        entry.binary = type != Exiv2::asciiString;
        entry.value = entry.binary ? QString() : text(datum.toString().substr(0, kLongestText));
        return entry;
    }
    if (const auto *comment = dynamic_cast<const Exiv2::CommentValue *>(&datum.value())) {
        entry.value = text(comment->comment());
        return entry;
    }
    const std::string plain = datum.toString();
    if (type == Exiv2::asciiString && entry.flag != ExifFlag::Gps) {
        entry.value = text(plain);
        return entry;
    }
    if (type == Exiv2::unsignedRational && entry.flag == ExifFlag::Gps && datum.count() == 3 &&
        (entry.name == QLatin1String("GPSLatitude") ||
         entry.name == QLatin1String("GPSLongitude") ||
         entry.name == QLatin1String("GPSDestLatitude") ||
         entry.name == QLatin1String("GPSDestLongitude"))) {
        entry.value = coordinate(datum.value());
        return entry;
    }
    if (type == Exiv2::unsignedRational || type == Exiv2::signedRational) {
        entry.value = text(plain);
        return entry;
    }
    const std::string printed = datum.print(&all);
    if (type == Exiv2::undefined) {
        entry.binary = printed == plain;
        entry.value = entry.binary ? QString() : text(printed);
        return entry;
    }
    // Numbers keep their own form: "50", not "50.0 mm".
    const bool words = datum.count() == 1 || type == Exiv2::asciiString;
    entry.value = text(words && !isNumber(printed) ? printed : plain);
    return entry;
}

/// Lens entries that stand outside of EXIF, by their names without the schema.
void appendXmp(const Exiv2::XmpData &xmp, ExifEntries &entries)
{
    for (const char *key : {"Xmp.aux.LensID", "Xmp.aux.Lens"}) {
        const auto found = xmp.findKey(Exiv2::XmpKey(key));
        if (found == xmp.end())
            continue;
        ExifEntry entry;
        entry.flag = ExifFlag::Main;
        entry.name = QString::fromStdString(found->tagName());
        entry.value = text(found->toString().substr(0, kLongestText));
        entries.append(entry);
    }
}

/// A file whose blocks are bounded; reading beyond throws.
class GuardedFile final : public Exiv2::FileIo
{
public:
    using FileIo::FileIo;

    Exiv2::DataBuf read(long count) override
    {
        require(count <= MetadataGuard::kLargestBlock);
        return FileIo::read(count);
    }
    long read(Exiv2::byte *buffer, long count) override
    {
        require(count <= MetadataGuard::kLargestBlock);
        return FileIo::read(buffer, count);
    }
    /// Readers of TIFF structures take the whole file at once.
    Exiv2::byte *mmap(bool isWriteable) override
    {
        Exiv2::byte *data = FileIo::mmap(isWriteable);
        if (data) {
            const auto claims = MetadataGuard::claimsOf(data, qint64(size()));
            require(claims.xmp <= MetadataGuard::kLargestBlock &&
                    claims.values <= MetadataGuard::kMostValueBytes);
        }
        return data;
    }

private:
    static void require(bool withinBounds)
    {
        if (!withinBounds)
            throw Exiv2::Error(Exiv2::kerFailedToReadImageData);
    }
};

auto openGuarded(const QString &path)
{
    const std::string name = QFile::encodeName(path).toStdString();
    // By way of the factory, whose kind of owning pointer compilers warn of where it is named.
    auto file = Exiv2::ImageFactory::createIo(name, false);
    file.reset(new GuardedFile(name));
    return Exiv2::ImageFactory::open(file);
}

QByteArray bytesOf(const Exiv2::DataBuf &buffer)
{
    return QByteArray(reinterpret_cast<const char *>(buffer.pData_), int(buffer.size_));
}

/// What @p take makes of the file; empty for a kind of file that has no metadata at all.
template <class Result, class Take>
std::optional<Result> readWith(const QString &path, Take take)
{
    initialise();
    if (!QFileInfo(path).isFile())
        return std::nullopt;
    try {
        const auto image = openGuarded(path);
        if (!image.get())
            return Result();
        image->readMetadata();
        return take(*image);
    } catch (const std::exception &) {
        // Exiv2's own, memory or text conversion: nothing to be had from this file.
    }
    return std::nullopt;
}

} // namespace

void initialise()
{
    static const bool done = [] {
        Exiv2::XmpParser::initialize(lockXmp, nullptr);
        Exiv2::enableBMFF(true);
        Exiv2::LogMsg::setLevel(Exiv2::LogMsg::mute);
        return true;
    }();
    Q_UNUSED(done)
}

std::optional<ExifEntries> read(const QString &path)
{
    return readWith<ExifEntries>(path, [](Exiv2::Image &image) {
        ExifEntries entries;
        const Exiv2::ExifData &exif = image.exifData();
        for (const Exiv2::Exifdatum &datum : exif) {
            if (entries.size() == kMostEntries)
                break;
            entries.append(entryOf(datum, exif));
        }
        appendXmp(image.xmpData(), entries);
        return entries;
    });
}

std::optional<Blocks> readBlocks(const QString &path)
{
    return readWith<Blocks>(path, [](Exiv2::Image &image) {
        Blocks blocks;
        if (!image.iptcData().empty())
            blocks.iptc = bytesOf(Exiv2::IptcParser::encode(image.iptcData()));
        blocks.xmp = QByteArray::fromStdString(image.xmpPacket());
        if (image.iccProfileDefined())
            blocks.iccProfile = bytesOf(*image.iccProfile());
        return blocks;
    });
}

} // namespace MetadataReader
