#include "platform/text/Comparison.hpp"

#include <gtest/gtest.h>
#include <unicode/coll.h>
#include <unicode/stringpiece.h>

#include <memory>
#include <random>
#include <string>

namespace {

TEST(Comparison, ordersAsAReaderWouldWithoutCase) {
    using order = std::weak_ordering;
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("x", "Y"), order::less);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("X", "x"), order::equivalent);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("9", "a"), order::less);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("caf\xC3\xA9", "cafz"), order::less);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("caf\xC3\xA9", "cafe"), order::greater);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("e\xCC\x81", "\xC3\x89"), order::equivalent);
    EXPECT_EQ(platform::localizedCaseInsensitiveCompare("", "a"), order::less);
}

TEST(Comparison, shortPathAgreesWithTheCollator) {
    const std::string_view language = icu::Locale::getDefault().getLanguage();
    if (language != "en")
        GTEST_SKIP() << "the order of English is Unicode's own; that of " << language << " may differ";
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(icu::Locale::getRoot(), status));
    ASSERT_TRUE(U_SUCCESS(status));
    collator->setStrength(icu::Collator::SECONDARY);
    std::mt19937 random(11); // NOLINT(cert-msc51-cpp): the same texts in every run
    const auto text = [&random] {
        constexpr std::string_view characters = "09aAbBcChHlLzZ_-\xC3";
        std::string made;
        for (auto length = random() % 5; length > 0; --length) {
            made += characters[random() % (random() % 8 == 0 ? characters.size() : 14)];
        }
        return made;
    };
    for (int i = 0; i < 20000; ++i) {
        const std::string left = text();
        const std::string right = text();
        const UCollationResult expected = collator->compareUTF8(left, right, status);
        EXPECT_EQ(platform::localizedCaseInsensitiveCompare(left, right), static_cast<int>(expected) <=> 0)
            << left << " and " << right;
    }
}

} // namespace
