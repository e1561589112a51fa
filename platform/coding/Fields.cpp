#include "platform/coding/Fields.hpp"

#include <algorithm>
#include <numeric>
#include <utility>

namespace platform::inline v1 {

void RecordFields::index(std::span<detail::FieldSlot> slots, std::span<std::uint16_t> sorted) noexcept {
    for (std::size_t i = slots.size(); i-- > 0;) { // backwards: of two fields with one key the first is to be found
        detail::FieldSlot& slot = slots[i];
        slot.hash = detail::keyHash(slot.key);
        slot.nextInClass =
            std::exchange(firstInClass_[slot.hash % detail::keyHashClasses], static_cast<std::uint16_t>(i));
    }
    std::iota(sorted.begin(), sorted.end(), std::uint16_t{0});
    std::sort(sorted.begin(), sorted.end(), [&](std::uint16_t a, std::uint16_t b) {
        return slots[a].key < slots[b].key;
    });
}

void KeyedReader::fields(const RecordFields& fields, void* record) {
    for (const detail::FieldSlot& slot : fields.slots())
        slot.operations->decode(*this, slot.key, slot.memberOf(record));
}

std::size_t hashRecord(const RecordFields& fields, const void* record) noexcept {
    std::size_t hash = fields.slots().size();
    for (const auto& slot : fields.slots())
        hash = combinedHash(hash, slot.operations->hash(slot.memberOf(record)));
    return hash;
}

void describeRecord(std::string& out, const RecordFields& fields, const void* record) {
    out += fields.typeName();
    out += '(';
    for (const auto& slot : fields.slots()) {
        if (&slot != fields.slots().data()) out += ", ";
        out += slot.label;
        out += ": ";
        slot.operations->describe(out, slot.memberOf(record));
    }
    out += ')';
}

namespace detail {

void decodeRecord(const RecordFields& fields, Decoder& decoder, void* out) {
    decoder.container().implementation().fields(fields, out);
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
        slot.operations->encode(container, slot.key, slot.memberOf(record));
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
