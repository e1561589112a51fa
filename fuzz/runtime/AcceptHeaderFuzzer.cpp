// Entries of an Accept header: whatever is let through prints as a text that reads back as the same entry.

#include "OpenAPIRuntime/Conversion/AcceptHeaderContentType.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

void require(bool holds) {
    if (!holds) std::abort();
}

/// Two content types; the fuzzer finds no other ones by chance.
struct ContentType {
    std::string text;

    static std::optional<ContentType> fromRawValue(std::string_view rawValue) {
        if (rawValue == "a/b" || rawValue == "*/*") return ContentType{std::string(rawValue)};
        return std::nullopt;
    }

    [[nodiscard]] std::string rawValue() const { return text; }

    static std::vector<ContentType> allCases() { return {{"a/b"}, {"*/*"}}; }

    friend bool operator==(const ContentType&, const ContentType&) = default;
};

using Accept = OpenAPIRuntime::AcceptHeaderContentType<ContentType>;

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::string_view input(reinterpret_cast<const char*>(data), size);
    std::vector<Accept> entries;
    while (!input.empty()) {
        const std::size_t end = std::min(input.find(','), input.size());
        if (const auto entry = Accept::fromRawValue(input.substr(0, end))) {
            require(entry->quality.doubleValue() >= 0.0 && entry->quality.doubleValue() <= 1.0);
            require(Accept::fromRawValue(entry->rawValue()) == *entry);
            entries.push_back(*entry);
        }
        input.remove_prefix(std::min(end + 1, input.size()));
    }
    const auto sorted = OpenAPIRuntime::sortedByQuality(entries);
    require(sorted.size() == entries.size());
    for (std::size_t i = 1; i < sorted.size(); ++i) {
        require(sorted[i - 1].quality.doubleValue() >= sorted[i].quality.doubleValue());
    }
    return 0;
}
