#include "http_types/detail/SharedText.hpp"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <new>

namespace HTTPTypes::inline v1::detail {

namespace {

/// Stands at the start of one allocation; behind it lie the text and, for a name, its
/// lowercased form.
struct OwnedTextRecord : TextRecord {
    mutable std::atomic<std::uint32_t> references{1};
};

/// A record with `extra` bytes behind it.
OwnedTextRecord* makeRecord(std::size_t extra) {
    auto* const record = new (::operator new(sizeof(OwnedTextRecord) + extra)) OwnedTextRecord;
    record->isOwned = true;
    return record;
}

/// Writes the lowercased form of an ASCII text to `to`, eight characters a step.
void lowercase(std::string_view text, char* to) noexcept {
    constexpr std::uint64_t ones = 0x0101010101010101U;
    for (; text.size() >= sizeof(std::uint64_t);
         text.remove_prefix(sizeof(std::uint64_t)), to += sizeof(std::uint64_t)) {
        std::uint64_t word = 0;
        std::memcpy(&word, text.data(), sizeof word);
        const std::uint64_t atLeastA = word + ones * (0x80 - 'A'); // bit 7 tells; no carry, since bytes are below 0x80
        const std::uint64_t aboveZ = word + ones * (0x80 - 'Z' - 1);
        word |= ((atLeastA ^ aboveZ) & (ones * 0x80)) >> 2U;
        std::memcpy(to, &word, sizeof word);
    }
    for (const char c : text) {
        *to++ = asciiLowercased(c);
    }
}

char* charactersBehind(OwnedTextRecord* record) {
    return reinterpret_cast<char*>(record + 1);
}

} // namespace

SharedText SharedText::owning(std::string_view text) {
    OwnedTextRecord* const record = makeRecord(text.size());
    char* const characters = charactersBehind(record);
    std::memcpy(characters, text.data(), text.size());
    record->text = {characters, text.size()};
    return SharedText(static_cast<const TextRecord&>(*record));
}

SharedText SharedText::owningCaseless(std::string_view text, std::uint32_t hash) {
    const std::size_t size = text.size();
    OwnedTextRecord* const record = makeRecord(2 * size);
    char* const characters = charactersBehind(record);
    std::memcpy(characters, text.data(), size);
    lowercase(text, characters + size);
    record->text = {characters, size};
    record->canonical = {characters + size, size};
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
