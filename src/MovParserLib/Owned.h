#pragma once

// An owning pointer that copies what it points to, for optional parts of atoms; a member of the
// atom that owns the part.

#include <memory>
#include <utility>

namespace Orvex::MovParserLib {

/// Null, or an object of T or of a class derived from it, copied by its true class.
template <class T>
class Owned
{
public:
    Owned() = default;
    Owned(const Owned &other)
        : m_copy(other.m_copy)
        , m_object(other.m_object ? other.m_copy(*other.m_object) : nullptr)
    {}
    Owned(Owned &&other) noexcept = default;
    Owned &operator=(Owned other) noexcept
    {
        std::swap(m_copy, other.m_copy);
        std::swap(m_object, other.m_object);
        return *this;
    }
    ~Owned() = default;

    /// An object of class @p U.
    template <class U = T, class... Arguments>
    static Owned make(Arguments &&...arguments)
    {
        Owned owned;
        owned.m_object = std::make_unique<U>(std::forward<Arguments>(arguments)...);
        owned.m_copy = [](const T &from) -> std::unique_ptr<T> {
            return std::make_unique<U>(static_cast<const U &>(from));
        };
        return owned;
    }

    void reset() { m_object.reset(); }
    T *get() const { return m_object.get(); }
    T *operator->() const { return m_object.get(); }
    T &operator*() const { return *m_object; }
    explicit operator bool() const { return bool(m_object); }

private:
    std::unique_ptr<T> (*m_copy)(const T &from) = nullptr;
    std::unique_ptr<T> m_object;
};

} // namespace Orvex::MovParserLib
