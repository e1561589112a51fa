#include "http_types/HTTPField.hpp"

#include "http_types/detail/Characters.hpp"

#include <algorithm>

namespace HTTPTypes::inline v1 {

namespace {

using detail::TextRecord;

/// The well-known names again in lowercase, as HTTP/2 and HTTP/3 carry them: raw and canonical name are one text.
constexpr auto lowercaseNames = [] {
    std::array<TextRecord, detail::wellKnownNames.size()> records{};
    for (std::size_t i = 0; i < records.size(); ++i) {
        const std::string_view canonical = detail::wellKnownNames[i].canonical;
        records[i] = TextRecord(canonical, canonical);
    }
    return records;
}();

static_assert(std::ranges::all_of(detail::wellKnownNames, [](const TextRecord& record) {
    return detail::isToken(record.text) &&
           std::ranges::equal(record.text, record.canonical, {}, detail::asciiLowercased);
}));

/// From the hash of a name to its position among the well-known ones: open addressing with linear probing.
class WellKnownTable {
public:
    constexpr WellKnownTable() {
        slots_.fill(vacant);
        for (std::size_t i = 0; i < detail::wellKnownNames.size(); ++i) {
            std::size_t slot = detail::wellKnownNames[i].hash % slots_.size();
            while (slots_[slot] != vacant) {
                slot = (slot + 1) % slots_.size();
            }
            slots_[slot] = static_cast<std::uint8_t>(i);
        }
    }

    /// The record for `text`, spelled exactly so; none for a name in another spelling or an unknown one.
    [[nodiscard]] constexpr const TextRecord* find(std::string_view text, std::uint32_t hash) const noexcept {
        for (std::size_t slot = hash % slots_.size(); slots_[slot] != vacant; slot = (slot + 1) % slots_.size()) {
            const std::size_t i = slots_[slot];
            if (detail::wellKnownNames[i].text == text) return &detail::wellKnownNames[i];
            if (lowercaseNames[i].text == text) return &lowercaseNames[i];
        }
        return nullptr;
    }

private:
    static constexpr std::uint8_t vacant = 0xFF;
    std::array<std::uint8_t, 256> slots_{};
};

constexpr WellKnownTable wellKnownTable;

/// Each barred byte becomes a space, then the blanks at both ends go.
[[gnu::cold]] ISOLatin1String repaired(std::string bytes) {
    std::ranges::replace_if(bytes, detail::isBarred, ' ');
    bytes.erase(std::find_if_not(bytes.rbegin(), bytes.rend(), detail::isBlank).base(), bytes.end());
    bytes.erase(bytes.begin(), std::ranges::find_if_not(bytes, detail::isBlank));
    return ISOLatin1String(std::move(bytes));
}

std::string_view viewOf(std::span<const std::uint8_t> bytes) noexcept {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

} // namespace

std::optional<HTTPField::Name> HTTPField::Name::make(std::string_view text) {
    const std::uint32_t hash = detail::caselessHash(text);
    if (const TextRecord* record = wellKnownTable.find(text, hash)) return Name(*record);
    if (!detail::isToken(text)) return std::nullopt;
    return Name(detail::SharedText::owningCaseless(text, hash));
}

std::optional<HTTPField::Name> HTTPField::Name::makePseudo(std::string_view text) {
    for (const Name* const known :
         {&pseudoMethod, &pseudoScheme, &pseudoAuthority, &pseudoPath, &pseudoProtocol, &pseudoStatus}) {
        if (known->rawName() == text) return *known;
    }
    const auto isUppercase = [](char c) { return detail::asciiLowercased(c) != c; };
    if (!text.starts_with(':') || !detail::isToken(text.substr(1)) || std::ranges::any_of(text, isUppercase)) {
        return std::nullopt;
    }
    return Name(detail::SharedText::owningCaseless(text, detail::caselessHash(text)));
}

HTTPField::HTTPField(Name fieldName, std::string&& value)
    : name(std::move(fieldName))
    , rawValue_(isValidValue(value) ? ISOLatin1String(std::move(value)) : repaired(std::move(value))) {}

HTTPField::HTTPField(Name fieldName, std::string_view value)
    : name(std::move(fieldName))
    , rawValue_(isValidValue(value) ? ISOLatin1String(value) : repaired(std::string(value))) {}

HTTPField::HTTPField(Name fieldName, const char* value)
    : HTTPField(std::move(fieldName), std::string_view(value)) {}

HTTPField::HTTPField(Name fieldName, std::span<const std::uint8_t> value)
    : HTTPField(std::move(fieldName), viewOf(value)) {}

void HTTPField::setValue(std::string text) {
    rawValue_ = isValidValue(text) ? ISOLatin1String(std::move(text)) : repaired(std::move(text));
}

bool HTTPField::isValidValue(std::string_view value) noexcept {
    if (value.empty()) return true;
    return !detail::isBlank(value.front()) && !detail::isBlank(value.back()) && !detail::holdsBarred(value);
}

bool HTTPField::isValidValue(std::span<const std::uint8_t> value) noexcept {
    return isValidValue(viewOf(value));
}

std::string HTTPField::description() const {
    std::string text(name.rawName());
    text += ": ";
    text += value();
    return text;
}

} // namespace HTTPTypes::inline v1

std::size_t std::hash<HTTPTypes::HTTPField>::operator()(const HTTPTypes::HTTPField& field) const noexcept {
    const std::size_t value = std::hash<HTTPTypes::ISOLatin1String>()(field.rawValue());
    const std::size_t name = field.name.hash() ^ (static_cast<std::size_t>(field.indexingStrategy) << 32U);
    return value ^ (name + 0x9E3779B97F4A7C15U + (value << 6U) + (value >> 2U));
}
