#include "MovParserLib/MovieAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

namespace {

// Where no atoms overlap every byte is read about once, and a header, which takes eight bytes, is
// looked at by the at most ten searches of its parent and by its own reading. Overlapping atoms get
// this far and no further.
constexpr quint64 kReadsOfEachByte = 4;
constexpr quint64 kVisitsForEachByte = 2;
constexpr quint64 kVisitsAtLeast = 64;

} // namespace

Status MovieAtom::read(FileBuffer &buffer)
{
    header = MovieHeaderAtom();
    const auto size = quint64(buffer.dataSize());
    buffer.limitParsing(kReadsOfEachByte * size, kVisitsForEachByte * size + kVisitsAtLeast);
    const qint64 start = buffer.position();
    Status status = AtomOf::read(buffer);
    if (buffer.parseLimitReached()) {
        buffer.seek(start, FromStart);
        status = AtomError::AtomReadFailed;
    }
    buffer.unlimitParsing();
    return status;
}

template class AtomOf<MovieHeaderAtom, MovFullDatedAtom>;
template class AtomOf<MovieAtom, MovAtom, Children::Sequential>;

} // namespace Orvex::MovParserLib
