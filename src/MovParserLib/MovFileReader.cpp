#include "MovParserLib/MovFileReader.h"

#include <limits>

namespace Orvex::MovParserLib {

MovFileReader::~MovFileReader()
{
    if (const Status status = m_reader.close())
        reportOnly(FileReaderDomain, status);
}

Status MovFileReader::open(const QString &path)
{
    if (const Status status = m_reader.open(path))
        return report(FileReaderDomain, status);
    return parse(m_reader, m_reader.size(), &m_movie, &m_movieOffset);
}

Status MovFileReader::open(const std::string &utf8Path)
{
    return open(QString::fromStdString(utf8Path));
}

Status MovFileReader::open(const char *utf8Path)
{
    return open(QString::fromUtf8(utf8Path));
}

Status MovFileReader::readSample(TrackSelector track, quint32 number, SampleBuffer *sample)
{
    if (!sample)
        return ParserError::InvalidArg;
    const SampleTableAtom *table = nullptr;
    if (const Status status = getSampleTable(track, &table))
        return status;
    quint64 offset = 0;
    quint32 size = 0;
    qint64 presentationTime = 0;
    qint64 decodeTime = 0;
    bool isSync = false;
    if (const Status status = table->getSampleLocation(number, &offset, &size, &presentationTime,
                                                       &decodeTime, &isSync))
        return report(AtomDomain, status);
    if (offset > quint64(std::numeric_limits<qint64>::max()))
        return report(FileReaderDomain, FileReaderError::FilePosition);
    if (const Status status = m_reader.read(*sample, qint64(offset), size))
        return report(FileReaderDomain, status);
    sample->presentationTime = presentationTime;
    sample->decodeTime = decodeTime;
    sample->isSync = isSync ? 1 : 0;
    return 0;
}

Status MovFileReader::readSampleAtTime(TrackSelector track, qint64 time, SampleBuffer *sample)
{
    const SampleTableAtom *table = nullptr;
    if (const Status status = getSampleTable(track, &table))
        return status;
    quint32 number = 0;
    if (const Status status = table->getSampleAtTime(time, &number))
        return report(AtomDomain, status);
    return readSample(track, number, sample);
}

} // namespace Orvex::MovParserLib
