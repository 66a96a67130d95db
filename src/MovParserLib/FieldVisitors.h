#pragma once

// The visitors that turn an atom's list of fields into its duties; each lives for one call. Only
// the sources of the atom families and the tests include this.
//
// What a list may say of a field:
//   number, numbers, bytes   integers in big-endian order, one or an array
//   fixed                    a fixed-point number with that many bits of fraction
//   type, real               a four-character code, a 64-bit floating-point number
//   zeros                    bytes without meaning, skipped and written as 0
//   printed                  a value of the dump only
//   coded                    a value with a coding of its own (Coding.h)
// and of a child:
//   required, optional       one by value or owned; found or not
//   first                    the child that must stand in front
//   defaulted                printed always, written only when it was found or set
//   list, kept, any          all of one class, all that nobody knows, one of any class

#include "MovParserLib/AtomOf.h"

#include <array>
#include <cmath>
#include <cstring>
#include <type_traits>

namespace Orvex::MovParserLib {

/// Fills the fields from a buffer.
class ReadFields
{
public:
    static constexpr bool kReads = true;

    ReadFields(FileBuffer &buffer, qint64 end)
        : m_buffer(buffer)
        , m_end(end)
    {}

    bool ok() const { return m_ok; }

    template <class T>
    void number(const char *, T &value)
    {
        m_ok = m_ok && readBig(m_buffer, &value) == 0;
    }
    template <class T, size_t N>
    void numbers(const char *label, std::array<T, N> &values)
    {
        for (T &value : values)
            number(label, value);
    }
    template <size_t N>
    void bytes(const char *, std::array<quint8, N> &values)
    {
        m_ok = m_ok && m_buffer.read(values.data(), N) == 0;
    }
    template <class T>
    void fixed(const char *label, T &value, int)
    {
        number(label, value);
    }
    void type(const char *label, FourCC &value) { number(label, value); }
    void real(const char *label, double &value)
    {
        quint64 bits = 0;
        number(label, bits);
        std::memcpy(&value, &bits, sizeof value);
    }
    void zeros(quint32 count) { m_ok = m_ok && m_buffer.take(count); }
    template <class T>
    void printed(const char *, const T &)
    {}
    template <class T>
    void coded(const char *, T &value)
    {
        m_ok = m_ok && value.read(m_buffer, m_end);
    }

private:
    FileBuffer &m_buffer;
    qint64 m_end;
    bool m_ok = true;
};

/// Writes fields and children to a buffer; children take their computed size while at it.
class WriteFields
{
public:
    static constexpr bool kReads = false;

    explicit WriteFields(FileBuffer &buffer)
        : m_buffer(buffer)
    {}

    bool ok() const { return m_ok; }

    template <class T>
    void number(const char *, T value)
    {
        m_ok = m_ok && writeBig(m_buffer, value) == 0;
    }
    template <class T, size_t N>
    void numbers(const char *label, const std::array<T, N> &values)
    {
        for (const T value : values)
            number(label, value);
    }
    template <size_t N>
    void bytes(const char *, const std::array<quint8, N> &values)
    {
        m_ok = m_ok && m_buffer.write(values.data(), N) == 0;
    }
    template <class T>
    void fixed(const char *label, T value, int)
    {
        number(label, value);
    }
    void type(const char *label, FourCC value) { number(label, value); }
    void real(const char *label, double value)
    {
        quint64 bits = 0;
        std::memcpy(&bits, &value, sizeof bits);
        number(label, bits);
    }
    void zeros(quint32 count)
    {
        for (quint32 i = 0; i < count; ++i)
            number("", quint8(0));
    }
    template <class T>
    void printed(const char *, const T &)
    {}
    template <class T>
    void coded(const char *, const T &value)
    {
        m_ok = m_ok && value.write(m_buffer);
    }

    template <class T>
    void required(T &child)
    {
        m_ok = m_ok && child.write(m_buffer) == 0;
    }
    template <class T>
    void first(T &child)
    {
        required(child);
    }
    template <class T>
    void optional(T &child)
    {
        required(child);
    }
    template <class T>
    void optional(Owned<T> &child)
    {
        if (child)
            required(*child);
    }
    template <class T, class Factory>
    void optional(Owned<T> &child, const Factory &)
    {
        optional(child);
    }
    template <class T>
    void defaulted(T &child, const bool &present)
    {
        if (present)
            required(child);
    }
    template <class T>
    void list(std::vector<Owned<T>> &children)
    {
        for (Owned<T> &child : children)
            required(*child);
    }
    void kept(UnparsedMap &children)
    {
        for (auto &entry : children)
            required(entry.second);
    }
    template <class Factory>
    void any(Owned<MovAtom> &child, const Factory &)
    {
        optional(child);
    }

private:
    FileBuffer &m_buffer;
    bool m_ok = true;
};

/// Adds up the bytes that WriteFields would write.
class MeasureFields
{
public:
    static constexpr bool kReads = false;

    quint64 size() const { return m_size; }

    template <class T>
    void number(const char *, T)
    {
        m_size += sizeof(T);
    }
    template <class T, size_t N>
    void numbers(const char *, const std::array<T, N> &)
    {
        m_size += N * sizeof(T);
    }
    template <size_t N>
    void bytes(const char *, const std::array<quint8, N> &)
    {
        m_size += N;
    }
    template <class T>
    void fixed(const char *, T, int)
    {
        m_size += sizeof(T);
    }
    void type(const char *, FourCC) { m_size += sizeof(FourCC); }
    void real(const char *, double) { m_size += sizeof(quint64); }
    void zeros(quint32 count) { m_size += count; }
    template <class T>
    void printed(const char *, const T &)
    {}
    template <class T>
    void coded(const char *, const T &value)
    {
        m_size += value.size();
    }

    template <class T>
    void required(const T &child)
    {
        m_size += child.computeSize();
    }
    template <class T>
    void first(const T &child)
    {
        required(child);
    }
    template <class T>
    void optional(const T &child)
    {
        required(child);
    }
    template <class T>
    void optional(const Owned<T> &child)
    {
        if (child)
            required(*child);
    }
    template <class T, class Factory>
    void optional(const Owned<T> &child, const Factory &)
    {
        optional(child);
    }
    template <class T>
    void defaulted(const T &child, const bool &present)
    {
        if (present)
            required(child);
    }
    template <class T>
    void list(const std::vector<Owned<T>> &children)
    {
        for (const Owned<T> &child : children)
            required(*child);
    }
    void kept(const UnparsedMap &children)
    {
        for (const auto &entry : children)
            required(entry.second);
    }
    template <class Factory>
    void any(const Owned<MovAtom> &child, const Factory &)
    {
        optional(child);
    }

private:
    quint64 m_size = 0;
};

/// Dumps fields and children: integers up to 32 bits by "%d", 64 bits by "%llu".
class PrintFields
{
public:
    static constexpr bool kReads = false;

    explicit PrintFields(const Dump &dump)
        : m_dump(dump)
    {}

    template <class T>
    void number(const char *label, T value)
    {
        if constexpr (sizeof(T) == sizeof(quint64))
            m_dump.line("%s: %llu", label, static_cast<unsigned long long>(value));
        else
            m_dump.line("%s: %d", label, static_cast<int>(value));
    }
    template <class T, size_t N>
    void numbers(const char *label, const std::array<T, N> &values)
    {
        DumpRow row(m_dump, std::string(label) + ":");
        for (const T value : values)
            row.piece(" %d", static_cast<int>(value));
    }
    template <size_t N>
    void bytes(const char *label, const std::array<quint8, N> &values)
    {
        m_dump.bytes(std::string(label) + ": ", {values.begin(), values.end()}, "%d");
    }
    template <class T>
    void fixed(const char *label, T value, int fractionBits)
    {
        m_dump.line("%s: %f", label, std::ldexp(double(value), -fractionBits));
    }
    void type(const char *label, FourCC value) { m_dump.type(label, value); }
    void real(const char *label, double value) { m_dump.line("%s: %f", label, value); }
    void zeros(quint32) {}
    template <class T>
    void printed(const char *label, const T &value)
    {
        number(label, value);
    }
    template <class T>
    void coded(const char *label, const T &value)
    {
        value.dump(m_dump, label);
    }

    void required(const MovAtom &child) { child.dumpTo(m_dump); }
    template <class T>
    void first(const T &child)
    {
        required(child);
    }
    template <class T>
    void optional(const T &child)
    {
        required(child);
    }
    template <class T>
    void optional(const Owned<T> &child)
    {
        if (child)
            optional(*child);
    }
    template <class T, class Factory>
    void optional(const Owned<T> &child, const Factory &)
    {
        optional(child);
    }
    template <class T>
    void defaulted(const T &child, const bool &)
    {
        optional(child);
    }
    template <class T>
    void list(const std::vector<Owned<T>> &children)
    {
        for (const Owned<T> &child : children)
            optional(*child);
    }
    void kept(const UnparsedMap &children)
    {
        for (const auto &entry : children)
            optional(entry.second);
    }
    template <class Factory>
    void any(const Owned<MovAtom> &child, const Factory &)
    {
        optional(child);
    }

private:
    const Dump &m_dump;
};

/// Empties what a repeated read fills by adding; parts held by value are reused.
class ClearChildren
{
public:
    static constexpr bool kReads = true;

    template <class T>
    void optional(T &)
    {}
    template <class T>
    void optional(Owned<T> &child)
    {
        child.reset();
    }
    template <class T>
    void list(std::vector<Owned<T>> &children)
    {
        children.clear();
    }
    void kept(UnparsedMap &children) { children.clear(); }
    template <class Factory>
    void any(Owned<MovAtom> &child, const Factory &)
    {
        child.reset();
    }
};

/// Reads the one child at the cursor into the member of the list that takes its type.
class TakeChild
{
public:
    static constexpr bool kReads = true;

    explicit TakeChild(FileBuffer &buffer)
        : m_buffer(buffer)
        , m_type(peekType(buffer))
    {}

    Status status() const { return m_status; }

    template <class T>
    void optional(T &child)
    {
        if (claim(T::accepts(m_type)))
            m_status = child.read(m_buffer);
    }
    template <class T>
    void optional(Owned<T> &slot)
    {
        if (claim(T::accepts(m_type)))
            readInto(slot, Owned<T>::make());
    }
    template <class T>
    void list(std::vector<Owned<T>> &children)
    {
        if (!claim(T::accepts(m_type)))
            return;
        children.push_back(Owned<T>::make());
        m_status = children.back()->read(m_buffer);
        if (m_status)
            children.pop_back();
    }
    void kept(UnparsedMap &children)
    {
        if (!claim(true))
            return;
        UnparsedAtom atom;
        m_status = atom.read(m_buffer);
        // Of several of one type the first stays.
        if (m_status == 0)
            children.emplace(atom.type, std::move(atom));
    }
    template <class Factory>
    void any(Owned<MovAtom> &slot, const Factory &factory)
    {
        if (claim(true))
            readInto(slot, factory(m_type));
    }

private:
    bool claim(bool accepted)
    {
        if (m_claimed || !accepted)
            return false;
        m_claimed = true;
        return true;
    }
    template <class T>
    void readInto(Owned<T> &slot, Owned<T> made)
    {
        m_status = made->read(m_buffer);
        if (m_status == AtomError::ZeroSizeAtom)
            return;
        slot = m_status ? Owned<T>() : std::move(made);
    }

    FileBuffer &m_buffer;
    FourCC m_type;
    Status m_status = AtomError::Okay;
    bool m_claimed = false;
};

/// Finds and reads each child of the list among the siblings that begin at the cursor.
class SearchChildren
{
public:
    static constexpr bool kReads = true;

    /// @p limit bounds the search from the cursor on.
    SearchChildren(FileBuffer &buffer, quint64 limit)
        : m_buffer(buffer)
        , m_bodyStart(buffer.position())
        , m_limit(limit)
    {}

    bool ok() const { return m_ok; }

    template <class T>
    void required(T &child)
    {
        m_ok = m_ok && find<T>() && child.read(m_buffer) == 0;
    }
    template <class T>
    void first(T &child)
    {
        m_ok = m_ok && m_buffer.seek(m_bodyStart, FromStart) == 0 && child.read(m_buffer) == 0;
    }
    template <class T>
    void optional(T &child)
    {
        if (m_ok && find<T>())
            m_ok = child.read(m_buffer) == 0;
        else
            child = child.blank();
    }
    template <class T>
    void optional(Owned<T> &slot)
    {
        optional(slot, [] { return Owned<T>::make(); });
    }
    /// @p factory may return null: then the child is not wanted.
    template <class T, class Factory>
    void optional(Owned<T> &slot, const Factory &factory)
    {
        slot.reset();
        if (!m_ok || !find<T>())
            return;
        Owned<T> made = factory();
        if (!made)
            return;
        m_ok = made->read(m_buffer) == 0;
        if (m_ok)
            slot = std::move(made);
    }
    template <class T>
    void defaulted(T &child, bool &present)
    {
        child = child.blank();
        present = m_ok && find<T>();
        if (present)
            m_ok = child.read(m_buffer) == 0;
    }

private:
    template <class T>
    bool find()
    {
        return find(T::kType) || (T::kSecondType && find(T::kSecondType));
    }
    bool find(FourCC type)
    {
        return m_buffer.seek(m_bodyStart, FromStart) == 0
            && findChild(m_buffer, type, m_limit) == 0;
    }

    FileBuffer &m_buffer;
    qint64 m_bodyStart;
    quint64 m_limit;
    bool m_ok = true;
};

} // namespace Orvex::MovParserLib
