#pragma once

#include "platform/Export.hpp"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace platform::inline v1 {

/// An immutable slice of bytes over shared, reference-counted storage: what flows through every body and stream.
///
/// Copies and slices share the storage and never copy bytes. A chunk made from a string or a vector takes it over
/// without copying its contents. Two chunks are equal when their bytes are.
///
/// Thread safety: distinct chunks may be used from different threads, also when they share storage.
class ByteChunk {
public:
    using value_type = std::uint8_t;
    using const_iterator = const std::uint8_t*;

    ByteChunk() noexcept = default;

    /// Takes over `bytes`.
    explicit ByteChunk(std::vector<std::uint8_t> bytes) {
        if (bytes.empty()) return;
        auto owner = std::make_shared<const std::vector<std::uint8_t>>(std::move(bytes));
        data_ = owner->data();
        size_ = owner->size();
        owner_ = std::move(owner);
    }

    /// Takes over `text`; the chunk holds its UTF-8 bytes.
    explicit ByteChunk(std::string text) {
        if (text.empty()) return;
        auto owner = std::make_shared<const std::string>(std::move(text));
        data_ = reinterpret_cast<const std::uint8_t*>(owner->data());
        size_ = owner->size();
        owner_ = std::move(owner);
    }

    /// Copies `text`, which need not outlive the call.
    explicit ByteChunk(std::string_view text)
        : ByteChunk(std::string(text)) {}

    /// Copies `text`, up to its terminating zero.
    explicit ByteChunk(const char* text)
        : ByteChunk(std::string(text)) {}

    /// Copies `bytes`, which need not outlive the call.
    explicit ByteChunk(std::span<const std::uint8_t> bytes)
        : ByteChunk(std::vector<std::uint8_t>(bytes.begin(), bytes.end())) {}

    /// A view of `size` bytes at `data` that `owner` keeps alive and nobody changes any more.
    ByteChunk(std::shared_ptr<const void> owner, const std::uint8_t* data, std::size_t size) noexcept
        : owner_(std::move(owner))
        , data_(data)
        , size_(size) {}

    [[nodiscard]] const std::uint8_t* data() const noexcept { return data_; }

    [[nodiscard]] std::size_t size() const noexcept { return size_; }

    [[nodiscard]] bool empty() const noexcept { return size_ == 0; }

    [[nodiscard]] const_iterator begin() const noexcept { return data_; }

    [[nodiscard]] const_iterator end() const noexcept { return data_ + size_; }

    /// The byte at `position`, which must be below `size()`.
    [[nodiscard]] std::uint8_t operator[](std::size_t position) const noexcept { return data_[position]; }

    [[nodiscard]] std::span<const std::uint8_t> bytes() const noexcept { return {data_, size_}; }

    /// The bytes seen as text, whatever they are; valid as long as a chunk over this storage lives.
    [[nodiscard]] std::string_view view() const noexcept { return {reinterpret_cast<const char*>(data_), size_}; }

    /// The part from `offset` on, at most `count` bytes; both are clamped to what is there. Shares the storage; O(1).
    [[nodiscard]] ByteChunk slice(std::size_t offset, std::size_t count = static_cast<std::size_t>(-1)) const noexcept {
        if (offset >= size_) return {};
        const std::size_t rest = size_ - offset;
        return {owner_, data_ + offset, count < rest ? count : rest};
    }

    friend bool operator==(const ByteChunk& left, const ByteChunk& right) noexcept {
        return left.view() == right.view();
    }

private:
    std::shared_ptr<const void> owner_{};
    const std::uint8_t* data_ = nullptr;
    std::size_t size_ = 0;
};

} // namespace platform::inline v1

template <>
struct std::hash<platform::ByteChunk> {
    std::size_t operator()(const platform::ByteChunk& chunk) const noexcept {
        return std::hash<std::string_view>()(chunk.view());
    }
};
