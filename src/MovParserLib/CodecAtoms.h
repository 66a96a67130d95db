#pragma once

// Codec configuration below a sample description; owned by the description, read for dumps and
// kept byte for byte for writing.

#include "MovParserLib/AtomOf.h"
#include "MovParserLib/Coding.h"

namespace Orvex::MovParserLib {

// Each record keeps the payload as it stands beside the parsed fields and writes the payload; only
// a record without one is written from its fields. What a payload is too short for reads as 0.

/// The decoder configuration record of H.264 (ISO/IEC 14496-15, 5.3.3.1). Of the parameter sets
/// only the first of each kind is parsed.
struct AvcRecord
{
    quint8 configurationVersion = 1;
    quint8 avcProfileIndication = 0;
    quint8 profileCompatibility = 0;
    quint8 avcLevelIndication = 0;
    quint8 lengthSizeMinusOne = 3;
    quint8 numOfSequenceParameterSets = 0;
    std::vector<quint8> sequenceParameterSet;
    quint8 numOfPictureParameterSets = 0;
    std::vector<quint8> pictureParameterSet;
    std::vector<quint8> payload;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const;
    void dump(const Dump &dump, const char *label) const;

    template <class Self, class Visitor>
    static void fields(Self &r, Visitor &v)
    {
        v.bits("configurationVersion", r.configurationVersion, 8);
        v.bits("AVCProfileIndication", r.avcProfileIndication, 8);
        v.bits("profile_compatibility", r.profileCompatibility, 8);
        v.bits("AVCLevelIndication", r.avcLevelIndication, 8);
        v.ones(6);
        v.bits("lengthSizeMinusOne", r.lengthSizeMinusOne, 2);
        v.ones(3);
        v.bits("numOfSequenceParameterSets", r.numOfSequenceParameterSets, 5);
        v.sets("sequenceParameterSetLength", "SPS[0]:  [", r.sequenceParameterSet,
               r.numOfSequenceParameterSets);
        v.bits("numOfPictureParameterSets", r.numOfPictureParameterSets, 8);
        v.sets("pictureParameterSetLength", "PPS[0]:  [", r.pictureParameterSet,
               r.numOfPictureParameterSets);
    }
};

/// The decoder configuration record of HEVC (ISO/IEC 14496-15, 8.3.3.1).
struct HevcRecord
{
    struct NalArray
    {
        quint8 arrayCompleteness = 0;
        quint8 nalUnitType = 0; ///< All six bits; see shownNalUnitType().
        quint16 numNalus = 0;
        std::vector<std::vector<quint8>> nalUnits;

        /// Intended: the sixth bit is lost where the type is shown.
        quint8 shownNalUnitType() const { return nalUnitType & 0x1F; }
    };

    quint8 configurationVersion = 1;
    quint8 generalProfileSpace = 0;
    quint8 generalTierFlag = 0;
    quint8 generalProfileIdc = 0;
    quint32 generalProfileCompatibilityFlags = 0;
    quint64 generalConstraintIndicatorFlags = 0;
    quint8 generalLevelIdc = 0;
    quint16 minSpatialSegmentationIdc = 0;
    quint8 parallelismType = 0;
    quint8 chromaFormat = 0;
    quint8 bitDepthLumaMinus8 = 0;
    quint8 bitDepthChromaMinus8 = 0;
    quint16 avgFrameRate = 0;
    quint8 constantFrameRate = 0;
    quint8 numTemporalLayers = 0;
    quint8 temporalIdNested = 0;
    quint8 lengthSizeMinusOne = 3;
    quint8 numOfArrays = 0;
    std::vector<NalArray> arrays;
    std::vector<quint8> payload;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const;
    void dump(const Dump &dump, const char *label) const;

    template <class Self, class Visitor>
    static void fields(Self &r, Visitor &v)
    {
        v.bits("configurationVersion", r.configurationVersion, 8);
        v.bits("general_profile_space", r.generalProfileSpace, 2);
        v.bits("general_tier_flag", r.generalTierFlag, 1);
        v.bits("general_profile_idc", r.generalProfileIdc, 5);
        v.bits("general_profile_compatibility_flags", r.generalProfileCompatibilityFlags, 32);
        v.bits("general_constraint_indicator_flags", r.generalConstraintIndicatorFlags, 48);
        v.bits("general_level_idc", r.generalLevelIdc, 8);
        v.ones(4);
        v.bits("min_spatial_segmentation_idc", r.minSpatialSegmentationIdc, 12);
        v.ones(6);
        v.bits("parallelismType", r.parallelismType, 2);
        v.ones(6);
        v.bits("chromaFormat", r.chromaFormat, 2);
        v.ones(5);
        v.bits("bitDepthLumaMinus8", r.bitDepthLumaMinus8, 3);
        v.ones(5);
        v.bits("bitDepthChromaMinus8", r.bitDepthChromaMinus8, 3);
        v.bits("avgFrameRate", r.avgFrameRate, 16);
        v.bits("constantFrameRate", r.constantFrameRate, 2);
        v.bits("numTemporalLayers", r.numTemporalLayers, 3);
        v.bits("temporalIdNested", r.temporalIdNested, 1);
        v.bits("lengthSizeMinusOne", r.lengthSizeMinusOne, 2);
        v.bits("numOfArrays", r.numOfArrays, 8);
        for (size_t i = 0; v.more(r.arrays, i, r.numOfArrays); ++i) {
            auto &array = r.arrays[i];
            v.heading("ARRAY #%d", i);
            v.bits("array_completeness", array.arrayCompleteness, 1);
            v.reserved(1);
            v.shown("NAL_unit_type", array.nalUnitType, 6, 0x1F);
            v.bits("numNalus", array.numNalus, 16);
            for (size_t j = 0; v.more(array.nalUnits, j, array.numNalus); ++j) {
                v.heading("NALU #%d", j);
                v.block("nalUnitLength", "[", array.nalUnits[j]);
            }
        }
    }
};

/// The elementary stream descriptor of MPEG-4 (ISO/IEC 14496-1, 7.2.6.5) with the beginning of
/// the AudioSpecificConfig (ISO/IEC 14496-3, 1.6.2.1). Written from its payload alone.
struct EsDescriptor
{
    quint8 esTag = 0;
    quint16 esId = 0;
    quint8 streamDependenceFlag = 0;
    quint8 urlFlag = 0;
    quint8 oCRstreamFlag = 0;
    quint8 streamPriority = 0;
    quint16 dependsOnEsId = 0;
    quint8 urlLength = 0;
    std::vector<quint8> url;
    quint16 oCREsId = 0;

    quint8 decoderConfigTag = 0;
    quint8 objectTypeIndication = 0;
    quint8 streamType = 0;
    quint8 upStream = 0;
    quint32 bufferSizeDB = 0;
    quint32 maxBitRate = 0;
    quint32 avgBitRate = 0;

    quint8 decoderSpecificTag = 0;
    quint8 decoderSpecificLength = 0;
    quint8 audioObjectType = 0;
    quint8 samplingFrequencyIndex = 0;
    quint32 samplingFrequency = 0;
    quint8 channelConfiguration = 0;
    quint8 frameLengthFlag = 0;
    quint8 dependsOnCoreCoder = 0;
    quint16 coreCoderDelay = 0;
    quint8 extensionFlag = 0;
    quint8 layerNr = 0;
    quint8 numOfSubFrame = 0;
    quint16 layerLength = 0;
    quint8 aacSectionDataResilienceFlag = 0;
    quint8 aacScalefactorDataResilienceFlag = 0;
    quint8 aacSpectralDataResilienceFlag = 0;

    quint8 slConfigTag = 0;
    quint8 predefined = 0;

    std::vector<quint8> payload;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return payload.size(); }
    void dump(const Dump &dump, const char *label) const;

    /// Whether the object type's configuration is a GASpecificConfig (ISO/IEC 14496-3, 4.4.1).
    static bool isGeneralAudio(quint8 objectType);
    static bool isErrorResilient(quint8 objectType);

    template <class Self, class Visitor>
    static void fields(Self &r, Visitor &v)
    {
        quint8 ignored = 0;
        v.bits("ES tag", r.esTag, 8);
        if (r.esTag == 3) {
            v.length(ignored);
            v.bits("esId", r.esId, 16);
            v.bits("streamDependenceFlag", r.streamDependenceFlag, 1);
            v.bits("URLFlag", r.urlFlag, 1);
            v.bits("oCRstreamFlag", r.oCRstreamFlag, 1);
            v.bits("streamPriority", r.streamPriority, 5);
            if (r.streamDependenceFlag)
                v.bits("dependsOnEsId", r.dependsOnEsId, 16);
            if (r.urlFlag) {
                v.bits("URLLength", r.urlLength, 8);
                v.raw("URL: [", r.url, r.urlLength);
            }
            if (r.oCRstreamFlag)
                v.bits("oCREsId", r.oCREsId, 16);
        }
        v.bits("DecoderConfig tag", r.decoderConfigTag, 8);
        if (r.decoderConfigTag == 4) {
            v.length(ignored);
            v.bits("objectTypeIndication", r.objectTypeIndication, 8);
            v.bits("streamType", r.streamType, 6);
            v.bits("upStream", r.upStream, 1);
            v.reserved(1);
            v.bits("bufferSizeDB", r.bufferSizeDB, 24);
            v.bits("maxBitRate", r.maxBitRate, 32);
            v.bits("avgBitRate", r.avgBitRate, 32);
        }
        v.bits("DecoderSpecificInfo tag", r.decoderSpecificTag, 8);
        if (r.decoderSpecificTag == 5) {
            v.length(r.decoderSpecificLength);
            v.within(r.decoderSpecificLength, [&](auto &inner) { audioFields(r, inner); });
        }
        v.bits("SLConfig tag", r.slConfigTag, 8);
        if (r.slConfigTag == 6) {
            v.length(ignored);
            v.bits("predefined", r.predefined, 8);
        }
    }

private:
    template <class Self, class Visitor>
    static void audioFields(Self &r, Visitor &v)
    {
        v.objectType("audioObjectType", r.audioObjectType);
        v.bits("samplingFrequencyIndex", r.samplingFrequencyIndex, 4);
        if (r.samplingFrequencyIndex == 15)
            v.bits("samplingFrequency", r.samplingFrequency, 24);
        v.bits("channelConfiguration", r.channelConfiguration, 4);
        if (!isGeneralAudio(r.audioObjectType))
            return;
        v.bits("frameLengthFlag", r.frameLengthFlag, 1);
        v.bits("dependsOnCoreCoder", r.dependsOnCoreCoder, 1);
        if (r.dependsOnCoreCoder)
            v.bits("coreCoderDelay", r.coreCoderDelay, 14);
        v.bits("extensionFlag", r.extensionFlag, 1);
        if (r.audioObjectType == 6 || r.audioObjectType == 20)
            v.bits("layerNr", r.layerNr, 3);
        if (!r.extensionFlag)
            return;
        if (r.audioObjectType == 22) {
            v.bits("numOfSubFrame", r.numOfSubFrame, 5);
            v.bits("layer_length", r.layerLength, 11);
        }
        if (isErrorResilient(r.audioObjectType)) {
            v.bits("aacSectionDataResilienceFlag", r.aacSectionDataResilienceFlag, 1);
            v.bits("aacScalefactorDataResilienceFlag", r.aacScalefactorDataResilienceFlag, 1);
            v.bits("aacSpectralDataResilienceFlag", r.aacSpectralDataResilienceFlag, 1);
        }
    }
};

/// avcC: configuration of an H.264 stream.
class AVCCAtom final : public AtomOf<AVCCAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("avcC");
    static constexpr const char *kName = "AVCCAtom";
    AvcRecord record;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("", a.record);
    }
};

/// hvcC: configuration of an HEVC stream.
class HVCCAtom final : public AtomOf<HVCCAtom, MovAtom>
{
public:
    static constexpr FourCC kType = fourcc("hvcC");
    static constexpr const char *kName = "HVCCAtom";
    HevcRecord record;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("", a.record);
    }
};

/// esds: configuration of an MPEG-4 elementary stream, as a rule AAC.
class EsdsAtom final : public AtomOf<EsdsAtom, MovFullAtom>
{
public:
    static constexpr FourCC kType = fourcc("esds");
    static constexpr const char *kName = "EsdsAtom";
    EsDescriptor descriptor;

    template <class Self, class Visitor>
    static void fields(Self &a, Visitor &v)
    {
        v.coded("", a.descriptor);
    }
};

} // namespace Orvex::MovParserLib
