#include "platform/text/ASCII.hpp"

#include "platform/text/UTF8.hpp"

#include <unicode/bytestream.h>
#include <unicode/casemap.h>
#include <unicode/stringpiece.h>

#include <algorithm>

namespace platform::inline v1 {

std::string asciiLowercased(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), [](char c) { return asciiLowercased(c); });
    return result;
}

std::string lowercased(std::string_view text) {
    if (isASCII(text)) return asciiLowercased(text);
    std::string result;
    icu::StringByteSink<std::string> sink(&result);
    UErrorCode status = U_ZERO_ERROR;
    const icu::StringPiece piece(text.data(), static_cast<std::int32_t>(text.size()));
    icu::CaseMap::utf8ToLower("", 0, piece, sink, nullptr, status);
    return U_SUCCESS(status) ? result : asciiLowercased(text);
}

} // namespace platform::inline v1
