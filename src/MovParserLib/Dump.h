#pragma once

// Where the dumps of atoms go, line by line; made for one dump on the caller's thread.

#include "MovParserLib/FourCC.h"

#include <string>
#include <vector>

namespace Orvex::MovParserLib {

/// Writes lines, each behind "|\t" for every level of indentation: to the standard output with
/// "\n", or to the end of a text with "\r\n". A line for a text is formatted in 256 bytes and cut
/// to them.
class Dump
{
public:
    explicit Dump(int indent)
        : m_indent(indent)
    {}
    Dump(std::string *text, int indent)
        : m_text(text)
        , m_indent(indent)
    {}

    Dump deeper() const;
    void line(const char *format, ...) const Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);
    /// "label: abcd".
    void type(const char *label, FourCC value) const;
    /// @p label with the bytes behind it, each by @p format.
    void bytes(const std::string &label, const std::vector<quint8> &data, const char *format) const;

private:
    std::string *m_text = nullptr;
    int m_indent = 0;
};

/// Gathers short pieces to lines of bearable length.
class DumpRow
{
public:
    explicit DumpRow(const Dump &dump, std::string start = {})
        : m_dump(dump)
        , m_line(std::move(start))
    {}
    ~DumpRow() { flush(); }
    DumpRow(const DumpRow &) = delete;
    DumpRow &operator=(const DumpRow &) = delete;

    void piece(const char *format, ...) Q_ATTRIBUTE_FORMAT_PRINTF(2, 3);

private:
    void flush();

    const Dump &m_dump;
    std::string m_line;
};

} // namespace Orvex::MovParserLib
