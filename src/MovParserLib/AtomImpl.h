#pragma once

// The definitions behind AtomOf.h and Coding.h; only the sources of the atom families include
// them, and each instantiates its classes once, at its end.

#include "MovParserLib/Coding.h"
#include "MovParserLib/FieldVisitors.h"

#include <QtGlobal>

#include <algorithm>

namespace Orvex::MovParserLib {

/// Reads children up to @p size bytes behind @p start by the sequential pattern.
template <class Holder>
bool readSequence(Holder &holder, FileBuffer &buffer, qint64 start, quint64 size)
{
    ClearChildren clear;
    Holder::children(holder, clear);
    while (quint64(buffer.position() - start) < size) {
        const qint64 before = buffer.position();
        TakeChild take(buffer);
        Holder::children(holder, take);
        if (take.status() == AtomError::ZeroSizeAtom)
            return true;
        if (take.status() || buffer.position() <= before)
            return false;
    }
    return true;
}

/// Reads children up to @p size bytes behind @p start by the search pattern.
template <class Holder>
bool readSearch(Holder &holder, FileBuffer &buffer, qint64 start, quint64 size)
{
    const quint64 consumed = quint64(buffer.position() - start);
    SearchChildren search(buffer, size > consumed ? size - consumed : 0);
    Holder::children(holder, search);
    return search.ok();
}

template <Children kPattern, class Holder>
bool readChildren(Holder &holder, FileBuffer &buffer, qint64 start, quint64 size)
{
    if constexpr (kPattern == Children::Sequential)
        return readSequence(holder, buffer, start, size);
    else if constexpr (kPattern == Children::Search)
        return readSearch(holder, buffer, start, size);
    else
        return true;
}

template <class Derived, class Base, Children kPattern>
Status AtomOf<Derived, Base, kPattern>::readHead(FileBuffer &buffer)
{
    if constexpr (Derived::kAnyType) {
        return Base::read(buffer);
    } else {
        const FourCC found = peekType(buffer);
        return Base::read(buffer, Derived::accepts(found) ? found : Derived::kType);
    }
}

template <class Derived, class Base, Children kPattern>
Status AtomOf<Derived, Base, kPattern>::read(FileBuffer &buffer)
{
    Derived &self = static_cast<Derived &>(*this);
    const qint64 start = buffer.position();
    if (const Status status = readHead(buffer))
        return status == AtomError::WrongAtomType ? Derived::kWrongTypeStatus
                                                  : Status(AtomError::AtomReadFailed);
    const qint64 end = start + qint64(std::min(this->size, quint64(buffer.dataSize())));
    ReadFields visitor(buffer, end);
    Derived::fields(self, visitor);
    if (visitor.ok() && readChildren<kPattern>(self, buffer, start, this->size)
        && self.isComplete() && seekAtomEnd(buffer, start, this->size) == 0)
        return AtomError::Okay;
    buffer.seek(start, FromStart);
    return AtomError::AtomReadFailed;
}

template <class Derived, class Base, Children kPattern>
Status AtomOf<Derived, Base, kPattern>::write(FileBuffer &buffer)
{
    Derived &self = static_cast<Derived &>(*this);
    const qint64 start = buffer.position();
    if (Base::write(buffer))
        return AtomError::AtomWriteFailed;
    WriteFields visitor(buffer);
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
    if (!visitor.ok())
        return AtomError::AtomWriteFailed;
    Q_ASSERT(quint64(buffer.position() - start) == this->size);
    Q_UNUSED(start)
    return AtomError::Okay;
}

template <class Derived, class Base, Children kPattern>
MovAtom &AtomOf<Derived, Base, kPattern>::operator=(const MovAtom &other)
{
    if (const auto *same = dynamic_cast<const Derived *>(&other))
        static_cast<Derived &>(*this) = *same;
    else
        Base::operator=(other);
    return *this;
}

template <class Derived, class Base, Children kPattern>
quint64 AtomOf<Derived, Base, kPattern>::computeSize() const
{
    const Derived &self = static_cast<const Derived &>(*this);
    MeasureFields visitor;
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
    return Base::computeSize() + visitor.size();
}

template <class Derived, class Base, Children kPattern>
void AtomOf<Derived, Base, kPattern>::dumpFields(const Dump &dump) const
{
    const Derived &self = static_cast<const Derived &>(*this);
    Base::dumpFields(dump);
    PrintFields visitor(dump);
    Derived::fields(self, visitor);
    Derived::children(self, visitor);
}

// Rows of tables. They are visited by pointer, since a table may have millions.

class RowReader
{
public:
    explicit RowReader(const uchar *bytes)
        : m_bytes(bytes)
    {}
    template <class T>
    void number(T &value)
    {
        value = qFromBigEndian<T>(m_bytes);
        m_bytes += sizeof(T);
    }

private:
    const uchar *m_bytes;
};

class RowWriter
{
public:
    explicit RowWriter(uchar *bytes)
        : m_bytes(bytes)
    {}
    template <class T>
    void number(T value)
    {
        qToBigEndian<T>(value, m_bytes);
        m_bytes += sizeof(T);
    }

private:
    uchar *m_bytes;
};

class RowMeasure
{
public:
    template <class T>
    void number(T)
    {
        m_size += sizeof(T);
    }
    quint32 size() const { return m_size; }

private:
    quint32 m_size = 0;
};

class RowText
{
public:
    template <class T>
    void number(T value)
    {
        m_text += m_text.empty() ? "" : ",";
        m_text += std::to_string(static_cast<int>(value));
    }
    const std::string &text() const { return m_text; }

private:
    std::string m_text;
};

template <class Row, class Visitor>
void visitRow(Row &row, Visitor &visitor)
{
    if constexpr (std::is_integral_v<std::remove_const_t<Row>>)
        visitor.number(row);
    else
        std::remove_const_t<Row>::fields(row, visitor);
}

template <class Row>
quint32 rowSize()
{
    const Row row{};
    RowMeasure measure;
    visitRow(row, measure);
    return measure.size();
}

template <class Row>
bool readRows(FileBuffer &buffer, qint64 end, quint64 count, std::vector<Row> *rows)
{
    rows->clear();
    const quint64 width = rowSize<Row>();
    const qint64 left = end - buffer.position();
    if (count == 0)
        return true;
    if (left < 0 || count > quint64(left) / width)
        return false;
    const uchar *bytes = buffer.take(count * width);
    if (!bytes)
        return false;
    rows->resize(size_t(count)); // The bytes are there, so the count is no claim any more.
    for (Row &row : *rows) {
        RowReader reader(bytes);
        visitRow(row, reader);
        bytes += width;
    }
    return true;
}

template <class Row>
bool writeRows(FileBuffer &buffer, const std::vector<Row> &rows)
{
    const quint32 width = rowSize<Row>();
    std::array<uchar, 64> bytes;
    for (const Row &row : rows) {
        RowWriter writer(bytes.data());
        visitRow(row, writer);
        if (buffer.write(bytes.data(), width))
            return false;
    }
    return true;
}

template <class Row>
void dumpRows(const Dump &dump, const char *label, const std::vector<Row> &rows)
{
    dump.line("%s", label);
    DumpRow line(dump);
    for (const Row &row : rows) {
        if constexpr (std::is_same_v<Row, quint64>) {
            line.piece("%012llu  ", static_cast<unsigned long long>(row));
        } else if constexpr (std::is_integral_v<Row>) {
            line.piece("%010d  ", static_cast<int>(row));
        } else {
            RowText text;
            visitRow(row, text);
            line.piece("%s  ", text.text().c_str());
        }
    }
}

template <class Row>
bool Table<Row>::read(FileBuffer &buffer, qint64 end)
{
    quint32 count = 0;
    rows.clear();
    return readBig(buffer, &count) == 0 && readRows(buffer, end, count, &rows);
}

template <class Row>
bool Table<Row>::write(FileBuffer &buffer) const
{
    return writeBig(buffer, quint32(rows.size())) == 0 && writeRows(buffer, rows);
}

template <class Row>
quint64 Table<Row>::size() const
{
    return sizeof(quint32) + quint64(rows.size()) * rowSize<Row>();
}

template <class Row>
void Table<Row>::dump(const Dump &dump, const char *label) const
{
    dump.line("NumberOfEntries: %d", int(rows.size()));
    dumpRows(dump, label, rows);
}

} // namespace Orvex::MovParserLib
