#pragma once

#include "http_types/detail/Characters.hpp"
#include "platform/Export.hpp"

#include <cstdint>
#include <string_view>
#include <utility>

namespace HTTPTypes::inline v1::detail {

/// A text with its lowercased form and the hash of that: what a `SharedText` points to.
struct TextRecord {
    std::string_view text{};
    std::string_view canonical{};
    std::uint32_t hash = 0;
    bool isOwned = false; ///< the record is an `OwnedTextRecord`

    constexpr TextRecord() noexcept = default;

    constexpr TextRecord(std::string_view ownText, std::string_view lowercased) noexcept
        : text(ownText)
        , canonical(lowercased)
        , hash(caselessHash(lowercased)) {}
};

inline constexpr TextRecord emptyTextRecord{"", ""};

/// An immutable text that either lies in the program's read-only data or is owned and reference-counted. It is as large
/// as a pointer and usable in constant expressions, so that constants made of it need no initialisation at run time.
///
/// Thread safety: distinct objects may be used from different threads, also when they share an owned text.
class QUILLBEAM_EXPORT SharedText {
public:
    constexpr SharedText() noexcept = default;

    /// Refers to `record`, which must live for the rest of the program.
    constexpr explicit SharedText(const TextRecord& record) noexcept
        : record_(&record) {}

    /// Copies `text`, without a lowercased form. One allocation.
    [[nodiscard]] static SharedText owning(std::string_view text);

    /// Copies `text`, which is ASCII, and adds its lowercased form; `hash` is its `caselessHash`. One allocation.
    [[nodiscard]] static SharedText owningCaseless(std::string_view text, std::uint32_t hash);

    constexpr SharedText(const SharedText& other) noexcept
        : record_(other.record_) {
        if (record_->isOwned) retain();
    }

    constexpr SharedText(SharedText&& other) noexcept
        : record_(std::exchange(other.record_, &emptyTextRecord)) {}

    constexpr SharedText& operator=(const SharedText& other) noexcept {
        SharedText copy(other);
        std::swap(record_, copy.record_);
        return *this;
    }

    constexpr SharedText& operator=(SharedText&& other) noexcept {
        std::swap(record_, other.record_);
        return *this;
    }

    constexpr ~SharedText() {
        if (record_->isOwned) release();
    }

    [[nodiscard]] constexpr const TextRecord& record() const noexcept { return *record_; }

private:
    void retain() const noexcept;
    void release() const noexcept;

    const TextRecord* record_ = &emptyTextRecord;
};

} // namespace HTTPTypes::inline v1::detail
