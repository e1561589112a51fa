#include "platform/text/ASCII.hpp"
#include "platform/text/Trimming.hpp"
#include "platform/text/UTF8.hpp"

#include <gtest/gtest.h>

namespace {

#define R "\xEF\xBF\xBD"

TEST(UTF8, repairReplacesEachMaximalSubpart) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"plain ASCII, longer than a word", "plain ASCII, longer than a word"},
        {"\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF",
         "\xC2\x80\xDF\xBF\xE0\xA0\x80\xED\x9F\xBF\xEE\x80\x80\xF0\x90\x80\x80\xF4\x8F\xBF\xBF"},
        {"12345678\x80z", "12345678" R "z"},
        {"\xC0\xAF\xC1\xBF", R R R R},       // overlong
        {"\xE0\x9F\xBF", R R R},             // overlong
        {"\xED\xA0\x80", R R R},             // a surrogate
        {"\xF4\x90\x80\x80\xF5", R R R R R}, // above U+10FFFF
        {"\xE1\x80\xE2\xF0\x91\x92\xF1\xBF"
         "A",
         R R R R "A"}, // truncated sequences, one replacement each
        {"\xF0\x9F\x98", R},
    };
    for (const auto& [text, repaired] : cases) {
        EXPECT_EQ(platform::repairedUTF8(text), repaired);
        EXPECT_EQ(platform::isValidUTF8(text), text == repaired) << repaired;
    }
}

#undef R

TEST(Trimming, takesUnicodeWhitespaceAndLineBreaksFromBothEnds) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"", ""},
        {" \t\r\n\v\f", ""},
        {"  a b\n", "a b"},
        {"\xC2\xA0\xE2\x80\xA8\xE3\x80\x80x\xC2\x85\xE1\x9A\x80", "x"},
        {"\xE2\x80\x8Bx\xE2\x80\x8B", "\xE2\x80\x8Bx\xE2\x80\x8B"}, // zero width is no space
        {" \x80\xA0 ", "\x80\xA0"},                                 // ill-formed bytes are none either
        {"\xC2\xA0", ""},
    };
    for (const auto& [text, trimmed] : cases) {
        EXPECT_EQ(platform::trimmingWhitespaceAndNewlines(text), trimmed);
    }
}

TEST(ASCII, lowerCaseFoldsWhatItNames) {
    EXPECT_EQ(platform::asciiLowercased("Az@[\xC3\x89"), "az@[\xC3\x89");
    EXPECT_EQ(platform::lowercased("A\xC3\x89I"), "a\xC3\xA9i");
    EXPECT_EQ(platform::lowercased("\xCE\xA3\xCE\xA3"), "\xCF\x83\xCF\x82");
}

} // namespace
