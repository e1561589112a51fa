#include "platform/json/detail/TextBuffer.hpp"

#include <algorithm>

namespace platform::inline v1::detail {

void TextBuffer::grow(std::size_t count) {
    constexpr std::size_t smallest = 512;
    auto larger = Room<char>::of(std::max({2 * room_.capacity, size_ + count, smallest}));
    if (size_ > 0) std::memcpy(larger.items.get(), room_.items.get(), size_);
    room_ = std::move(larger);
}

} // namespace platform::inline v1::detail
