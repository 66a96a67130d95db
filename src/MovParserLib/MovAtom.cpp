#include "MovParserLib/MovAtom.h"

#include <cstring>
#include <limits>

namespace Orvex::MovParserLib {

namespace {

constexpr quint64 kLargest32 = std::numeric_limits<quint32>::max();
constexpr quint32 kSmallHeader = 8;
constexpr quint32 kLargeHeader = 16;

Status restore(FileBuffer &buffer, qint64 start, Status status)
{
    buffer.seek(start, FromStart);
    return status;
}

} // namespace

MovAtom::~MovAtom() = default;
MovAtom &MovAtom::operator=(const MovAtom &other) = default;
MovFullAtom &MovFullAtom::operator=(const MovFullAtom &other) = default;
MovFullDatedAtom &MovFullDatedAtom::operator=(const MovFullDatedAtom &other) = default;

Status MovAtom::readHeader(FileBuffer &buffer, const FourCC *expectedType)
{
    const qint64 start = buffer.position();
    quint32 shortSize = 0;
    FourCC found = 0;
    if (readBig(buffer, &shortSize) || readBig(buffer, &found))
        return restore(buffer, start, AtomError::AtomReadFailed);
    if (expectedType && found != *expectedType)
        return restore(buffer, start, AtomError::WrongAtomType);
    if (!expectedType && shortSize == 0)
        return restore(buffer, start, AtomError::ZeroSizeAtom);
    quint64 wholeSize = shortSize;
    if (shortSize == 1 && readBig(buffer, &wholeSize))
        return restore(buffer, start, AtomError::AtomReadFailed);
    // No atom is smaller than the header that says so.
    if (shortSize != 0 && wholeSize < quint64(buffer.position() - start))
        return restore(buffer, start, AtomError::AtomReadFailed);
    size = wholeSize;
    type = found;
    return AtomError::Okay;
}

Status MovAtom::read(FileBuffer &buffer, FourCC expectedType)
{
    return readHeader(buffer, &expectedType);
}

Status MovAtom::read(FileBuffer &buffer)
{
    return readHeader(buffer, nullptr);
}

Status MovAtom::write(FileBuffer &buffer)
{
    size = computeSize();
    // The wide header that a large payload asks for counts too.
    if (size > kLargest32)
        size = computeSize();
    const bool wide = size > kLargest32;
    if (writeBig(buffer, wide ? quint32(1) : quint32(size)) || writeBig(buffer, type)
        || (wide && writeBig(buffer, size)))
        return AtomError::AtomWriteFailed;
    return AtomError::Okay;
}

void MovAtom::print(int indent) const
{
    dumpTo(Dump(indent));
}

void MovAtom::print(std::string *text, int indent) const
{
    if (text)
        dumpTo(Dump(text, indent));
}

void MovAtom::dumpTo(const Dump &dump) const
{
    dump.line("***** %s Begin", dumpName());
    dumpFields(dump.deeper());
    dump.line("***** %s End", dumpName());
}

void MovAtom::dumpFields(const Dump &dump) const
{
    dump.line("Size: %llu", static_cast<unsigned long long>(size));
    dump.type("Type", type);
}

quint64 MovAtom::computeSize() const
{
    return size > kLargest32 ? kLargeHeader : kSmallHeader;
}

Status MovFullAtom::readTail(FileBuffer &buffer, qint64 start)
{
    if (readBig(buffer, &version) || buffer.read(flags, sizeof flags))
        return restore(buffer, start, AtomError::AtomReadFailed);
    return AtomError::Okay;
}

Status MovFullAtom::read(FileBuffer &buffer, FourCC expectedType)
{
    const qint64 start = buffer.position();
    if (const Status status = MovAtom::read(buffer, expectedType))
        return status;
    return readTail(buffer, start);
}

Status MovFullAtom::read(FileBuffer &buffer)
{
    const qint64 start = buffer.position();
    if (const Status status = MovAtom::read(buffer))
        return status;
    return readTail(buffer, start);
}

Status MovFullAtom::write(FileBuffer &buffer)
{
    if (MovAtom::write(buffer) || writeBig(buffer, version) || buffer.write(flags, sizeof flags))
        return AtomError::AtomWriteFailed;
    return AtomError::Okay;
}

void MovFullAtom::dumpFields(const Dump &dump) const
{
    MovAtom::dumpFields(dump);
    dump.line("Version: %d", version);
    dump.line("Flags: %02x %02x %02x", flags[0], flags[1], flags[2]);
}

Status MovFullDatedAtom::readTail(FileBuffer &buffer, qint64 start)
{
    if (readBig(buffer, &creationTime) || readBig(buffer, &modificationTime))
        return restore(buffer, start, AtomError::AtomReadFailed);
    return AtomError::Okay;
}

Status MovFullDatedAtom::read(FileBuffer &buffer, FourCC expectedType)
{
    const qint64 start = buffer.position();
    if (const Status status = MovFullAtom::read(buffer, expectedType))
        return status;
    return readTail(buffer, start);
}

Status MovFullDatedAtom::read(FileBuffer &buffer)
{
    const qint64 start = buffer.position();
    if (const Status status = MovFullAtom::read(buffer))
        return status;
    return readTail(buffer, start);
}

Status MovFullDatedAtom::write(FileBuffer &buffer)
{
    if (MovFullAtom::write(buffer) || writeBig(buffer, creationTime)
        || writeBig(buffer, modificationTime))
        return AtomError::AtomWriteFailed;
    return AtomError::Okay;
}

void MovFullDatedAtom::dumpFields(const Dump &dump) const
{
    MovFullAtom::dumpFields(dump);
    dump.line("Creation Time: %u", creationTime);
    dump.line("Modification Time: %u", modificationTime);
}

Status UnparsedAtom::read(FileBuffer &buffer)
{
    const qint64 start = buffer.position();
    payload.clear();
    quint32 shortSize = 0;
    // Four zero bytes may end a list where no type follows any more.
    if (buffer.peek(&shortSize, sizeof shortSize) && shortSize == 0)
        return AtomError::ZeroSizeAtom;
    if (const Status status = MovAtom::read(buffer))
        return status;
    const quint64 payloadSize = size - quint64(buffer.position() - start);
    const uchar *bytes = buffer.take(payloadSize);
    if (payloadSize > 0 && !bytes)
        return restore(buffer, start, AtomError::AtomReadFailed);
    payload.assign(bytes, bytes + payloadSize);
    return AtomError::Okay;
}

Status UnparsedAtom::write(FileBuffer &buffer)
{
    if (MovAtom::write(buffer) || buffer.write(payload.data(), quint32(payload.size())))
        return AtomError::AtomWriteFailed;
    return AtomError::Okay;
}

MovAtom &UnparsedAtom::operator=(const MovAtom &other)
{
    MovAtom::operator=(other);
    if (const auto *same = dynamic_cast<const UnparsedAtom *>(&other))
        payload = same->payload;
    return *this;
}

Status UnparsedAtom::getData(void *block, quint64 capacity, quint64 *written) const
{
    if (!written)
        return AtomError::InvalidArg;
    *written = 0;
    if (block && capacity < payload.size())
        return AtomError::InvalidArg;
    if (block && !payload.empty())
        std::memcpy(block, payload.data(), payload.size());
    *written = payload.size();
    return AtomError::Okay;
}

void UnparsedAtom::dumpFields(const Dump &dump) const
{
    MovAtom::dumpFields(dump);
    dump.line("Payload Size: %llu", static_cast<unsigned long long>(payload.size()));
}

FourCC peekType(FileBuffer &buffer)
{
    uchar header[kSmallHeader];
    if (!buffer.visit() || !buffer.peek(header, sizeof header)
        || qFromBigEndian<quint32>(header) == 0)
        return 0;
    return qFromBigEndian<FourCC>(header + 4);
}

Status findChild(FileBuffer &buffer, FourCC type, quint64 limit)
{
    const qint64 start = buffer.position();
    while (quint64(buffer.position() - start) < limit) {
        uchar header[kLargeHeader];
        if (!buffer.visit() || !buffer.peek(header, kSmallHeader))
            break;
        quint64 size = qFromBigEndian<quint32>(header);
        if (size == 0)
            break;
        quint32 consumed = kSmallHeader;
        if (size == 1) {
            if (!buffer.peek(header, kLargeHeader))
                break;
            size = qFromBigEndian<quint64>(header + kSmallHeader);
            consumed = kLargeHeader;
        }
        // A size that cannot hold its own header would step nowhere, or backwards.
        if (size < consumed)
            break;
        if (qFromBigEndian<FourCC>(header + 4) == type)
            return AtomError::Okay;
        if (size >= quint64(buffer.remaining()))
            break;
        buffer.seek(qint64(size), FromCurrent);
    }
    return restore(buffer, start, AtomError::AtomNotFound);
}

Status seekAtomEnd(FileBuffer &buffer, qint64 start, quint64 size)
{
    if (size > quint64(buffer.dataSize()) || buffer.seek(start + qint64(size), FromStart))
        return AtomError::AtomReadFailed;
    return AtomError::Okay;
}

} // namespace Orvex::MovParserLib
