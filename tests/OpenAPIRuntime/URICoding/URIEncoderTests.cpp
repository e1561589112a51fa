#include "OpenAPIRuntime/Conversion/ISO8601DateTranscoder.hpp"
#include "OpenAPIRuntime/URICoding/URIEncoder.hpp"
#include "OpenAPIRuntime/URICoding/URIValueToNodeEncoder.hpp"
#include "platform/coding/Fields.hpp"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>
#include <map>
#include <optional>
#include <stdexcept>
#include <vector>

namespace {

using namespace OpenAPIRuntime;
using Style = URICoderConfiguration::Style;
using Space = URICoderConfiguration::SpaceEscapingCharacter;
using InsertionError = URIEncodedNode::InsertionError;
using GeneralError = URIValueToNodeEncoder::GeneralError;
using SerializationError = URISerializer::SerializationError;
using Strings = std::vector<std::string>;

struct Search {
    std::string query{};
    std::optional<double> limit{};
    std::optional<Strings> tags{};
    std::optional<std::int64_t> page{};

    static const platform::RecordFields& recordFields() {
        using platform::field;
        static const platform::RecordTable table(
            "Search",
            field("query", &Search::query),
            field("limit", &Search::limit),
            field("tags", &Search::tags),
            field("page", &Search::page)
        );
        return table;
    }
};

/// A value whose encoding is a function, for what no sensible type does.
struct Writing {
    void (*write)(platform::Encoder&);
};

} // namespace

template <>
struct platform::Coding<Writing> {
    static void encode(Encoder& encoder, const Writing& value) { value.write(encoder); }
};

namespace {

URIEncoder encoder(Style style, bool explode, Space space = Space::percentEncoded) {
    return URIEncoder(URICoderConfiguration(style, explode, space, ISO8601DateTranscoder::iso8601()));
}

/// The error of type `Error` that `value` fails with.
template <class Error, class T>
std::optional<Error> failure(const T& value) {
    try {
        static_cast<void>(encoder(Style::form, true).encode(value, "k"));
    } catch (const Error& error) {
        return error;
    }
    return std::nullopt;
}

/// The texts in the styles form exploded, form, simple exploded, simple; a "|" between two.
template <class T>
std::string texts(const T& value, std::string_view key = "k", Space space = Space::percentEncoded) {
    std::string joined;
    for (const Style style : {Style::form, Style::simple}) {
        for (const bool explode : {true, false}) {
            joined.append(encoder(style, explode, space).encode(value, key)).append("|");
        }
    }
    joined.pop_back();
    return joined;
}

TEST(URIEncoder, primitivesInEveryStyle) {
    EXPECT_EQ(texts("a b"), "k=a%20b|k=a%20b|a%20b|a%20b");
    EXPECT_EQ(texts("a b+c", "k", Space::plus), "k=a+b%2Bc|k=a+b%2Bc|a+b%2Bc|a+b%2Bc");
    EXPECT_EQ(
        texts(std::string("a+b/c%{}\xC3\xA9\xE2\x82\xAC-._~"), "k {"),
        "k%20%7B=a%2Bb%2Fc%25%7B%7D\xC3\xA9%E2%82%AC-._~|k%20%7B=a%2Bb%2Fc%25%7B%7D\xC3\xA9%E2%82%AC-._~|"
        "a%2Bb%2Fc%25%7B%7D\xC3\xA9%E2%82%AC-._~|a%2Bb%2Fc%25%7B%7D\xC3\xA9%E2%82%AC-._~"
    );
    EXPECT_EQ(texts(""), "k=|k=||");
    EXPECT_EQ(texts(5, ""), "=5|=5|5|5");
    const URIEncoder simple = encoder(Style::simple, false);
    EXPECT_EQ(simple.encode(true, ""), "true");
    EXPECT_EQ(simple.encode(std::int8_t{-128}, ""), "-128");
    EXPECT_EQ(simple.encode(std::numeric_limits<std::int64_t>::min(), ""), "-9223372036854775808");
    EXPECT_EQ(simple.encode(std::uint64_t{9223372036854775807U}, ""), "9223372036854775807");
    EXPECT_EQ(simple.encode(1.0, ""), "1.0");
    EXPECT_EQ(simple.encode(1e20, ""), "1e+20");
    EXPECT_EQ(simple.encode(0.1F, ""), "0.10000000149011612");
    EXPECT_EQ(simple.encode(platform::Date(std::chrono::seconds(0)), ""), "1970-01-01T00%3A00%3A00Z");
}

TEST(URIEncoder, listsInEveryStyle) {
    EXPECT_EQ(texts(Strings{"a", "b"}), "k=a&k=b|k=a,b|a,b|a,b");
    EXPECT_EQ(texts(Strings{"a b", "c,d"}), "k=a%20b&k=c%2Cd|k=a%20b,c%2Cd|a%20b,c%2Cd|a%20b,c%2Cd");
    EXPECT_EQ(texts(std::vector<double>{0.5, 2}, ""), "=0.5&=2.0|=0.5,2.0|0.5,2.0|0.5,2.0");
    EXPECT_EQ(
        texts(std::vector<platform::Date>(1)),
        "k=1970-01-01T00%3A00%3A00Z|k=1970-01-01T00%3A00%3A00Z|1970-01-01T00%3A00%3A00Z|1970-01-01T00%3A00%3A00Z"
    );
    EXPECT_EQ(texts(Strings{}), "|||");
}

TEST(URIEncoder, mapsInEveryStyleSortedWithoutCase) {
    EXPECT_EQ(texts(std::map<std::string, int>{{"x", 1}, {"Y", 2}}), "x=1&Y=2|k=x,1,Y,2|x=1,Y=2|x,1,Y,2");
    EXPECT_EQ(texts(std::map<std::string, int>{{"a b", 1}}), "a%20b=1|k=a%20b,1|a%20b=1|a%20b,1");
    EXPECT_EQ(texts(std::map<std::string, int>{}), "|||");
    Search search;
    search.query = "q";
    EXPECT_EQ(texts(search), "query=q|k=query,q|query=q|query,q");
    search.limit = 10;
    search.page = 2;
    EXPECT_EQ(encoder(Style::form, true, Space::plus).encode(search, ""), "limit=10.0&page=2&query=q");
}

TEST(URIEncoder, absentValuesWriteNothingButHaveNoPlaceInAList) {
    EXPECT_EQ(texts(std::optional<int>()), "|||");
    EXPECT_EQ(texts(std::optional<Strings>(Strings{"a"})), "k=a|k=a|a|a");
    EXPECT_EQ(
        failure<GeneralError>(Writing{[](platform::Encoder& e) { e.unkeyedContainer().encodeNil(); }}),
        GeneralError(GeneralError::Kind::nilNotSupported)
    );
}

TEST(URIEncoder, onlyFlatValuesHaveAText) {
    using Deep = std::vector<Strings>;
    const SerializationError nested(SerializationError::Kind::nestedContainersNotSupported);
    EXPECT_EQ(failure<SerializationError>(Deep{{"a"}, {"b"}}), nested);
    EXPECT_EQ(failure<SerializationError>(Deep{{}}), nested) << "an unset child is no primitive";
    EXPECT_EQ(failure<SerializationError>(std::map<std::string, Strings>{{"x", {"a"}}}), nested);
    Search search;
    search.tags = Strings{"a"};
    EXPECT_EQ(failure<SerializationError>(search), nested);
    EXPECT_EQ(
        failure<GeneralError>(std::uint64_t{9223372036854775808U}), GeneralError(GeneralError::Kind::integerOutOfRange)
    );
}

TEST(URIEncoder, aMixOfContainersInOnePlaceFails) {
    using Kind = InsertionError::Kind;

    struct Case {
        Kind kind;
        void (*write)(platform::Encoder&);
    };

    const Case cases[] = {
        {Kind::settingPrimitiveValueAgain,
         [](platform::Encoder& e) {
             e.singleValueContainer().encode(1);
             e.singleValueContainer().encode(2);
         }},
        {Kind::settingValueOnAContainer,
         [](platform::Encoder& e) {
             e.container().encode("a", 1);
             e.singleValueContainer().encode(2);
         }},
        {Kind::appendingToNonArrayContainer,
         [](platform::Encoder& e) {
             e.container().encode("a", 1);
             e.unkeyedContainer().encode(2);
         }},
        {Kind::insertingChildValueIntoNonContainer,
         [](platform::Encoder& e) {
             e.singleValueContainer().encode(1);
             e.container().encode("a", Strings{"b"});
         }},
        {Kind::insertingChildValueIntoArrayUsingNonIntValueKey,
         [](platform::Encoder& e) {
             e.unkeyedContainer().encode(1);
             e.container().encode("a", 2);
         }},
    };
    for (const auto& [kind, write] : cases) {
        EXPECT_EQ(failure<InsertionError>(Writing{write}), InsertionError(kind)) << InsertionError(kind).what();
    }
}

TEST(URIValueToNodeEncoder, nestedContainersAndSuperEncodersWriteToTheCurrentNode) {
    const Writing value{[](platform::Encoder& e) {
        auto container = e.container();
        container.encodeNil("nil");
        container.nestedContainer("ignored").encode("a", 1);
        container.superEncoder()->container().encode("b", 2);
        container.encode("a", Strings{"last", "wins"});
    }};
    URIValueToNodeEncoder encoder;
    URIEncodedNode list;
    list.append(URIEncodedNode::primitive("last"));
    list.append(URIEncodedNode::primitive("wins"));
    EXPECT_EQ(
        encoder.encodeValue(value),
        URIEncodedNode::dictionary({{"b", URIEncodedNode::primitive(std::int64_t{2})}, {"a", list}})
    );
    EXPECT_EQ(
        encoder.encodeValue(Writing{[](platform::Encoder& e) {
            e.unkeyedContainer().nestedUnkeyedContainer().encode("x");
        }}),
        URIEncodedNode::array({URIEncodedNode::primitive("x")})
    );
}

TEST(URIValueToNodeEncoder, codingPathFollowsTheDescentAndResetsAfterAFailure) {
    const Writing failing{[](platform::Encoder& e) { throw std::runtime_error(e.codingPath().description()); }};
    URIValueToNodeEncoder encoder;
    for (int repeat = 0; repeat < 2; ++repeat) {
        try {
            static_cast<void>(encoder.encodeValue(std::map<std::string, std::vector<Writing>>{{"m", {failing}}}));
            FAIL() << "the value's own failure passes out";
        } catch (const std::runtime_error& error) {
            EXPECT_STREQ(error.what(), "m/0");
        }
        EXPECT_TRUE(encoder.currentNode().isUnset());
    }
}

TEST(URICoderConfiguration, equalityLeavesTheDatesOut) {
    const URICoderConfiguration plain(Style::form, true, Space::plus, nullptr);
    const URICoderConfiguration dated(Style::form, true, Space::plus, ISO8601DateTranscoder::iso8601());
    EXPECT_EQ(plain, dated);
    EXPECT_EQ(std::hash<URICoderConfiguration>()(plain), std::hash<URICoderConfiguration>()(dated));
    EXPECT_FALSE(plain == URICoderConfiguration());
}

} // namespace
