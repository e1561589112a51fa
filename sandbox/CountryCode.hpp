#pragma once

#include <string_view>

namespace sandbox {

/// Whether the text has the form of an ISO 3166-1 alpha-2 code: two capital letters.
inline bool isCountryCode(std::string_view text) {
    const auto isCapital = [](char c) { return c >= 'A' && c <= 'Z'; };
    return text.size() == 2 && isCapital(text[0]) && isCapital(text[1]);
}

} // namespace sandbox
