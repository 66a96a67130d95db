#pragma once

// The walk over a file's top-level atoms to its movie; a base of MovFileReader, on the thread of
// whoever opens the file.

#include "MovParserLib/FileAccess.h"
#include "MovParserLib/MovieAtoms.h"

namespace Orvex::MovParserLib {

/// Finds the first moov of a file and parses it from memory. One small read is done for each
/// top-level atom, and mdat is never read: the size of the file does not matter.
class MovParser
{
public:
    /// Walks @p reader's file of @p fileSize bytes and reads its movie into @p movie; its offset
    /// in the file goes to @p movieOffset. Every failure has been reported when it returns:
    /// plain ERROR_MISSING_MOVIE_HEADER from the walk, otherwise a value with its domain.
    [[nodiscard]] static Status parse(FileReader &reader, qint64 fileSize, MovieAtom *movie,
                                      quint64 *movieOffset);

private:
    struct Header
    {
        quint64 size = 0; ///< 0 where no step can be made from it.
        FourCC type = 0;
    };

    static Status readHeader(FileReader &reader, FileBuffer &buffer, qint64 fileSize,
                             qint64 offset, Header *header);
    static Status findMovie(FileReader &reader, FileBuffer &buffer, qint64 fileSize,
                            qint64 *offset, quint64 *size);
};

} // namespace Orvex::MovParserLib
