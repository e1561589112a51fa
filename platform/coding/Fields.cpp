#include "platform/coding/Fields.hpp"

#include <algorithm>
#include <numeric>

namespace platform::inline v1 {

namespace {

void* memberOf(void* record, const detail::FieldSlot& slot) noexcept {
    return static_cast<std::byte*>(record) + slot.offset;
}

const void* memberOf(const void* record, const detail::FieldSlot& slot) noexcept {
    return static_cast<const std::byte*>(record) + slot.offset;
}

} // namespace

void RecordFields::sortByKey(std::span<const detail::FieldSlot> slots, std::span<std::uint16_t> sorted) {
    std::iota(sorted.begin(), sorted.end(), std::uint16_t{0});
    std::sort(sorted.begin(), sorted.end(), [&](std::uint16_t a, std::uint16_t b) {
        return slots[a].key < slots[b].key;
    });
}

std::size_t hashRecord(const RecordFields& fields, const void* record) noexcept {
    std::size_t hash = fields.slots().size();
    for (const auto& slot : fields.slots())
        hash = combinedHash(hash, slot.operations->hash(memberOf(record, slot)));
    return hash;
}

void describeRecord(std::string& out, const RecordFields& fields, const void* record) {
    out += fields.typeName();
    out += '(';
    for (const auto& slot : fields.slots()) {
        if (&slot != fields.slots().data()) out += ", ";
        out += slot.label;
        out += ": ";
        slot.operations->describe(out, memberOf(record, slot));
    }
    out += ')';
}

namespace detail {

void decodeRecord(const RecordFields& fields, Decoder& decoder, void* out) {
    auto container = decoder.container();
    for (const auto& slot : fields.slots())
        slot.operations->decode(container, slot.key, memberOf(out, slot));
}

bool mayDecodeRecord(const RecordFields& fields, Decoder& decoder) {
    auto value = decoder.singleValueContainer();
    const CodedKind kind = value.implementation().kind(Here{});
    if (kind != CodedKind::object) return kind == CodedKind::unknown;
    auto container = decoder.container();
    return std::all_of(fields.slots().begin(), fields.slots().end(), [&container](const FieldSlot& slot) {
        const CodedKind found = container.implementation().kind(slot.key);
        if (found == CodedKind::unknown) return !slot.operations->isRequired;
        if (slot.operations->kind == CodedKind::unknown || slot.operations->kind == found) return true;
        return found == CodedKind::null && !slot.operations->isRequired;
    });
}

void encodeRecord(const RecordFields& fields, Encoder& encoder, const void* record) {
    auto container = encoder.container();
    const auto slots = fields.slots();
    const auto encode = [&](const FieldSlot& slot) {
        slot.operations->encode(container, slot.key, memberOf(record, slot));
    };
    if (container.implementation().prefersSortedKeys()) {
        for (const std::uint16_t index : fields.sorted())
            encode(slots[index]);
    } else {
        for (const FieldSlot& slot : slots)
            encode(slot);
    }
}

std::string recordTypeName(const RecordFields& fields) {
    return std::string(fields.typeName());
}

void failOnUnknownRawValue(
    const SingleValueDecodingContainer& container, const std::string& typeName, std::string_view text
) {
    container.throwDataCorrupted("Cannot initialize " + typeName + " from invalid String value " + std::string(text));
}

} // namespace detail

} // namespace platform::inline v1
