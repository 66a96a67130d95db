#include "MovParserLib/MovieAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

namespace {

// Where no atoms overlap every byte is read about once, and a header is looked at by the at most
// nine searches of its parent. Overlapping atoms get this far and no further.
constexpr quint64 kReadsOfEachByte = 4;
constexpr quint64 kVisitsForEachByte = 8;
constexpr quint64 kVisitsAtLeast = 64;

} // namespace

Status MovieAtom::read(FileBuffer &buffer)
{
    header = MovieHeaderAtom();
    const auto size = quint64(buffer.dataSize());
    buffer.limitParsing(kReadsOfEachByte * size, kVisitsForEachByte * size + kVisitsAtLeast);
    const Status status = AtomOf::read(buffer);
    buffer.unlimitParsing();
    return status;
}

template class AtomOf<MovieHeaderAtom, MovFullDatedAtom>;
template class AtomOf<MovieAtom, MovAtom, Children::Sequential>;

} // namespace Orvex::MovParserLib
