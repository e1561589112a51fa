#include "platform/text/UTF8.hpp"

#include <cstdint>
#include <cstring>

namespace platform::inline v1 {

namespace {

/// One step over the text: how many bytes it took, and whether they are a well-formed sequence or the maximal subpart
/// of an ill-formed one.
struct Step {
    std::size_t length;
    bool isWellFormed;
};

/// `text` is not empty. Table 3-7 of the Unicode standard: only the second byte's range depends on the first.
Step step(std::string_view text) noexcept {
    const auto byte = [text](std::size_t i) { return static_cast<std::uint8_t>(text[i]); };
    const std::uint8_t lead = byte(0);
    if (lead < 0x80) return {1, true};
    if (lead < 0xC2 || lead > 0xF4) return {1, false};
    const std::size_t length = lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : 4;
    std::uint8_t low = lead == 0xE0 ? 0xA0 : lead == 0xF0 ? 0x90 : 0x80;
    std::uint8_t high = lead == 0xED ? 0x9F : lead == 0xF4 ? 0x8F : 0xBF;
    for (std::size_t i = 1; i < length; ++i) {
        if (i == text.size() || byte(i) < low || byte(i) > high) return {i, false};
        low = 0x80;
        high = 0xBF;
    }
    return {length, true};
}

/// How many bytes at the start are ASCII, rounded down to whole words while more follow.
std::size_t asciiPrefix(std::string_view text) noexcept {
    std::size_t i = 0;
    for (std::uint64_t word = 0; i + sizeof word <= text.size(); i += sizeof word) {
        std::memcpy(&word, text.data() + i, sizeof word);
        if ((word & 0x8080808080808080U) != 0) return i;
    }
    while (i < text.size() && static_cast<std::uint8_t>(text[i]) < 0x80) {
        ++i;
    }
    return i;
}

/// The length of the well-formed text at the start.
std::size_t validPrefix(std::string_view text) noexcept {
    std::size_t i = 0;
    while ((i += asciiPrefix(text.substr(i))) < text.size()) {
        const Step next = step(text.substr(i));
        if (!next.isWellFormed) break;
        i += next.length;
    }
    return i;
}

} // namespace

bool isASCII(std::string_view text) noexcept {
    return asciiPrefix(text) == text.size();
}

bool isValidUTF8(std::string_view text) noexcept {
    return validPrefix(text) == text.size();
}

std::string repairedUTF8(std::string_view text) {
    std::string repaired;
    repaired.reserve(text.size());
    while (true) {
        const std::size_t valid = validPrefix(text);
        repaired += text.substr(0, valid);
        text.remove_prefix(valid);
        if (text.empty()) return repaired;
        repaired += "\xEF\xBF\xBD";
        text.remove_prefix(step(text).length);
    }
}

} // namespace platform::inline v1
