#pragma once

#include <Kernel/Counted.h>

namespace Kernel {

/// A borrowed pointer that says so: it owns nothing, and what it points to outlives its use. Null is allowed.
template <typename T>
class NonCounted
{
public:
    NonCounted() noexcept = default;
    NonCounted(std::nullptr_t) noexcept {}
    NonCounted(T* pointer) noexcept : object(pointer) {}
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    NonCounted(const NonCounted<U>& other) noexcept : object(other.Get())
    {}
    template <typename U, typename = std::enable_if_t<std::is_convertible_v<U*, T*>>>
    NonCounted(const Counted<U>& other) noexcept : object(other.Get())
    {}

    T* Get() const noexcept { return object; }
    T* operator->() const noexcept { return object; }
    T& operator*() const noexcept { return *object; }
    explicit operator bool() const noexcept { return object != nullptr; }

    friend bool operator==(const NonCounted& a, const NonCounted& b) noexcept { return a.object == b.object; }

private:
    T* object = nullptr;
};

} // namespace Kernel
