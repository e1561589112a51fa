#pragma once

#include <cstddef>
#include <span>

namespace deque::inline v1 {

/// A stretch of slots, which may wrap past the end of the storage, as at most two contiguous runs in order. `second` is
/// empty unless the stretch wraps.
///
/// The runs are borrowed: they are valid as long as references to the elements are.
template <class Element>
struct WrappedBuffer {
    std::span<Element> first{};
    std::span<Element> second{};

    [[nodiscard]] constexpr std::size_t size() const noexcept { return first.size() + second.size(); }
};

} // namespace deque::inline v1
