#include "platform/coding/Fields.hpp"
#include "platform/json/JSONDecoder.hpp"

#include <gtest/gtest.h>

#include <bit>
#include <cmath>
#include <limits>
#include <stdexcept>
#include <tuple>

namespace {

using namespace platform;

/// What an action fails with, or "no error".
std::string message(const auto& action) {
    try {
        action();
    } catch (const DecodingError& error) {
        return error.what();
    }
    return "no error";
}

/// What decoding fails with, or "no error".
template <class T>
std::string failure(std::string_view json) {
    return message([json] { (void)JSONDecoder().decode<T>(json); });
}

/// Runs a function on the decoder at the top of `json`.
struct Probe {
    inline static std::function<void(Decoder&)> body;
};

} // namespace

template <>
struct platform::Coding<Probe> {
    static void decode(Decoder& decoder, Probe& /*out*/) { Probe::body(decoder); }
};

namespace {

void probe(std::string_view json, std::function<void(Decoder&)> body, const JSONDecoder& decoder = JSONDecoder()) {
    Probe::body = std::move(body);
    (void)decoder.decode<Probe>(json);
}

TEST(JSONDecoder, AcceptsExactlyWhatTheGrammarAllows) {
    const std::string deep(512, '[');
    const std::string deepEnd(512, ']');
    // The value is never read: only the text counts.
    const std::vector<std::string> accepted{
        "null",
        " \t\r\n true \n",
        "[]",
        "{ }",
        "[[],{}]",
        "0",
        "-0",
        "-0.0e-0",
        "1E+2",
        "123456789012345678901234567890",
        "1e999",
        R"("\"\\\/\b\f\n\r\t\u12aB")",
        R"("\ud83d\ude00")",
        R"("\u0000")",
        "\"\x7F\"",
        "\"\xF4\x8F\xBF\xBF\"",
        R"({"":0,"":1})",
        deep + deepEnd,
    };
    for (const auto& json : accepted)
        EXPECT_NO_THROW(probe(json, [](Decoder&) {})) << json;

    struct Refused {
        std::string json;
        std::size_t offset;
    };

    const std::vector<Refused> refused{
        {"", 0},
        {" ", 1},
        {"nul", 0},
        {"nulL", 0},
        {"True", 0},
        {"NaN", 0},
        {"+1", 0},
        {"01", 0},
        {"-", 1},
        {"-a", 1},
        {"1.", 2},
        {".5", 0},
        {"1e", 2},
        {"1e+", 3},
        {"0x1", 1},
        {"[1,]", 3},
        {"[1 2]", 3},
        {"[,1]", 1},
        {"[", 1},
        {"[1", 2},
        {"]", 0},
        {"{", 1},
        {"{\"a\"}", 4},
        {"{\"a\":}", 5},
        {"{\"a\":1,}", 7},
        {"{a:1}", 1},
        {"{1:1}", 1},
        {"{\"a\":1 \"b\"", 7},
        {"[1}", 2},
        {"{\"a\":1]", 6},
        {"1 2", 2},
        {"[]]", 2},
        {"\"", 0},
        {"\"\\", 1},
        {"'a'", 0},
        {"\"a\nb\"", 2},
        {std::string("\"\0\"", 3), 1},
        {"\"\\x\"", 1},
        {"\"\\u12g4\"", 1},
        {"\"\\ud800\"", 1},
        {"\"\\udc00\"", 1},
        {"\"\\ud800\\u0041\"", 1},
        {"\"\\ud800\\ud800\"", 1},
        {"\"\x80\"", 1},
        {"\"\xC0\xAF\"", 1},
        {"\"\xE0\x9F\xBF\"", 1},
        {"\"\xED\xA0\x80\"", 1},
        {"\"\xF4\x90\x80\x80\"", 1},
        {"\"\xF0\x9F\x98", 1},
        {"\xEF\xBB\xBF"
         "1",
         0},
        {"/**/1", 0},
        {"1//", 1},
        {std::string("1\0", 2), 1},
        {"[" + deep + deepEnd + "]", 512},
        {R"({"skipped":tru,"a":1})", 11},
    };
    for (const auto& [json, offset] : refused) {
        const std::string text = failure<bool>(json);
        EXPECT_TRUE(text.starts_with("DecodingError: dataCorrupted - at : The given data was not valid JSON: "))
            << json << text;
        EXPECT_NE(text.find("(byte offset " + std::to_string(offset) + ")"), std::string::npos) << json << "\n" << text;
    }
}

TEST(JSONDecoder, ReadsNumbersExactly) {
    const std::vector<std::pair<std::string, double>> doubles{
        {"0", 0.0},
        {"-0", -0.0},
        {"123456789012345", 123456789012345.0},
        {"9007199254740993", 9007199254740992.0},
        {"0.1", 0.1},
        {"1e22", 1e22},
        {"1e23", 1e23},
        {"5e-324", 5e-324},
        {"2.4703282292062327e-324", 0.0},
        {"2.4703282292062328e-324", 5e-324},
        {"-1e-400", -0.0},
        {"1.7976931348623157e308", 1.7976931348623157e308},
        {"2.2250738585072011e-308", 2.2250738585072011e-308},
        {"0.000000000000000000000000001e27", 1.0},
    };
    for (const auto& [json, expected] : doubles) {
        const auto value = JSONDecoder().decode<double>(json);
        EXPECT_EQ(std::bit_cast<std::uint64_t>(value), std::bit_cast<std::uint64_t>(expected)) << json;
    }
    EXPECT_EQ(JSONDecoder().decode<float>("0.1"), 0.1F);
    EXPECT_EQ(JSONDecoder().decode<float>("1e-60"), 0.0F);

    EXPECT_EQ(JSONDecoder().decode<std::int64_t>("-9223372036854775808"), std::numeric_limits<std::int64_t>::min());
    EXPECT_EQ(JSONDecoder().decode<std::uint64_t>("18446744073709551615"), std::numeric_limits<std::uint64_t>::max());
    EXPECT_EQ(
        JSONDecoder().decode<std::uint64_t>("1.8446744073709551615e19"), std::numeric_limits<std::uint64_t>::max()
    );
    EXPECT_EQ(JSONDecoder().decode<std::int8_t>("-128"), -128);
    EXPECT_EQ(JSONDecoder().decode<std::int8_t>("-1.28e+2"), -128);
    EXPECT_EQ(JSONDecoder().decode<std::uint8_t>("2550e-1"), 255);
    EXPECT_EQ(JSONDecoder().decode<unsigned>("-0.0"), 0U);
    EXPECT_EQ(JSONDecoder().decode<int>("0e99999999999999999999"), 0);

    const auto doesNotFit = [](const std::string& json, const std::string& type) {
        return "DecodingError: dataCorrupted - at : Parsed JSON number <" + json + "> does not fit in " + type +
               " (byte offset 0). (underlying error: <nil>)";
    };
    EXPECT_EQ(failure<double>("-1e309"), doesNotFit("-1e309", "Double"));
    EXPECT_EQ(failure<float>("1e39"), doesNotFit("1e39", "Float"));
    EXPECT_EQ(failure<std::int8_t>("128"), doesNotFit("128", "Int8"));
    EXPECT_EQ(failure<std::uint16_t>("-1"), doesNotFit("-1", "UInt16"));
    EXPECT_EQ(failure<std::int32_t>("1.5"), doesNotFit("1.5", "Int32"));
    EXPECT_EQ(failure<std::int64_t>("1e-99999999999999999999"), doesNotFit("1e-99999999999999999999", "Int64"));
    EXPECT_EQ(failure<std::int64_t>("9223372036854775808"), doesNotFit("9223372036854775808", "Int64"));
    EXPECT_EQ(failure<std::uint64_t>("18446744073709551616"), doesNotFit("18446744073709551616", "UInt64"));
}

TEST(JSONDecoder, ReadsStringsAndKeysWithEscapes) {
    EXPECT_EQ(
        JSONDecoder().decode<std::string>(R"("\"\\\/\b\f\n\r\t\u0041\u00e9\u20ac\ud83d\ude00é0123456789abcdef")"),
        "\"\\/\b\f\n\r\tAé€\U0001F600é0123456789abcdef"
    );
    EXPECT_EQ(JSONDecoder().decode<std::string>(R"("\u0000x")"), std::string("\0x", 2));
    const std::map<std::string, int> expected{{"a", 1}, {"b", 2}};
    EXPECT_EQ((JSONDecoder().decode<std::map<std::string, int>>(R"({"\u0061":1,"b":2,"a":3})")), expected);
}

struct Row {
    int b = 0;
    std::optional<int> xy{}, missing{7};
    int a = 0;

    static const platform::RecordFields& recordFields() {
        using platform::field;
        static const platform::RecordTable table(
            "Row", field("b", &Row::b), field("xy", &Row::xy), field("missing", &Row::missing), field("a", &Row::a)
        );
        return table;
    }
};

TEST(JSONDecoder, TheFirstOfEqualKeysCountsInAnyOrderOfLookups) {
    std::string large = R"({"a":1,"x\u0079":2,)";
    for (int i = 0; i < 100; ++i)
        large += "\"k" + std::to_string(i) + "\":" + std::to_string(i) + ",";
    large += R"("a":9,"xy":9,"b":3})";
    for (const std::string& json : {std::string(R"({"a":1,"xy":2,"b":3,"a":9,"xy":9,"b":9})"), large}) {
        const auto row = JSONDecoder().decode<Row>(json);
        EXPECT_EQ(std::tuple(row.a, row.b, row.xy, row.missing), std::tuple(1, 3, 2, std::nullopt));
        probe(json, [](Decoder& decoder) {
            auto container = decoder.container();
            EXPECT_EQ(container.decode<int>("b"), 3);
            EXPECT_EQ(container.decode<int>("xy"), 2);
            EXPECT_EQ(container.decode<int>("a"), 1);
            EXPECT_EQ(container.decode<int>("a"), 1);
            EXPECT_FALSE(container.contains("c"));
            EXPECT_EQ(container.allKeys().size(), container.contains("k99") ? 103U : 3U);
        });
    }
    probe(R"({"":1})", [](Decoder& decoder) { EXPECT_EQ(decoder.container().decode<int>(std::string_view()), 1); });
}

TEST(JSONDecoder, OffersEveryContainerOperation) {
    const std::string json = R"({"n":null,"i":7,"o":{"p":{"q":[1,null,{"r":"s"},[true]]}},"super":{"t":1},"b":false})";
    probe(json, [](Decoder& decoder) {
        auto top = decoder.container();
        EXPECT_TRUE(decoder.codingPath().empty());
        EXPECT_EQ(top.allKeys(), (std::vector<std::string>{"n", "i", "o", "super", "b"}));
        EXPECT_TRUE(top.decodeNil("n"));
        EXPECT_FALSE(top.decodeNil("i"));
        EXPECT_TRUE(top.contains("n"));
        EXPECT_EQ(top.decodeIfPresent<int>("n"), std::nullopt);
        EXPECT_EQ(top.decodeIfPresent<int>("zz"), std::nullopt);
        EXPECT_EQ(top.decodeIfPresent<int>("i"), 7);
        EXPECT_EQ(top.decode<std::optional<int>>("n"), std::nullopt);

        auto outer = top.nestedContainer("o");
        auto inner = outer.nestedContainer("p");
        auto list = inner.nestedUnkeyedContainer("q");
        EXPECT_EQ(top.decode<bool>("b"), false); // other containers may be used meanwhile
        EXPECT_EQ(list.codingPath().description(), "o/p/q");
        EXPECT_EQ(list.count(), 4U);
        EXPECT_FALSE(list.decodeNil());
        EXPECT_EQ(list.currentIndex(), 0U);
        EXPECT_EQ(list.decode<double>(), 1.0);
        EXPECT_EQ(list.decodeIfPresent<int>(), std::nullopt);
        {
            auto element = list.nestedContainer();
            EXPECT_EQ(element.codingPath().description(), "o/p/q/2");
            EXPECT_EQ(element.decode<std::string>("r"), "s");
        }
        auto last = list.superDecoder();
        EXPECT_EQ(last->codingPath().description(), "o/p/q/3");
        EXPECT_TRUE(last->unkeyedContainer().decode<bool>());
        EXPECT_TRUE(list.isAtEnd());
        EXPECT_EQ(list.decodeIfPresent<int>(), std::nullopt);

        EXPECT_EQ(top.superDecoder()->container().decode<int>("t"), 1);
        EXPECT_TRUE(top.superDecoder("missing")->singleValueContainer().decodeNil());
        auto nestedList = inner.nestedUnkeyedContainer("q");
        (void)nestedList.superDecoder();
        (void)nestedList.decodeNil();
        EXPECT_THROW((void)nestedList.nestedUnkeyedContainer(), DecodingError);
        EXPECT_EQ(nestedList.currentIndex(), 2U); // what failed is not passed
    });

    probe("12", [](Decoder& decoder) { // trying one type after another
        auto value = decoder.singleValueContainer();
        std::vector<int> list;
        std::string text;
        std::int8_t small = 0;
        EXPECT_FALSE(value.tryDecode(list) || value.tryDecode(text) || value.decodeNil());
        EXPECT_TRUE(value.tryDecode(small));
        EXPECT_EQ(small, 12);
    });
}

TEST(JSONDecoder, TellsWhereAndWhy) {
    using Lists = std::map<std::string, std::vector<int>>;
    EXPECT_EQ(
        failure<Lists>(R"({"a":[1,"x"]})"),
        "DecodingError: typeMismatch Int32 - at a/1: Expected to decode Int32 but "
        "found a string instead (byte offset 8). "
        "(underlying error: <nil>)"
    );
    EXPECT_EQ(
        failure<Lists>(R"({"a":[null]})"),
        "DecodingError: valueNotFound Int32 - at a/0: Expected Int32 value but found null instead (byte offset 6). "
        "(underlying error: <nil>)"
    );
    EXPECT_EQ(
        failure<Lists>("[]"),
        "DecodingError: typeMismatch Dictionary<String, Array<Int32>> - at : Expected to decode Dictionary<String, "
        "Array<Int32>> but found an array instead (byte offset 0). (underlying error: <nil>)"
    );
    probe(R"({"a":{"b":[]}})", [](Decoder& decoder) {
        auto top = decoder.container();
        auto nested = top.nestedContainer("a");
        EXPECT_EQ(
            message([&] { (void)nested.decode<int>("c"); }),
            "DecodingError: keyNotFound c - at a: No value associated "
            "with key 'c' (byte offset 5). (underlying error: <nil>)"
        );
        EXPECT_EQ(
            message([&] { (void)nested.nestedUnkeyedContainer("b").decode<int>(); }),
            "DecodingError: valueNotFound Int32 - at a/b/0: The list is at its end (byte offset 10). (underlying "
            "error: <nil>)"
        );
        EXPECT_EQ(
            message([&] { nested.throwDataCorrupted("b", "no good"); }),
            "DecodingError: dataCorrupted - at a/b: no good (underlying error: <nil>)"
        );
        EXPECT_THROW((void)decoder.unkeyedContainer(), DecodingError);
    });
}

TEST(JSONDecoder, DatesGoThroughTheStrategy) {
    const JSONDecoder decoder([](std::string_view text) {
        if (text != "now/then") throw std::invalid_argument("what a date");
        return Date(std::chrono::seconds(5));
    });
    EXPECT_EQ(
        decoder.decode<std::vector<Date>>(R"(["now/then","now\/then"])"),
        std::vector<Date>(2, Date(std::chrono::seconds(5)))
    );
    EXPECT_THROW((void)decoder.decode<Date>(R"("later")"), std::invalid_argument);
    EXPECT_EQ(
        message([&] { (void)decoder.decode<Date>("5"); }),
        "DecodingError: typeMismatch String - at : Expected to decode String but found a number instead (byte offset "
        "0). "
        "(underlying error: <nil>)"
    );
    EXPECT_EQ(JSONDecoder().decode<Date>("-1.5"), Date(std::chrono::milliseconds(-1500)));
    EXPECT_THROW((void)JSONDecoder().decode<Date>("1e300"), DecodingError);
}

} // namespace
