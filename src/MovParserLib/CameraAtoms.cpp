#include "MovParserLib/CameraAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

namespace {

constexpr quint64 kRigAtomSize = 24;

/// Reads the header alone; true, with the cursor behind it, when the size is not what a rig's
/// atom has. Otherwise the cursor stays.
bool hasWrongSize(FileBuffer &buffer, FourCC type)
{
    const qint64 start = buffer.position();
    MovAtom header;
    if (header.read(buffer, type) == 0 && header.size != kRigAtomSize)
        return true;
    buffer.seek(start, FromStart);
    return false;
}

/// Bits @p from to @p from + @p width of @p bytes, the most significant first.
quint32 bitsOf(const std::vector<quint8> &bytes, size_t from, int width)
{
    quint32 value = 0;
    for (size_t bit = from; bit < from + size_t(width); ++bit) {
        const bool set = bit / 8 < bytes.size() && (bytes[bit / 8] >> (7 - bit % 8) & 1);
        value = value << 1 | quint32(set);
    }
    return value;
}

template <size_t N>
void unpack(const std::vector<quint8> &bytes, size_t from, const std::array<int, N> &widths,
            std::array<quint8, N> *values)
{
    for (size_t i = 0; i < N; ++i) {
        (*values)[i] = quint8(bitsOf(bytes, from, widths[i]));
        from += size_t(widths[i]);
    }
}

Status getBlock(const std::vector<quint8> *bytes, const quint8 **block, quint32 *size)
{
    if (!block || !size)
        return AtomError::InvalidArg;
    *block = bytes && !bytes->empty() ? bytes->data() : nullptr;
    *size = bytes ? quint32(bytes->size()) : 0;
    return bytes ? AtomError::Okay : AtomError::AtomNotFound;
}

template <class Atom>
Status getCopy(const Owned<Atom> &atom, Atom *copy)
{
    if (!copy)
        return AtomError::InvalidArg;
    *copy = atom ? *atom : Atom();
    return atom ? AtomError::Okay : AtomError::AtomNotFound;
}

} // namespace

OrvexCameraSettings OrvexCameraSettingsAtom::settings() const
{
    OrvexCameraSettings result;
    unpack(block.bytes, 0, OrvexCameraSettings::kFirstWidths, &result.first);
    unpack(block.bytes, 64, OrvexCameraSettings::kSecondWidths, &result.second);
    result.third = bitsOf(block.bytes, 96, 32);
    result.fourth = bitsOf(block.bytes, 128, 32);
    return result;
}

void OrvexCameraLNSDAtom::LensText::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %c", label, vendor());
}

Status OrvexCameraRGUIAtom::read(FileBuffer &buffer)
{
    return hasWrongSize(buffer, kType) ? Status(AtomError::MalformedAtom) : AtomOf::read(buffer);
}

Status OrvexCameraRGSIAtom::read(FileBuffer &buffer)
{
    return hasWrongSize(buffer, kType) ? Status(AtomError::MalformedAtom) : AtomOf::read(buffer);
}

bool OrvexSpotmarkTagAtom::Tags::read(FileBuffer &buffer, qint64 end)
{
    times.fill(0);
    count = 0;
    quint32 claimed = 0;
    std::vector<quint32> rows;
    if (readBig(buffer, &claimed)
        || !readRows(buffer, end, std::min(claimed, kMostTags), &rows))
        return false;
    count = quint32(rows.size());
    std::copy(rows.begin(), rows.end(), times.begin());
    return true;
}

bool OrvexSpotmarkTagAtom::Tags::write(FileBuffer &buffer) const
{
    const auto last = times.begin() + std::min(count, kMostTags);
    return writeBig(buffer, count) == 0
        && writeRows(buffer, std::vector<quint32>(times.begin(), last));
}

void OrvexSpotmarkTagAtom::Tags::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %d", label, int(count));
    for (quint32 i = 0; i < std::min(count, kMostTags); ++i)
        dump.line("TAG: %i.%i sec", int(times[i] / 1000), int(times[i] % 1000));
}

Status OrvexSpotmarkTagAtom::getTag(quint32 index, quint32 *time) const
{
    if (!time || index > tags.count || index >= tags.times.size())
        return AtomError::InvalidArg;
    *time = tags.times[index];
    return AtomError::Okay;
}

Status UserDataAtom::getFirmware(const char **text) const
{
    if (!text)
        return AtomError::InvalidArg;
    *text = firmware && !firmware->text.text.empty() ? firmware->text.text.c_str() : nullptr;
    return AtomError::Okay;
}

Status UserDataAtom::getCameraId(const quint8 **block, quint32 *size) const
{
    return getBlock(cameraId ? &cameraId->id.bytes : nullptr, block, size);
}

Status UserDataAtom::getLensVendor(char *letter) const
{
    if (!letter)
        return AtomError::InvalidArg;
    *letter = lens ? lens->lens.vendor() : '\0';
    return lens ? AtomError::Okay : AtomError::AtomNotFound;
}

Status UserDataAtom::getFov(std::string *text) const
{
    if (!text)
        return AtomError::InvalidArg;
    *text = fieldOfView ? fieldOfView->text.text.c_str() : "";
    return fieldOfView ? AtomError::Okay : AtomError::AtomNotFound;
}

Status UserDataAtom::getSettings(OrvexCameraSettings *result) const
{
    if (!result)
        return AtomError::InvalidArg;
    *result = settings ? settings->settings() : OrvexCameraSettings();
    return settings ? AtomError::Okay : AtomError::AtomNotFound;
}

Status UserDataAtom::getRigUniqueId(OrvexCameraRGUIAtom *rig) const
{
    return getCopy(rigUniqueId, rig);
}

Status UserDataAtom::getRigShotId(OrvexCameraRGSIAtom *shot) const
{
    return getCopy(rigShotId, shot);
}

Status UserDataAtom::getMediaUniqueId(const quint8 **block, quint32 *size) const
{
    return getBlock(mediaUniqueId ? &mediaUniqueId->id.bytes : nullptr, block, size);
}

Status UserDataAtom::getSpotmarkTag(quint32 index, quint32 *time) const
{
    if (!time)
        return AtomError::InvalidArg;
    *time = 0;
    return spotmarkTags ? spotmarkTags->getTag(index, time) : Status(AtomError::AtomNotFound);
}

Status UserDataAtom::getUnparsed(FourCC atomType, void *block, quint64 capacity,
                                 quint64 *written) const
{
    if (!written)
        return AtomError::InvalidArg;
    *written = 0;
    const auto found = unparsed.find(atomType);
    if (found == unparsed.end())
        return AtomError::AtomNotFound;
    return found->second.getData(block, capacity, written);
}

template class AtomOf<OrvexCameraFirmwareAtom, MovAtom>;
template class AtomOf<OrvexCameraIDAtom, MovAtom>;
template class AtomOf<OrvexCameraSettingsAtom, MovAtom>;
template class AtomOf<OrvexCameraLNSDAtom, MovAtom>;
template class AtomOf<OrvexCameraVFDAtom, MovAtom>;
template class AtomOf<OrvexCameraRGUIAtom, MovAtom>;
template class AtomOf<OrvexCameraRGSIAtom, MovAtom>;
template class AtomOf<OrvexSpotmarkTagAtom, MovAtom>;
template class AtomOf<OrvexMediaUniqueIdAtom, MovAtom>;
template class AtomOf<UserDataAtom, MovAtom, Children::Sequential>;

} // namespace Orvex::MovParserLib
