// Media types: the parser against a second one written the plain way, and what must hold for every type it lets
// through.

#include "OpenAPIRuntime/Conversion/OpenAPIMIMEType.hpp"
#include "platform/text/Trimming.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace {

using OpenAPIRuntime::OpenAPIMIMEType;
using Match = OpenAPIMIMEType::Match;

void require(bool holds) {
    if (!holds) std::abort();
}

std::vector<std::string> pieces(std::string_view text, char separator) {
    std::vector<std::string> result{""};
    for (const char c : text) {
        if (c == separator) {
            result.emplace_back();
        } else {
            result.back() += c;
        }
    }
    std::erase(result, "");
    return result;
}

/// The kind and the parameters of `text`, one text each.
std::optional<std::vector<std::string>> plainlyParsed(std::string_view text) {
    std::vector<std::string> result;
    OpenAPIMIMEType::Parameters parameters;
    bool isFirst = true;
    for (const auto& piece : pieces(text, ';')) {
        const std::string_view trimmed = platform::trimmingWhitespaceAndNewlines(piece);
        const auto halves = pieces(trimmed, isFirst ? '/' : '=');
        if (isFirst) {
            if (halves.size() != 2 || (halves[0] == "*" && halves[1] != "*")) return std::nullopt;
            result = {halves[0] + "/" + halves[1]};
        } else if (halves.size() == 2) {
            parameters.emplace(halves[0], halves[1]);
        }
        isFirst = false;
    }
    if (result.empty()) return std::nullopt;
    for (const auto& [name, value] : parameters) {
        result.push_back(name + "=" + value);
    }
    return result;
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view input(reinterpret_cast<const char*>(data), size);
    const std::size_t middle = std::min(input.find('\n'), input.size());
    const std::string_view text = input.substr(0, middle);

    const auto type = OpenAPIMIMEType::make(text);
    const auto expected = plainlyParsed(text);
    require(type.has_value() == expected.has_value());
    if (!type) return 0;
    std::string description;
    for (const auto& part : *expected) {
        description += (description.empty() ? "" : "; ") + part;
    }
    require(type->description() == description);
    require(*type == *type);

    const auto option = OpenAPIMIMEType::make(input.substr(middle));
    if (!option) return 0;
    require((*type == *option) == (*option == *type));
    if (type->kind.whichCase() != OpenAPIMIMEType::Kind::Case::concrete) return 0;
    const auto match =
        OpenAPIMIMEType::matchReceived(type->kind.type(), type->kind.subtype(), type->parameters, *option);
    require(match.matchedParameterCount() == 0 || match.matchedParameterCount() == option->parameters.size());
    require((match.score() == 0) == (match.whichCase() == Match::Case::incompatible));
    if (option->parameters.empty() && option->kind == type->kind) require(match == Match::typeAndSubtype(0));
    return 0;
}
