#include "OpenAPIRuntime/Conversion/AcceptHeaderContentType.hpp"
#include "OpenAPIRuntime/Conversion/OpenAPIMIMEType.hpp"
#include "OpenAPIRuntime/Conversion/QualityValue.hpp"

#include <gtest/gtest.h>

#include <optional>
#include <stdexcept>
#include <string>
#include <tuple>
#include <vector>

namespace {

using OpenAPIRuntime::AcceptHeaderContentType;
using OpenAPIRuntime::OpenAPIMIMEType;
using OpenAPIRuntime::QualityValue;
using Kind = OpenAPIMIMEType::Kind;
using Match = OpenAPIMIMEType::Match;
using Reason = Match::IncompatibilityReason;

TEST(OpenAPIMIMEType, ParsesAndPrints) {
    // The text, and what it prints as; nothing for a text that is no media type.
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"application/json", "application/json"},
        {"application/json;  charset=utf-8 ; boundary=x", "application/json; boundary=x; charset=utf-8"},
        {"Text/HTML; Charset=UTF-8", "Text/HTML; Charset=UTF-8"},
        {"\r\n text/plain \t;;; ", "text/plain"},
        {";text/plain", "text/plain"},
        {"*/*", "*/*"},
        {"text/*", "text/*"},
        {"a//b", "a/b"},
        {"/a/b/", "a/b"},
        {"a/b; a=b=c; a=; =b; ; flag; q==1", "a/b; q=1"},
        {"a/b; n=1; n=2; N=3", "a/b; N=3; n=1"},
        {"a/b; t=\"x;y\"", "a/b; t=\"x"},
        {"*/json", std::nullopt},
        {"json", std::nullopt},
        {"a/b/c", std::nullopt},
        {"", std::nullopt},
        {" ;a/b", std::nullopt},
        {";;", std::nullopt},
        {"a/", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const auto type = OpenAPIMIMEType::make(text);
        ASSERT_EQ(type.has_value(), expected.has_value());
        if (!type) continue;
        EXPECT_EQ(type->description(), *expected);
        EXPECT_EQ(OpenAPIMIMEType::make(type->description()), type);
    }
    EXPECT_EQ(OpenAPIMIMEType::make("text/*")->kind.whichCase(), Kind::Case::anySubtype);
    EXPECT_EQ(OpenAPIMIMEType::make("*/*")->kind.whichCase(), Kind::Case::any);
    EXPECT_EQ(OpenAPIMIMEType::make("a/b")->kind, Kind::concrete("A", "B"));
}

TEST(OpenAPIMIMEType, EqualityFoldsTheCaseOfAllButParameterValues) {
    const std::vector<std::tuple<std::string, std::string, bool>> cases = {
        {"a/b", "A/B", true},
        {"a/b; c=d", "a/b; C=d", true},
        {"a/b; c=d; e=f", "a/b; E=f; C=d", true},
        {"a/b; c=d", "a/b; c=D", false},
        {"a/b; c=d", "a/b", false},
        {"a/b; c=d", "a/b; e=d", false},
        {"a/*", "A/*", true},
        {"a/*", "a/b", false},
        {"*/*", "a/*", false},
        {"*/*", "*/*; q=1", false},
        // Names that meet once their case is folded: the one that sorts first counts.
        {"a/b; C=1; c=2", "a/b; C=1; c=3", true},
        {"a/b; C=1; c=2", "a/b; C=2; c=2", false},
    };
    for (const auto& [left, right, equal] : cases) {
        EXPECT_EQ(*OpenAPIMIMEType::make(left) == *OpenAPIMIMEType::make(right), equal) << left << " and " << right;
    }
}

TEST(OpenAPIMIMEType, MatchesAReceivedTypeAgainstAnOption) {
    const std::vector<std::tuple<std::string, std::string, Match, std::size_t>> cases = {
        {"a/b", "*/*", Match::wildcard(), 1},
        {"A/b", "a/*", Match::subtypeWildcard(), 2},
        {"c/b", "a/*", Match::incompatible(Reason(Reason::Case::type)), 0},
        {"A/B; x=y", "a/b", Match::typeAndSubtype(0), 3},
        {"c/b", "a/b", Match::incompatible(Reason(Reason::Case::subtype)), 0},
        {"a/c", "a/b", Match::incompatible(Reason(Reason::Case::subtype)), 0},
        {"a/b; X=y; z=1", "a/b; x=y", Match::typeAndSubtype(1), 4},
        {"a/b; x=y; z=1", "a/b; Z=1; x=y", Match::typeAndSubtype(2), 5},
        {"a/b; x=Y", "a/b; X=y", Match::incompatible(Reason(Reason::Case::parameter, "x")), 0},
        {"a/b", "a/b; X=y", Match::incompatible(Reason(Reason::Case::parameter, "x")), 0},
    };
    for (const auto& [received, option, match, score] : cases) {
        SCOPED_TRACE(received + " against " + option);
        const auto type = *OpenAPIMIMEType::make(received);
        const auto result = OpenAPIMIMEType::matchReceived(
            type.kind.type(), type.kind.subtype(), type.parameters, *OpenAPIMIMEType::make(option)
        );
        EXPECT_EQ(result, match);
        EXPECT_EQ(result.score(), score);
        EXPECT_EQ(std::hash<Match>()(result), std::hash<Match>()(match));
    }
}

TEST(QualityValue, KeepsThreeDecimalPlaces) {
    // The text, and what it prints as; nothing for a text that is no quality.
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"0.5", "0.500"},
        {"1", "1.000"},
        {"0", "0.000"},
        {"0.1239", "0.123"},
        {"0.9999", "0.999"},
        {"5e-1", "0.500"},
        {"abc", std::nullopt},
        {"", std::nullopt},
        {" 1", std::nullopt},
        {"1 ", std::nullopt},
        {"0,5", std::nullopt},
        {"-0.1", std::nullopt},
        {"1.001", std::nullopt},
        {"nan", std::nullopt},
        {"inf", std::nullopt},
        {"1e999", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const auto quality = QualityValue::fromRawValue(text);
        ASSERT_EQ(quality.has_value(), expected.has_value());
        if (quality) {
            EXPECT_EQ(quality->rawValue(), *expected);
        }
    }
    EXPECT_EQ(QualityValue(0.5001), QualityValue(0.5));
    EXPECT_EQ(QualityValue(1), QualityValue());
    EXPECT_TRUE(QualityValue(1.0).isDefault());
    EXPECT_FALSE(QualityValue(0.9999).isDefault());
    EXPECT_THROW((void)QualityValue(1.5), std::out_of_range);
    EXPECT_THROW((void)QualityValue(-1), std::out_of_range);
}

/// What an operation documents: JSON and plain text.
struct ContentType {
    std::string text;

    static std::optional<ContentType> fromRawValue(std::string_view rawValue) {
        if (rawValue == "application/json" || rawValue == "text/plain") return ContentType{std::string(rawValue)};
        return std::nullopt;
    }

    [[nodiscard]] std::string rawValue() const { return text; }

    static std::vector<ContentType> allCases() { return {{"application/json"}, {"text/plain"}}; }

    bool operator==(const ContentType&) const = default;
};

using Accept = AcceptHeaderContentType<ContentType>;

TEST(AcceptHeaderContentType, ParsesAndPrints) {
    const std::vector<std::pair<std::string, std::optional<std::string>>> cases = {
        {"application/json", "application/json"},
        {"Application/JSON; q=1", "application/json"},
        {"text/plain;q=0.5", "text/plain; q=0.500"},
        {"text/plain; charset=utf-8; q=0.0001", "text/plain; q=0.000"},
        {"text/plain; Q=0.5", "text/plain"},
        {"text/plain; q=2", std::nullopt},
        {"text/plain; q=x", std::nullopt},
        {"text/html", std::nullopt},
        {"text", std::nullopt},
        {"", std::nullopt},
    };
    for (const auto& [text, expected] : cases) {
        SCOPED_TRACE(text);
        const auto value = Accept::fromRawValue(text);
        ASSERT_EQ(value.has_value(), expected.has_value());
        if (value) {
            EXPECT_EQ(value->rawValue(), *expected);
        }
    }
}

TEST(AcceptHeaderContentType, ListsDefaultsAndSortsByQuality) {
    const auto defaults = Accept::defaultValues();
    ASSERT_EQ(defaults.size(), 2u);
    EXPECT_EQ(defaults[0].rawValue() + ", " + defaults[1].rawValue(), "application/json, text/plain");

    std::string order;
    for (const auto& value : OpenAPIRuntime::sortedByQuality<ContentType>({
             Accept({"a"}, QualityValue(0.2)),
             Accept({"b"}),
             Accept({"c"}, QualityValue(0.2)),
             Accept({"d"}, QualityValue(0)),
             Accept({"e"}),
         })) {
        order += value.contentType.text;
    }
    EXPECT_EQ(order, "beacd");
}

} // namespace
