#include "platform/text/Base64.hpp"

#include <array>

namespace platform::inline v1 {

namespace {

constexpr std::string_view alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
constexpr std::uint8_t unknown = 0xFF;

constexpr std::array<std::uint8_t, 256> sextets = [] {
    std::array<std::uint8_t, 256> table{};
    table.fill(unknown);
    for (std::size_t i = 0; i < alphabet.size(); ++i) {
        table[static_cast<std::uint8_t>(alphabet[i])] = static_cast<std::uint8_t>(i);
    }
    return table;
}();

} // namespace

std::string base64Encoded(std::span<const std::uint8_t> bytes) {
    std::string text;
    text.reserve((bytes.size() + 2) / 3 * 4);
    while (!bytes.empty()) {
        const std::size_t taken = bytes.size() < 3 ? bytes.size() : 3;
        std::uint32_t group = static_cast<std::uint32_t>(bytes[0]) << 16U;
        if (taken > 1) group |= static_cast<std::uint32_t>(bytes[1]) << 8U;
        if (taken > 2) group |= bytes[2];
        text += alphabet[group >> 18U];
        text += alphabet[(group >> 12U) & 0x3FU];
        text += taken > 1 ? alphabet[(group >> 6U) & 0x3FU] : '=';
        text += taken > 2 ? alphabet[group & 0x3FU] : '=';
        bytes = bytes.subspan(taken);
    }
    return text;
}

std::optional<std::vector<std::uint8_t>>
base64Decoded(std::string_view text, UnknownBase64Characters unknownCharacters) {
    std::vector<std::uint8_t> bytes;
    bytes.reserve(text.size() / 4 * 3);
    std::uint32_t group = 0;
    std::size_t sextetCount = 0; // of the current group
    std::size_t paddingCount = 0;
    for (const char c : text) {
        const std::uint8_t sextet = sextets[static_cast<std::uint8_t>(c)];
        if (c == '=') {
            ++paddingCount;
        } else if (sextet == unknown) {
            if (unknownCharacters == UnknownBase64Characters::refuse) return std::nullopt;
        } else {
            if (paddingCount != 0) return std::nullopt;
            group = group << 6U | sextet;
            if (++sextetCount == 4) {
                bytes.push_back(static_cast<std::uint8_t>(group >> 16U));
                bytes.push_back(static_cast<std::uint8_t>(group >> 8U));
                bytes.push_back(static_cast<std::uint8_t>(group));
                group = 0;
                sextetCount = 0;
            }
        }
    }
    if (sextetCount == 0) return paddingCount == 0 ? std::optional(std::move(bytes)) : std::nullopt;
    if (sextetCount == 1 || sextetCount + paddingCount != 4) return std::nullopt;
    group <<= 6U * paddingCount;
    bytes.push_back(static_cast<std::uint8_t>(group >> 16U));
    if (sextetCount == 3) bytes.push_back(static_cast<std::uint8_t>(group >> 8U));
    return bytes;
}

} // namespace platform::inline v1
