#include "http_types/detail/SharedText.hpp"

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <new>

namespace HTTPTypes::inline v1::detail {

namespace {

/// Stands at the start of one allocation; behind it lie the text and, where it differs, the lowercased form.
struct OwnedTextRecord : TextRecord {
    mutable std::atomic<std::uint32_t> references{1};
};

/// A record with `extra` bytes behind it.
OwnedTextRecord* makeRecord(std::size_t extra) {
    auto* const record = new (::operator new(sizeof(OwnedTextRecord) + extra)) OwnedTextRecord;
    record->isOwned = true;
    return record;
}

char* charactersBehind(OwnedTextRecord* record) {
    return reinterpret_cast<char*>(record + 1);
}

} // namespace

SharedText SharedText::owning(std::string_view text) {
    OwnedTextRecord* const record = makeRecord(text.size());
    char* const characters = charactersBehind(record);
    std::ranges::copy(text, characters);
    record->text = {characters, text.size()};
    return SharedText(static_cast<const TextRecord&>(*record));
}

SharedText SharedText::owningCaseless(std::string_view text, std::uint32_t hash) {
    const std::size_t size = text.size();
    const bool isLowercase = std::ranges::all_of(text, [](char c) { return asciiLowercased(c) == c; });
    OwnedTextRecord* const record = makeRecord(isLowercase ? size : 2 * size);
    char* const characters = charactersBehind(record);
    std::ranges::copy(text, characters);
    char* const lowercased = isLowercase ? characters : characters + size;
    if (!isLowercase) std::ranges::transform(text, lowercased, asciiLowercased);
    record->text = {characters, size};
    record->canonical = {lowercased, size};
    record->hash = hash;
    return SharedText(static_cast<const TextRecord&>(*record));
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
