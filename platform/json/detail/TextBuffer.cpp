#include "platform/json/detail/TextBuffer.hpp"

#include <algorithm>

namespace platform::inline v1::detail {

namespace {

constexpr std::size_t smallestRoom = 512;

/// In bytes. Giving a large block back to the system and taking it anew, page by page, would cost a third of the time
/// of encoding a text that fills it.
constexpr std::size_t largestSpareRoom = std::size_t{2} * 1024 * 1024;

} // namespace

TextBuffer::TextBuffer() noexcept
    : room_(std::exchange(spareRoom(), Room{})) {}

TextBuffer::~TextBuffer() {
    // Of two texts that lived at once, the thread keeps the larger room.
    Room& spare = spareRoom();
    if (room_.capacity <= largestSpareRoom && room_.capacity > spare.capacity) spare = std::move(room_);
}

TextBuffer::Room& TextBuffer::spareRoom() noexcept {
    static thread_local Room room;
    return room;
}

void TextBuffer::grow(std::size_t count) {
    const std::size_t capacity = std::max({2 * room_.capacity, size_ + count, smallestRoom});
    Room larger{std::make_unique_for_overwrite<char[]>(capacity), capacity};
    if (size_ > 0) std::memcpy(larger.bytes.get(), room_.bytes.get(), size_);
    room_ = std::move(larger);
}

} // namespace platform::inline v1::detail
