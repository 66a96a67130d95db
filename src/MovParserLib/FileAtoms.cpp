#include "MovParserLib/FileAtoms.h"

#include "MovParserLib/AtomImpl.h"

namespace Orvex::MovParserLib {

Status FtypAtom::write(FileBuffer &buffer)
{
    if (MovAtom::write(buffer) || writeBig(buffer, majorBrand) || writeBig(buffer, minorVersion)
        || !writeRows(buffer, compatibleBrands))
        return AtomError::AtomWriteFailed;
    return AtomError::Okay;
}

quint64 FtypAtom::computeSize() const
{
    return MovAtom::computeSize() + 8 + 4 * compatibleBrands.size();
}

bool FreeSpace::read(FileBuffer &buffer, qint64 end)
{
    payloadSize = quint64(std::max<qint64>(0, end - buffer.position()));
    return buffer.skip(payloadSize) == 0;
}

bool FreeSpace::write(FileBuffer &buffer) const
{
    if (payloadSize > quint64(buffer.remaining()))
        return false;
    bool ok = true;
    for (quint64 i = 0; ok && i < payloadSize; ++i)
        ok = writeBig(buffer, quint8(0)) == 0;
    return ok;
}

void FreeSpace::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %llu", label, static_cast<unsigned long long>(payloadSize));
}

template class AtomOf<FreeAtom, MovAtom>;
template class AtomOf<WideAtom, MovAtom>;
template class AtomOf<MdatAtomPrefix, MovAtom>;

} // namespace Orvex::MovParserLib
