#pragma once

#include <Kernel/Countable.h>

#include <cstddef>
#include <functional>
#include <type_traits>
#include <utility>

namespace Kernel {

/// Shared ownership of a `Countable`; null is allowed.
template <typename T>
class Counted
{
public:
    Counted() noexcept = default;
    Counted(std::nullptr_t) noexcept {}
    Counted(T* pointer) noexcept : object(pointer)
    {
        if (object) object->AddReference();
    }
    Counted(const Counted& other) noexcept : Counted(other.object) {}
    Counted(Counted&& other) noexcept : object(std::exchange(other.object, nullptr)) {}
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Counted(const Counted<U>& other) noexcept : Counted(static_cast<T*>(other.Get()))
    {}
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    Counted(Counted<U>&& other) noexcept : object(other.Detach())
    {}
    ~Counted()
    {
        if (object) object->ReleaseReference();
    }

    Counted& operator=(Counted other) noexcept
    {
        std::swap(object, other.object);
        return *this;
    }

    T* Get() const noexcept { return object; }
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    explicit operator bool() const noexcept { return object != nullptr; }

    /// Gives the reference away without releasing it.
    T* Detach() noexcept { return std::exchange(object, nullptr); }

private:
    T* object = nullptr;
};

template <typename T, typename U>
bool operator==(const Counted<T>& a, const Counted<U>& b) noexcept
{
    return a.Get() == b.Get();
}

template <typename T>
bool operator==(const Counted<T>& a, std::nullptr_t) noexcept
{
    return a.Get() == nullptr;
}

/// Makes a counted object in one step.
template <typename T, typename... Arguments>
Counted<T> MakeCounted(Arguments&&... arguments)
{
    return Counted<T>(new T(std::forward<Arguments>(arguments)...));
}

/// The object as `To` if it is one, else null.
template <typename To, typename From>
Counted<To> DynamicCast(const Counted<From>& from) noexcept
{
    return Counted<To>(dynamic_cast<To*>(from.Get()));
}

} // namespace Kernel

template <typename T>
struct std::hash<Kernel::Counted<T>>
{
    std::size_t operator()(const Kernel::Counted<T>& pointer) const noexcept { return std::hash<T*>{}(pointer.Get()); }
};
