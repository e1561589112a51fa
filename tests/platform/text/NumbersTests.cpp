#include "platform/text/Numbers.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <random>

namespace {

TEST(Numbers, shortestTextAndJSONTextLayOutTheSameDigits) {
    struct Case {
        double number;
        std::string_view text;
        std::string_view json;
    };

    const Case cases[] = {
        {0.0, "0.0", "0"},
        {-0.0, "-0.0", "-0"},
        {1.5, "1.5", "1.5"},
        {-12.0, "-12.0", "-12"},
        {100000.0, "100000.0", "100000"},
        {0.1F, "0.10000000149011612", "0.10000000149011612"},
        {0.0001, "0.0001", "0.0001"},
        {0.00012, "0.00012", "0.00012"},
        {0.00001, "1e-05", "1e-05"},
        {1.25e-7, "1.25e-07", "1.25e-07"},
        {9007199254740991.0, "9007199254740991.0", "9007199254740991"},
        {18014398509481984.0, "18014398509481984.0", "18014398509481984"},
        {18014398509481988.0, "1.8014398509481988e+16", "1.8014398509481988e+16"},
        {1e20, "1e+20", "1e+20"},
        {-1e100, "-1e+100", "-1e+100"},
        {5e-324, "5e-324", "5e-324"},
        {std::numeric_limits<double>::max(), "1.7976931348623157e+308", "1.7976931348623157e+308"},
    };
    for (const auto& [number, text, json] : cases) {
        EXPECT_EQ(platform::shortestText(number), text);
        EXPECT_EQ(platform::jsonNumberText(number), json);
    }
    EXPECT_EQ(platform::shortestText(-HUGE_VAL), "-inf");
    EXPECT_EQ(platform::shortestText(std::nan("")), "nan");
    std::string output = "x";
    platform::appendJSONNumber(output, 0.1F);
    EXPECT_EQ(output, "x0.1");
}

TEST(Numbers, everyBitPatternReadsBackBitForBit) {
    std::mt19937_64 random(7); // NOLINT(cert-msc51-cpp): the same numbers in every run
    for (int i = 0; i < 20000; ++i) {
        const auto number = std::bit_cast<double>(random());
        if (!std::isfinite(number)) continue;
        for (const std::string& text : {platform::shortestText(number), platform::jsonNumberText(number)}) {
            const std::optional<double> parsed = platform::parseDouble(text);
            ASSERT_TRUE(parsed) << text;
            EXPECT_EQ(std::bit_cast<std::uint64_t>(*parsed), std::bit_cast<std::uint64_t>(number)) << text;
        }
    }
}

TEST(Numbers, parsingTakesWholeTextsOnly) {
    const std::pair<std::string_view, double> accepted[] = {
        {"5", 5},
        {"+.5", 0.5},
        {"5.", 5},
        {"-1E3", -1000},
        {"1e-400", 0},
        {"-1e-400", -0.0},
        {"3e-324", 5e-324},
        {"2e-310", 2e-310},
        {"INF", HUGE_VAL},
        {"-infinity", -HUGE_VAL},
    };
    for (const auto& [text, number] : accepted) {
        const std::optional<double> parsed = platform::parseDouble(text);
        ASSERT_TRUE(parsed) << text;
        EXPECT_EQ(*parsed, number) << text;
        EXPECT_EQ(std::signbit(*parsed), std::signbit(number)) << text;
    }
    EXPECT_TRUE(std::isnan(platform::parseDouble("nan").value_or(0)));
    for (const std::string_view text :
         {"", " 1", "1 ", "1,5", "1_0", "0x10", "+-1", "--1", "e5", ".", "1e", "1e400", "-1e400", "nan(1)", "one"}) {
        EXPECT_EQ(platform::parseDouble(text), std::nullopt) << text;
    }
}

} // namespace
