#pragma once

// The visitors that read an atom's children by its list of them, for the two patterns of
// containers; each lives for one call.

#include "MovParserLib/AtomOf.h"

namespace Orvex::MovParserLib {

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
        return m_buffer.seek(m_bodyStart, FromStart) == 0 &&
               findChild(m_buffer, type, m_limit) == 0;
    }

    FileBuffer &m_buffer;
    qint64 m_bodyStart;
    quint64 m_limit;
    bool m_ok = true;
};

} // namespace Orvex::MovParserLib
