#include "MovParserLib/Dump.h"

#include <algorithm>
#include <cstdarg>
#include <cstdio>

namespace Orvex::MovParserLib {

namespace {
constexpr size_t kLineLength = 160;
}

Dump Dump::deeper() const
{
    Dump result(*this);
    ++result.m_indent;
    return result;
}

void Dump::line(const char *format, ...) const
{
    va_list arguments;
    va_start(arguments, format);
    if (m_text) {
        char formatted[256];
        const int length = std::vsnprintf(formatted, sizeof formatted, format, arguments);
        for (int i = 0; i < m_indent; ++i)
            m_text->append("|\t");
        m_text->append(formatted, size_t(std::clamp(length, 0, int(sizeof formatted) - 1)));
        m_text->append("\r\n");
    } else {
        for (int i = 0; i < m_indent; ++i)
            std::fputs("|\t", stdout);
        std::vprintf(format, arguments);
        std::fputc('\n', stdout);
    }
    va_end(arguments);
}

void Dump::type(const char *label, FourCC value) const
{
    line("%s: %c%c%c%c", label, int(value >> 24), int(value >> 16 & 0xFF), int(value >> 8 & 0xFF),
         int(value & 0xFF));
}

void Dump::bytes(const std::string &label, const std::vector<quint8> &data, const char *format) const
{
    DumpRow row(*this, label);
    for (const quint8 byte : data) {
        char piece[8];
        std::snprintf(piece, sizeof piece, format, byte);
        row.piece("%s", piece);
    }
}

void DumpRow::piece(const char *format, ...)
{
    char formatted[64];
    va_list arguments;
    va_start(arguments, format);
    std::vsnprintf(formatted, sizeof formatted, format, arguments);
    va_end(arguments);
    m_line += formatted;
    if (m_line.size() >= kLineLength)
        flush();
}

void DumpRow::flush()
{
    if (!m_line.empty())
        m_dump.line("%s", m_line.c_str());
    m_line.clear();
}

} // namespace Orvex::MovParserLib
