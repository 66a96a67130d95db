#pragma once

// udta and what the maker's cameras put into it: who made the file, with which settings, and the
// marked moments of the shot. Owned by the movie.

#include "MovParserLib/AtomOf.h"
#include "MovParserLib/Coding.h"

#include <array>

namespace Orvex::MovParserLib {

/// FRMW: firmware of the camera.
class OrvexCameraFirmwareAtom final : public AtomOf<OrvexCameraFirmwareAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("FRMW");
    static constexpr const char *kName = "FRMWAtom";
    RawText text;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("FirmwareVersion", a.text);
    }
};

/// CAMR: identifier of the camera, in bytes.
class OrvexCameraIDAtom final : public AtomOf<OrvexCameraIDAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("CAMR");
    static constexpr const char *kName = "CAMRAtom";
    RawBlock id;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Camera ID", a.id);
    }
};

/// The bit fields of STNG. Their meaning is not known here; missing bits are 0.
struct OrvexCameraSettings
{
    std::array<quint8, 13> first{};  ///< From bit 0, as wide as kFirstWidths says.
    std::array<quint8, 11> second{}; ///< From bit 64, behind a word that is skipped.
    quint32 third = 0;               ///< From bit 96.
    quint32 fourth = 0;              ///< From bit 128.

    static constexpr std::array<int, 13> kFirstWidths{{4, 4, 8, 1, 3, 1, 1, 2, 2, 2, 2, 1, 1}};
    static constexpr std::array<int, 11> kSecondWidths{{1, 2, 1, 1, 1, 2, 1, 3, 4, 2, 2}};
};

/// STNG: settings of the camera.
class OrvexCameraSettingsAtom final : public AtomOf<OrvexCameraSettingsAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("STNG");
    static constexpr const char *kName = "STNGAtom";
    RawBlock block;

    OrvexCameraSettings settings() const;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Camera Settings", a.block);
    }
};

/// LNSD or Lnsd: the lens; its first character is the vendor.
class OrvexCameraLNSDAtom final : public AtomOf<OrvexCameraLNSDAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("LNSD");
    static constexpr FourCC kSecondType = fourcc("Lnsd");
    static constexpr const char *kName = "LNSDAtom";

    struct LensText : RawText
    {
        char vendor() const { return text.empty() ? '\0' : text.front(); }
        void dump(const Dump &dump, const char *label) const;
    } lens;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("Lens Vendor", a.lens);
    }
};

/// "VFD" and a zero byte: the field of view.
class OrvexCameraVFDAtom final : public AtomOf<OrvexCameraVFDAtom, MovAtom>
{
public:
    static constexpr FourCC kType = 0x56464400;
    static constexpr const char *kName = "VFDAtom";
    RawText text;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("VFD", a.text);
    }
};

/// RGUI: place of the camera in a rig. Of exactly 24 bytes.
class OrvexCameraRGUIAtom final : public AtomOf<OrvexCameraRGUIAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("RGUI");
    static constexpr const char *kName = "RGUIAtom";
    quint64 primaryNodeEsn = 0;
    quint8 rigType = 0;
    std::array<quint8, 3> rigFirmware{};
    quint16 rigSize = 0;
    quint16 nodeId = 0;

    using AtomOf::read;
    /// ERROR_MALFORMED_ATOM for another size, with the cursor behind the header.
    [[nodiscard]] Status read(FileBuffer &buffer) override;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("rig_primary_node_esn", a.primaryNodeEsn);
        v.number("rig_type", a.rigType);
        v.bytes("rig_fw", a.rigFirmware);
        v.number("rig_size", a.rigSize);
        v.number("node_id", a.nodeId);
    }
};

/// RGSI: the shot of a rig. Of exactly 24 bytes.
class OrvexCameraRGSIAtom final : public AtomOf<OrvexCameraRGSIAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("RGSI");
    static constexpr const char *kName = "RGSIAtom";
    quint64 primaryCameraEsn = 0;
    quint32 captureStartTimestamp = 0;
    quint16 chapterNumber = 0;
    quint32 tarsoShotCount = 0; ///< Only shown; no field of the file fills it.

    using AtomOf::read;
    /// ERROR_MALFORMED_ATOM for another size, with the cursor behind the header.
    [[nodiscard]] Status read(FileBuffer &buffer) override;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.number("rig_primary_camera_esn", a.primaryCameraEsn);
        v.number("capture_start_timstamp", a.captureStartTimestamp);
        v.number("chapter_number", a.chapterNumber);
        v.zeros(2);
        v.printed("tarso_shot_count", a.tarsoShotCount);
    }
};

/// TGMK: moments of a shot, in milliseconds.
class OrvexSpotmarkTagAtom final : public AtomOf<OrvexSpotmarkTagAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("TGMK");
    static constexpr const char *kName = "Spotmark Tags";
    static constexpr quint32 kMostTags = 100;

    struct Tags
    {
        quint32 count = 0; ///< At most kMostTags, whatever the file says.
        std::array<quint32, kMostTags + 1> times{}; ///< The last is always 0.

        bool read(FileBuffer &buffer, qint64 end);
        bool write(FileBuffer &buffer) const;
        quint64 size() const { return 4 + 4 * quint64(count); }
        void dump(const Dump &dump, const char *label) const;
    } tags;

    /// ERROR_INVALID_ARG above COUNT. Intended: the index COUNT itself answers, with the unused
    /// entry behind the last tag.
    [[nodiscard]] Status getTag(quint32 index, quint32 *time) const;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("COUNT", a.tags);
    }
};

/// UMID: identifier of the recording, in bytes.
class OrvexMediaUniqueIdAtom final : public AtomOf<OrvexMediaUniqueIdAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("UMID");
    static constexpr const char *kName = "UMIDAtom";
    RawBlock id;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("UMID", a.id);
    }
};

/// udta. Of a known type the last atom stays, of an unknown one the first. The getters clear their
/// output and return ERROR_ATOM_NOT_FOUND when the atom is missing, ERROR_INVALID_ARG for null.
class UserDataAtom final : public AtomOf<UserDataAtom, MovAtom, Children::Sequential>
{
public:
    static constexpr FourCC kType = fourcc("udta");
    static constexpr const char *kName = "UserDataAtom";
    Owned<OrvexCameraFirmwareAtom> firmware;
    Owned<OrvexCameraIDAtom> cameraId;
    Owned<OrvexCameraSettingsAtom> settings;
    Owned<OrvexCameraLNSDAtom> lens;
    Owned<OrvexCameraVFDAtom> fieldOfView;
    Owned<OrvexCameraRGUIAtom> rigUniqueId;
    Owned<OrvexCameraRGSIAtom> rigShotId;
    Owned<OrvexSpotmarkTagAtom> spotmarkTags;
    Owned<OrvexMediaUniqueIdAtom> mediaUniqueId;
    UnparsedMap unparsed;

    template <class Self, class Visitor>
    static void children(Self &a, Visitor &v)
    {
        v.optional(a.firmware);
        v.optional(a.cameraId);
        v.optional(a.settings);
        v.optional(a.lens);
        v.optional(a.fieldOfView);
        v.optional(a.rigUniqueId);
        v.optional(a.rigShotId);
        v.optional(a.spotmarkTags);
        v.optional(a.mediaUniqueId);
        v.kept(a.unparsed);
    }

    /// The text, or null without the atom or with an empty one; both are success. It stays the
    /// atom's.
    [[nodiscard]] Status getFirmware(const char **text) const;
    /// The bytes stay the atom's.
    [[nodiscard]] Status getCameraId(const quint8 **block, quint32 *size) const;
    [[nodiscard]] Status getLensVendor(char *letter) const;
    [[nodiscard]] Status getFov(std::string *text) const;
    [[nodiscard]] Status getSettings(OrvexCameraSettings *result) const;
    [[nodiscard]] Status getRigUniqueId(OrvexCameraRGUIAtom *rig) const;
    [[nodiscard]] Status getRigShotId(OrvexCameraRGSIAtom *shot) const;
    /// The bytes stay the atom's.
    [[nodiscard]] Status getMediaUniqueId(const quint8 **block, quint32 *size) const;
    [[nodiscard]] Status getSpotmarkTag(quint32 index, quint32 *time) const;
    /// Bytes behind the header of a kept atom; see UnparsedAtom::getData().
    [[nodiscard]] Status getUnparsed(FourCC atomType, void *block, quint64 capacity,
                                     quint64 *written) const;
};

} // namespace Orvex::MovParserLib
