#pragma once

#include <cstddef>
#include <new>
#include <type_traits>
#include <utility>

namespace platform::inline v1::detail {

/// A coder's container, held in place behind its interface: handing one out allocates nothing. It is created by the
/// coder and reaches its user by elision; it is never moved.
template <class Interface, std::size_t Size = 96>
class InPlace {
public:
    template <class Implementation, class... Arguments>
    explicit InPlace(std::in_place_type_t<Implementation>, Arguments&&... arguments) {
        static_assert(std::is_base_of_v<Interface, Implementation> && sizeof(Implementation) <= Size);
        static_assert(std::is_trivially_destructible_v<Implementation>, "its state belongs to the coder");
        ::new (static_cast<void*>(buffer_)) Implementation(std::forward<Arguments>(arguments)...);
    }

    InPlace(const InPlace&) = delete;
    InPlace& operator=(const InPlace&) = delete;

    [[nodiscard]] Interface& implementation() noexcept { return *std::launder(reinterpret_cast<Interface*>(buffer_)); }

    [[nodiscard]] const Interface& implementation() const noexcept {
        return *std::launder(reinterpret_cast<const Interface*>(buffer_));
    }

private:
    alignas(std::max_align_t) unsigned char buffer_[Size];
};

} // namespace platform::inline v1::detail
