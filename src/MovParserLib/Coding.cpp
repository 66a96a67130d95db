#include "MovParserLib/Coding.h"

#include <algorithm>

namespace Orvex::MovParserLib {

namespace {

/// Bytes from the cursor to the atom's end, 0 when the fields before have run over it.
quint64 bytesUpTo(const FileBuffer &buffer, qint64 end)
{
    return quint64(std::max<qint64>(0, end - buffer.position()));
}

template <class Container>
bool readRest(FileBuffer &buffer, quint64 count, Container *target)
{
    target->clear();
    if (count == 0)
        return true;
    const uchar *bytes = buffer.take(count);
    if (bytes)
        target->assign(bytes, bytes + count);
    return bytes != nullptr;
}

} // namespace

bool RawBlock::read(FileBuffer &buffer, qint64 end)
{
    return readRest(buffer, bytesUpTo(buffer, end), &bytes);
}

bool RawBlock::write(FileBuffer &buffer) const
{
    return buffer.write(bytes.data(), quint32(bytes.size())) == 0;
}

void RawBlock::dump(const Dump &dump, const char *label) const
{
    dump.bytes(std::string(label) + ": ", bytes, "%02X");
}

bool RawText::read(FileBuffer &buffer, qint64 end)
{
    return readRest(buffer, bytesUpTo(buffer, end), &text);
}

bool RawText::write(FileBuffer &buffer) const
{
    return buffer.write(text.data(), quint32(text.size())) == 0;
}

void RawText::dump(const Dump &dump, const char *label) const
{
    dump.line("%s: %s", label, text.c_str());
}

bool PascalText::read(FileBuffer &buffer, qint64 end)
{
    text.reset();
    const quint64 left = bytesUpTo(buffer, end);
    if (left == 0)
        return true;
    quint8 length = 0;
    return readBig(buffer, &length) == 0
        && readRest(buffer, std::min<quint64>(length, left - 1), &text.emplace());
}

bool PascalText::write(FileBuffer &buffer) const
{
    if (!text)
        return true;
    const std::string bytes = stored();
    return writeBig(buffer, quint8(bytes.size())) == 0
        && buffer.write(bytes.data(), quint32(bytes.size())) == 0;
}

void PascalText::dump(const Dump &dump, const char *label) const
{
    if (text)
        dump.line("%s: %s", label, text->c_str());
    else
        dump.line("No Textname Supplied");
}

} // namespace Orvex::MovParserLib
