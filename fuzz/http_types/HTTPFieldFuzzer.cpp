#include "http_types/HTTPFields.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/text/UTF8.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

// The first byte says how many of the following are a name; the rest is a value.

namespace {

using HTTPTypes::HTTPField;

void require(bool holds) {
    if (!holds) std::abort();
}

bool isBarred(char c) {
    const auto byte = static_cast<unsigned char>(c);
    return byte != '\t' && (byte < 0x20 || byte == 0x7F);
}

void checkName(std::string_view text) {
    constexpr std::string_view marks = "!#$%&'*+-.^_`|~";
    const bool isToken = !text.empty() && std::ranges::all_of(text, [&](char c) {
        return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') ||
               marks.find(c) != std::string_view::npos;
    });
    const auto name = HTTPField::Name::make(text);
    require(name.has_value() == isToken);
    require(HTTPTypes::HTTPRequest::Method::make(text).has_value() == isToken);
    if (!name) return;
    require(name->rawName() == text && name->canonicalName().size() == text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        require(name->canonicalName()[i] == (c >= 'A' && c <= 'Z' ? static_cast<char>(c | 0x20) : c));
    }
    const auto again = HTTPField::Name::make(name->canonicalName());
    require(again == name && again->hash() == name->hash());
}

void checkValue(std::string_view text) {
    const bool isValid = text.empty() || (std::ranges::none_of(text, isBarred) && text.front() != ' ' &&
                                          text.front() != '\t' && text.back() != ' ' && text.back() != '\t');
    require(HTTPField::isValidValue(text) == isValid);
    const HTTPField field(HTTPField::Name::age, text);
    const std::string_view kept = field.rawValue().view();
    require(HTTPField::isValidValue(kept));
    require(HTTPField(HTTPField::Name::age, kept) == field);
    // What was kept is a part of the input with a space for each barred byte; around it there were only such and
    // blanks.
    std::string expected(text);
    std::ranges::replace_if(expected, isBarred, ' ');
    if (isValid) require(kept == text);
    const std::size_t start = expected.find_first_not_of(" \t");
    const std::size_t end = expected.find_last_not_of(" \t");
    require(kept == (start == std::string::npos ? std::string() : expected.substr(start, end - start + 1)));
    require(platform::isValidUTF8(field.value()));
    require(!platform::isValidUTF8(kept) || field.value() == kept);
}

void checkReasonPhrase(std::string_view text) {
    const HTTPTypes::HTTPResponse::Status status(404, text);
    require(std::ranges::none_of(status.reasonPhrase(), isBarred));
    require(HTTPTypes::HTTPResponse::Status(404, status.reasonPhrase()).reasonPhrase() == status.reasonPhrase());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    if (size == 0) return 0;
    const std::string_view input(reinterpret_cast<const char*>(data) + 1, size - 1);
    const std::size_t split = std::min<std::size_t>(data[0], input.size());
    checkName(input.substr(0, split));
    checkValue(input.substr(split));
    checkReasonPhrase(input.substr(split));
    return 0;
}
