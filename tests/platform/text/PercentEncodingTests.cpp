#include "platform/text/PercentEncoding.hpp"

#include <gtest/gtest.h>

namespace {

using namespace std::literals;

TEST(PercentEncoding, lettersMarksNumbersAndAllowedSymbolsPass) {
    struct Case {
        std::string_view text;
        std::string_view encoded;
    };

    const Case cases[] = {
        {"", ""},
        {"azAZ09-._~ x", "azAZ09-._~ x"},
        {"a+b/c%?&=#\"", "a%2Bb%2Fc%25%3F%26%3D%23%22"},
        {"\0\n\x7F"sv, "%00%0A%7F"},
        {"\xC3\xA9\xE6\xBC\xA2\xD9\xA3", "\xC3\xA9\xE6\xBC\xA2\xD9\xA3"},     // letters and a number
        {"e\xCC\x81\xE2\x85\xAB\xC2\xBD", "e\xCC\x81\xE2\x85\xAB\xC2\xBD"},   // a mark, a Roman numeral, a half
        {"\xF0\x9D\x94\xB8\xF0\x9F\x98\x80", "\xF0\x9D\x94\xB8%F0%9F%98%80"}, // beyond the first plane
        {"\xE2\x82\xAC\xC2\xA0\xE2\x80\x99", "%E2%82%AC%C2%A0%E2%80%99"},     // symbol, space, punctuation
        {"\xC3(\xFF\xED\xA0\x80\xC3", "%C3%28%FF%ED%A0%80%C3"},               // ill-formed: nothing is lost
    };
    for (const auto& [text, encoded] : cases) {
        EXPECT_EQ(platform::percentEncoded(text, "-._~ "), encoded);
        if (text.find('\xFF') == std::string_view::npos) {
            EXPECT_EQ(platform::removingPercentEncoding(encoded), text) << encoded;
        }
    }
}

TEST(PercentEncoding, removingRefusesBrokenEscapesAndIllFormedResults) {
    EXPECT_EQ(platform::removingPercentEncoding("%c3%A9+%zz"), std::nullopt);
    EXPECT_EQ(platform::removingPercentEncoding("%c3%A9+"), "\xC3\xA9+");
    for (const std::string_view text : {"%", "a%2", "%2G", "%%41", "%FF", "%C3x", "\xFF"}) {
        EXPECT_EQ(platform::removingPercentEncoding(text), std::nullopt) << text;
    }
}

} // namespace
