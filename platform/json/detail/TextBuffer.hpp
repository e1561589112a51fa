#pragma once

#include "platform/json/detail/SpareRoom.hpp"

#include <cstddef>
#include <cstring>
#include <string_view>
#include <utility>

namespace platform::inline v1::detail {

/// A text that grows at its end, in room that the thread keeps for its next one. Unlike a string it gives out room
/// before it is known how much of it will be used, and room that nothing was written to.
class TextBuffer {
public:
    TextBuffer() noexcept
        : room_(SpareRoom<char>::take()) {}

    TextBuffer(const TextBuffer&) = delete;
    TextBuffer& operator=(const TextBuffer&) = delete;

    ~TextBuffer() { SpareRoom<char>::give(std::move(room_)); }

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    [[nodiscard]] std::string_view view() const noexcept { return {room_.items.get(), size_}; }

    /// Where the next bytes go: there is room for `count` of them until the next call. `setEnd` says what became of it.
    [[nodiscard]] char* room(std::size_t count) {
        if (room_.capacity - size_ < count) grow(count);
        return room_.items.get() + size_;
    }

    /// Ends the text before `end`, which lies in the room given last.
    void setEnd(const char* end) noexcept { size_ = static_cast<std::size_t>(end - room_.items.get()); }

    void append(char c) {
        *room(1) = c;
        ++size_;
    }

    /// @param text none of this buffer
    void append(std::string_view text) {
        if (text.empty()) return;
        std::memcpy(room(text.size()), text.data(), text.size());
        size_ += text.size();
    }

    /// Drops all but the first bytes.
    void truncate(std::size_t size) noexcept { size_ = size; }

    void swap(TextBuffer& other) noexcept {
        std::swap(room_, other.room_);
        std::swap(size_, other.size_);
    }

private:
    void grow(std::size_t count);

    Room<char> room_;
    std::size_t size_ = 0;
};

} // namespace platform::inline v1::detail
