#include "platform/text/Base64.hpp"

#include <gtest/gtest.h>

namespace {

using Unknown = platform::UnknownBase64Characters;

std::vector<std::uint8_t> bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

TEST(Base64, encodesAndDecodesEveryTailLength) {
    const std::pair<std::string_view, std::string_view> cases[] = {
        {"", ""},
        {"f", "Zg=="},
        {"fo", "Zm8="},
        {"foo", "Zm9v"},
        {"foob", "Zm9vYg=="},
        {"fooba", "Zm9vYmE="},
        {"\xFB\xFF\xFE", "+//+"},
    };
    for (const auto& [plain, encoded] : cases) {
        EXPECT_EQ(platform::base64Encoded(bytes(plain)), encoded);
        EXPECT_EQ(platform::base64Decoded(encoded), bytes(plain)) << encoded;
    }
}

TEST(Base64, decodingRefusesOrIgnoresWhatDoesNotBelong) {
    for (const std::string_view text : {"Z", "Zg", "Zg=", "Zg===", "Zg==Zg==", "Zm9v=", "=", "====", "Z=g="}) {
        EXPECT_EQ(platform::base64Decoded(text), std::nullopt) << text;
        EXPECT_EQ(platform::base64Decoded(text, Unknown::ignore), std::nullopt) << text;
    }
    EXPECT_EQ(platform::base64Decoded("Zm9v\r\nYg=="), std::nullopt);
    EXPECT_EQ(platform::base64Decoded("Zm-9v\r\nYg=\xFF=", Unknown::ignore), bytes("foob"));
}

} // namespace
