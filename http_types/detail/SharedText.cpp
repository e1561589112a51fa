#include "http_types/detail/SharedText.hpp"

#include <algorithm>
#include <atomic>
#include <cstring>
#include <new>

namespace HTTPTypes::inline v1::detail {

namespace {

/// Stands at the start of one allocation; behind it lie the text and, where it differs, the lowercased form.
struct OwnedTextRecord : TextRecord {
    mutable std::atomic<std::uint32_t> references{1};
};

} // namespace

SharedText SharedText::owning(std::string_view text, std::uint32_t hash) {
    const bool isCanonical = std::ranges::all_of(text, [](char c) { return asciiLowercased(c) == c; });
    const std::size_t size = text.size();
    void* const memory = ::operator new(sizeof(OwnedTextRecord) + (isCanonical ? size : 2 * size));
    auto* const record = new (memory) OwnedTextRecord;
    char* const characters = static_cast<char*>(memory) + sizeof(OwnedTextRecord);
    std::copy_n(text.data(), size, characters);
    char* const lowercased = isCanonical ? characters : characters + size;
    if (!isCanonical) std::transform(characters, characters + size, lowercased, asciiLowercased);
    record->text = {characters, size};
    record->canonical = {lowercased, size};
    record->hash = hash;
    record->isOwned = true;
    SharedText result;
    result.record_ = record;
    return result;
}

void SharedText::retain() const noexcept {
    static_cast<const OwnedTextRecord*>(record_)->references.fetch_add(1, std::memory_order_relaxed);
}

void SharedText::release() const noexcept {
    const auto* const record = static_cast<const OwnedTextRecord*>(record_);
    if (record->references.fetch_sub(1, std::memory_order_acq_rel) != 1) return;
    record->~OwnedTextRecord();
    ::operator delete(const_cast<OwnedTextRecord*>(record));
}

} // namespace HTTPTypes::inline v1::detail
