#include "MovParserLib/MediaAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

namespace {
constexpr qint64 kLongestShortName = 255; // Bytes up to here carry a count of one byte.
constexpr size_t kLongestCountedName = 0xFFFF;
} // namespace

void ComponentName::set(const std::string &name)
{
    m_form = Form::Counted;
    m_text = name.substr(0, kLongestCountedName);
}

quint32 ComponentName::prefixSize() const
{
    if (m_form != Form::Counted)
        return 0;
    return qint64(m_text.size()) + 1 <= kLongestShortName ? 1 : 2;
}

bool ComponentName::read(FileBuffer &buffer, qint64 end)
{
    m_form = Form::None;
    m_text.clear();
    const qint64 start = buffer.position();
    const qint64 left = end - start;
    if (left <= 0)
        return true;
    quint16 count = 0;
    qint64 prefix = 1;
    if (left <= kLongestShortName) {
        quint8 shortCount = 0;
        if (readBig(buffer, &shortCount))
            return false;
        count = shortCount;
    } else {
        prefix = 2;
        if (readBig(buffer, &count))
            return false;
    }
    m_form = Form::Counted;
    qint64 length = count;
    if (length != left - prefix) {
        // No count stands in front: the name is everything up to the end.
        m_form = Form::Plain;
        length = left;
        buffer.seek(start, FromStart);
    }
    const uchar *bytes = buffer.take(quint64(length));
    if (length > 0 && !bytes)
        return false;
    m_text.assign(bytes, bytes + length);
    return true;
}

bool ComponentName::write(FileBuffer &buffer) const
{
    const quint32 prefix = prefixSize();
    if ((prefix == 1 && writeBig(buffer, quint8(m_text.size()))) ||
        (prefix == 2 && writeBig(buffer, quint16(m_text.size()))))
        return false;
    return buffer.write(m_text.data(), quint32(m_text.size())) == 0;
}

void ComponentName::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %s", label, m_text.c_str());
}

bool DataReference::accepts(FourCC type)
{
    return type == fourcc("alis") || type == fourcc("rsrc") || type == fourcc("url ") ||
           type == fourcc("cios");
}

void DataReference::dumpFields(const Dump &dump) const
{
    if (type != fourcc("url ")) {
        AtomOf::dumpFields(dump);
        return;
    }
    // NOLINTNEXTLINE(bugprone-parent-virtual-call): the next class up would dump the block too.
    MovFullAtom::dumpFields(dump);
    dump.line("URLFlag: %d", flags[2]);
    dump.line("URLLength: %d", int(data.bytes.size()));
    dump.line("URLString: %s", std::string(data.bytes.begin(), data.bytes.end()).c_str());
}

bool DataReferenceAtom::Entries::read(FileBuffer &buffer, qint64)
{
    quint32 count = 0;
    rows.clear();
    if (readBig(buffer, &count))
        return false;
    for (quint32 i = 0; i < count; ++i) {
        const qint64 before = buffer.position();
        DataReference entry;
        if (entry.read(buffer) || buffer.position() <= before)
            return false;
        rows.push_back(std::move(entry));
    }
    return true;
}

bool DataReferenceAtom::Entries::write(FileBuffer &buffer)
{
    bool ok = writeBig(buffer, quint32(rows.size())) == 0;
    for (DataReference &entry : rows)
        ok = ok && entry.write(buffer) == 0;
    return ok;
}

quint64 DataReferenceAtom::Entries::size() const
{
    quint64 sum = sizeof(quint32);
    for (const DataReference &entry : rows)
        sum += entry.computeSize();
    return sum;
}

void DataReferenceAtom::Entries::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %d", label, int(rows.size()));
    for (const DataReference &entry : rows)
        entry.dumpTo(dump);
}

Owned<MediaInformationAtom> MediaInformationAtom::makeFor(FourCC subtype)
{
    switch (subtype) {
    case fourcc("vide"):
        return Owned<MediaInformationAtom>::make<VideoMediaInformationAtom>();
    case fourcc("soun"):
        return Owned<MediaInformationAtom>::make<SoundMediaInformationAtom>();
    case fourcc("tmcd"):
    case fourcc("text"):
    case fourcc("meta"):
        return Owned<MediaInformationAtom>::make<BaseMediaInformationAtom>(subtype);
    default:
        return {};
    }
}

namespace {

/// Asks @p table, or answers @p missing without one.
template <class... Parameters, class... Arguments>
Status ask(const SampleTableAtom *table, Status missing,
           Status (SampleTableAtom::*question)(Parameters...) const, Arguments... arguments)
{
    return table ? (table->*question)(arguments...) : missing;
}

constexpr Status kNoTable = AtomError::InvalidRetVal;

} // namespace

Status MediaInformationAtom::getSampleDescriptionCount(quint32 *count) const
{
    return sampleTable() ? sampleTable()->descriptions.getSampleDescriptionCount(count) : kNoTable;
}

const SampleDescription *MediaInformationAtom::currentDescription() const
{
    const SampleTableAtom *table = sampleTable();
    if (!table || table->descriptions.entries.rows.empty())
        return nullptr;
    return table->descriptions.entries.rows.front().get();
}

Status MediaInformationAtom::getSampleCount(quint32 *count) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleCount, count);
}

Status MediaInformationAtom::getSampleSize(quint32 sample, quint32 *size) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleSize, sample, size);
}

Status MediaInformationAtom::getSampleDecodeTime(quint32 sample, qint64 *time) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleDecodeTime, sample, time);
}

Status MediaInformationAtom::getSampleCompositionTime(quint32 sample, qint64 *time) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleCompositionTime, sample, time);
}

Status MediaInformationAtom::getSampleAtTime(qint64 time, quint32 *sample) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleAtTime, time, sample);
}

Status MediaInformationAtom::isSyncSample(quint32 sample, bool *result) const
{
    if (sampleTable())
        return sampleTable()->isSyncSample(sample, result);
    if (!result)
        return AtomError::InvalidArg;
    *result = true;
    return AtomError::Okay;
}

Status MediaInformationAtom::getSampleLocation(quint32 sample, quint64 *offset, quint32 *size,
                                               qint64 *compositionTime, qint64 *decodeTime,
                                               bool *isSync) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getSampleLocation, sample, offset, size,
               compositionTime, decodeTime, isSync);
}

Status MediaInformationAtom::getSampleSizes(std::vector<quint32> *sizes) const
{
    return ask(sampleTable(), AtomError::Okay, &SampleTableAtom::getSampleSizes, sizes);
}

Status MediaInformationAtom::getSyncSamples(std::set<quint32> *samples) const
{
    return ask(sampleTable(), AtomError::Okay, &SampleTableAtom::getSyncSamples, samples);
}

Status MediaInformationAtom::getDecodeTimes(std::vector<qint64> *times) const
{
    return ask(sampleTable(), AtomError::Okay, &SampleTableAtom::getDecodeTimes, times);
}

Status MediaInformationAtom::getCompositionTimes(std::vector<qint64> *times) const
{
    return ask(sampleTable(), AtomError::Okay, &SampleTableAtom::getCompositionTimes, times);
}

Status MediaInformationAtom::getFirstSampleDuration(quint32 *duration) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getFirstSampleDuration, duration);
}

Status MediaInformationAtom::getLastSampleDuration(quint32 *duration) const
{
    return ask(sampleTable(), kNoTable, &SampleTableAtom::getLastSampleDuration, duration);
}

bool MediaInformationAtom::hasSamples() const
{
    quint32 count = 0;
    return getSampleCount(&count) == 0 && count != 0;
}

Status MediaAtom::getHandlerName(char *text) const
{
    if (!text)
        return AtomError::InvalidArg;
    if (!handler || handler->componentName.isNull())
        return AtomError::MalformedAtom;
    std::strncpy(text, handler->componentName.text().c_str(), kHandlerNameSize - 1);
    text[kHandlerNameSize - 1] = 0;
    return AtomError::Okay;
}

const SampleTableAtom *MediaAtom::sampleTable() const
{
    const MediaInformationAtom *minf = information.get();
    return minf ? minf->sampleTable() : nullptr;
}

const VideoSampleDescription *MediaAtom::videoDescription() const
{
    const SampleTableAtom *table = sampleTable();
    return table ? table->descriptions.firstVideo() : nullptr;
}

Status MediaAtom::getVideoSize(quint32 *width, quint32 *height) const
{
    return sampleTable() ? sampleTable()->descriptions.getVideoSize(width, height) : kNoTable;
}

Status MediaAtom::getCompressorName(std::string *name) const
{
    return sampleTable() ? sampleTable()->descriptions.getCompressorName(name) : kNoTable;
}

Status MediaAtom::getDepth(quint32 *depth) const
{
    return sampleTable() ? sampleTable()->descriptions.getDepth(depth) : kNoTable;
}

Status MediaAtom::getResolution(double *horizontal, double *vertical) const
{
    return sampleTable() ? sampleTable()->descriptions.getResolution(horizontal, vertical)
                         : kNoTable;
}

template class AtomOf<MediaHeaderAtom, MovFullDatedAtom>;
template class AtomOf<HandlerReferenceAtom, MovFullAtom>;
template class AtomOf<DataReference, MovFullAtom>;
template class AtomOf<DataReferenceAtom, MovFullAtom>;
template class AtomOf<DataInformationAtom, MovAtom, Children::Search>;
template class AtomOf<VideoMediaInformationHeaderAtom, MovFullAtom>;
template class AtomOf<SoundMediaInformationHeaderAtom, MovFullAtom>;
template class AtomOf<BaseMediaInfoAtom, MovFullAtom>;
template class AtomOf<TimeCodeMediaInformationAtom, MovFullAtom>;
template class AtomOf<TimeCodeMediaHandlerAtom, MovAtom, Children::Search>;
template class AtomOf<OVMFHandlerAtom, MovAtom>;
template class AtomOf<BaseMediaInformationHeaderAtom, MovAtom, Children::Search>;
template class AtomOf<VideoMediaInformationAtom, MediaInformationAtom, Children::Search>;
template class AtomOf<SoundMediaInformationAtom, MediaInformationAtom, Children::Search>;
template class AtomOf<BaseMediaInformationAtom, MediaInformationAtom, Children::Search>;
template class AtomOf<MediaAtom, MovAtom, Children::Search>;

} // namespace Orvex::MovParserLib
