#include "MovParserLib/MovParser.h"

#include <algorithm>

namespace Orvex::MovParserLib {

namespace {

constexpr qint64 kHeaderSize = 8;
constexpr qint64 kLargeHeaderSize = 16;

bool mayBeFirst(FourCC type)
{
    constexpr FourCC types[] = {fourcc("ftyp"), fourcc("moov"), fourcc("free"), fourcc("wide"),
                                fourcc("mdat")};
    return std::find(std::begin(types), std::end(types), type) != std::end(types);
}

} // namespace

Status MovParser::readHeader(FileReader &reader, FileBuffer &buffer, qint64 fileSize,
                             qint64 offset, Header *header)
{
    const qint64 left = fileSize - offset;
    if (left < kHeaderSize)
        return report(FileReaderDomain, FileReaderError::AttemptToReadPastEof);
    // The last atom of a file may be shorter than a large header; what is not there is zero.
    uchar bytes[kLargeHeaderSize] = {};
    const auto size = quint32(std::min(left, kLargeHeaderSize));
    if (const Status status = reader.read(buffer, offset, size))
        return report(FileReaderDomain, status);
    if (const Status status = buffer.read(bytes, size))
        return report(BufferDomain, status);
    quint64 atomSize = qFromBigEndian<quint32>(bytes);
    qint64 consumed = kHeaderSize;
    if (atomSize == 1) {
        atomSize = qFromBigEndian<quint64>(bytes + kHeaderSize);
        consumed = kLargeHeaderSize;
    }
    // An atom that is smaller than its header leads nowhere, as one of size 0.
    header->size = atomSize < quint64(consumed) ? 0 : atomSize;
    header->type = qFromBigEndian<FourCC>(bytes + 4);
    return 0;
}

Status MovParser::findMovie(FileReader &reader, FileBuffer &buffer, qint64 fileSize,
                            qint64 *offset, quint64 *size)
{
    *offset = 0;
    for (bool first = true;; first = false) {
        Header header;
        if (const Status status = readHeader(reader, buffer, fileSize, *offset, &header)) {
            reportOnly(WalkDomain, status);
            return ParserError::MissingMovieHeader;
        }
        // Intended: an atom of size 0, which a standard reader takes up to the end of the file,
        // ends the walk.
        if (header.size == 0) {
            reportOnly(WalkDomain, ParserError::MissingMovieHeader);
            return ParserError::MissingMovieHeader;
        }
        if (first && !mayBeFirst(header.type)) {
            reportOnly(WalkDomain, ParserError::FileNotCompatible);
            return ParserError::MissingMovieHeader;
        }
        if (header.type == MovieAtom::kType) {
            *size = header.size;
            return 0;
        }
        // An atom that runs over the end leaves no header to read behind it.
        *offset = header.size > quint64(fileSize - *offset) ? fileSize
                                                            : *offset + qint64(header.size);
    }
}

Status MovParser::parse(FileReader &reader, qint64 fileSize, MovieAtom *movie,
                        quint64 *movieOffset)
{
    FileBuffer buffer;
    qint64 offset = 0;
    quint64 size = 0;
    if (const Status status = findMovie(reader, buffer, fileSize, &offset, &size))
        return status;
    // Before anything is allocated for it.
    if (size > quint64(fileSize - offset))
        return report(FileReaderDomain, FileReaderError::AttemptToReadPastEof);
    if (const Status status = reader.read(buffer, offset, quint32(size)))
        return report(FileReaderDomain, status);
    if (const Status status = movie->read(buffer))
        return report(AtomDomain, status);
    *movieOffset = quint64(offset);
    return 0;
}

} // namespace Orvex::MovParserLib
