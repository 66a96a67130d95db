#pragma once

// Derives the duties of an atom class from its one list of fields; the base class of nearly every
// atom here. The definitions stand in AtomImpl.h, which only the sources of the families include.
//
// A class lists what it holds once, in the order of the format:
//   template <class Self, class Visitor> static void fields(Self &a, Visitor &v);
//   template <class Self, class Visitor> static void children(Self &a, Visitor &v);
// and reading, writing, size, copying and both dumps follow. Self is const for size and dumps.

#include "MovParserLib/MovAtom.h"
#include "MovParserLib/Owned.h"

namespace Orvex::MovParserLib {

/// How an atom looks for its children.
enum class Children {
    None,
    /// One after the other, each by its type; what nobody knows is kept.
    Sequential,
    /// For each known child the siblings are searched from the first; what nobody knows is skipped.
    Search,
};

/// @p Derived gives kType, kName (the name in its dump), and its lists.
template <class Derived, class Base, Children kPattern = Children::None>
class AtomOf : public Base
{
public:
    AtomOf()
        : Base(Derived::kType)
    {}

    using Base::read;
    using Base::operator=;

    /// Any failure gives ERROR_ATOM_READ_FAILED and puts the cursor back to the atom's start.
    [[nodiscard]] Status read(FileBuffer &buffer) override;
    [[nodiscard]] Status write(FileBuffer &buffer) override;
    MovAtom &operator=(const MovAtom &other) override;
    quint64 computeSize() const override;

    static bool accepts(FourCC type)
    {
        return type == Derived::kType || (Derived::kSecondType && type == Derived::kSecondType);
    }
    /// What an optional child becomes when the file lacks it.
    Derived blank() const { return Derived(); }
    /// Whether what was read may stand; a class that demands something hides this.
    bool isComplete() const { return true; }

    template <class Self, class Visitor>
    static void fields(Self &, Visitor &)
    {}
    template <class Self, class Visitor>
    static void children(Self &, Visitor &)
    {}

    /// What read() returns when the header shows another type.
    static constexpr Status kWrongTypeStatus = AtomError::AtomReadFailed;
    /// Another type of the same class, looked for when the first is not there.
    static constexpr FourCC kSecondType = 0;
    /// True where every type is welcome.
    static constexpr bool kAnyType = false;

protected:
    const char *dumpName() const override { return Derived::kName; }
    void dumpFields(const Dump &dump) const override;

private:
    Status readHead(FileBuffer &buffer);
};

} // namespace Orvex::MovParserLib
