#pragma once

// Opens a movie file and answers what is said in it; made on the stack of whoever asks, used on
// that one thread, and destroyed with or without a successful open().

#include "MovParserLib/MovFile.h"
#include "MovParserLib/MovParser.h"
#include "MovParserLib/SampleBuffer.h"

namespace Orvex::MovParserLib {

class MovFileReader : public MovFile, public MovParser
{
public:
    MovFileReader() = default;
    MovFileReader(const MovFileReader &) = delete;
    MovFileReader &operator=(const MovFileReader &) = delete;
    virtual ~MovFileReader();

    /// Opens the file, walks it, and parses its movie. Failures are reported and returned:
    /// FileReaderDomain with its code, plain 2 from the walk, AtomDomain with ATOM_READ_FAILED.
    /// After a failure the tree is not to be used.
    [[nodiscard]] Status open(const QString &path);
    [[nodiscard]] Status open(const std::string &utf8Path);
    [[nodiscard]] Status open(const char *utf8Path);

    /// File offset of the moov atom.
    quint64 movieOffset() const { return m_movieOffset; }

    /// Reads sample @p number, counted from 0, with its times.
    [[nodiscard]] Status readSample(TrackSelector track, quint32 number, SampleBuffer *sample);
    /// The same for the sample that is decoded at @p time, in units of the media's time scale.
    [[nodiscard]] Status readSampleAtTime(TrackSelector track, qint64 time, SampleBuffer *sample);

private:
    SyncFileReaderQt m_reader;
    quint64 m_movieOffset = 0;
};

} // namespace Orvex::MovParserLib
