#pragma once

// Values with a coding of their own that several atoms hold: tables, texts, raw blocks. Each is a
// member of its atom and knows how to be read, written, measured and dumped.
//
// read() gets the position where its atom ends; it returns false when the bytes are not there.

#include "MovParserLib/Dump.h"
#include "MovParserLib/FileBuffer.h"

#include <optional>
#include <string>
#include <vector>

namespace Orvex::MovParserLib {

/// A 32-bit count and that many rows. The rows must lie inside the atom; the memory follows the
/// bytes that are there, never the count alone. Row is an integer or a class with fields().
template <class Row>
struct Table
{
    std::vector<Row> rows;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const;
    void dump(const Dump &dump, const char *label) const;
};

/// Rows without a count in front, as many as were announced elsewhere.
template <class Row>
bool readRows(FileBuffer &buffer, qint64 end, quint64 count, std::vector<Row> *rows);
template <class Row>
bool writeRows(FileBuffer &buffer, const std::vector<Row> &rows);
template <class Row>
void dumpRows(const Dump &dump, const char *label, const std::vector<Row> &rows);

/// Everything up to the atom's end.
struct RawBlock
{
    std::vector<quint8> bytes;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return bytes.size(); }
    /// In hexadecimal.
    void dump(const Dump &dump, const char *label) const;
};

/// Everything up to the atom's end, as text.
struct RawText
{
    std::string text;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return text.size(); }
    void dump(const Dump &dump, const char *label) const;
};

/// A length byte and that many bytes at the end of an atom, or nothing. A length that the atom
/// does not hold is cut to it: text entries of other makers carry a font table there.
struct PascalText
{
    std::optional<std::string> text;

    bool read(FileBuffer &buffer, qint64 end);
    bool write(FileBuffer &buffer) const;
    quint64 size() const { return text ? 1 + stored().size() : 0; }
    /// "label: text", or "No Textname Supplied".
    void dump(const Dump &dump, const char *label) const;

private:
    std::string stored() const { return text->substr(0, 255); }
};

} // namespace Orvex::MovParserLib
