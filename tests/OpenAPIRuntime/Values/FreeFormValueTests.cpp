#include "OpenAPIRuntime/Values/OpenAPIArrayContainer.hpp"
#include "OpenAPIRuntime/Values/OpenAPIObjectContainer.hpp"
#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
#include "platform/coding/CodingError.hpp"
#include "platform/date/Date.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"
#include "tests/OpenAPIRuntime/Values/KindlessDecoder.hpp"

#include <gtest/gtest.h>

#include <limits>
#include <unordered_set>

namespace {

using OpenAPIRuntime::OpenAPIArrayContainer;
using OpenAPIRuntime::OpenAPIObjectContainer;
using OpenAPIRuntime::OpenAPIValueContainer;
using platform::AnyValue;
using platform::DecodingError;
using platform::EncodingError;
using platform::JSONDecoder;
using platform::JSONEncoder;

template <class T>
concept Converts = std::is_convertible_v<T, OpenAPIValueContainer>;

static_assert(!Converts<std::uint64_t> && !Converts<float> && !Converts<char> && !Converts<void*>);
static_assert(Converts<std::uint32_t> && Converts<std::optional<bool>> && Converts<const char*>);
static_assert(sizeof(OpenAPIValueContainer) == sizeof(std::string) + 8);

OpenAPIValueContainer parsed(std::string_view text) {
    return JSONDecoder().decode<OpenAPIValueContainer>(text);
}

TEST(OpenAPIValueContainer, IsBuiltFromPlainValues) {
    const OpenAPIObjectContainer object{
        {"b", nullptr},
        {"a", 1},
        {"list", OpenAPIArrayContainer{true, 1.5, "x", std::optional<int>(), OpenAPIArrayContainer{}}},
        {"a", "second"},
    };
    EXPECT_EQ(object.description(), R"(["a": 1, "b": nil, "list": [true, 1.5, "x", nil, []]])");
    EXPECT_EQ(object, parsed(R"({"list": [true, 1.5, "x", null, []], "a": 1, "b": null, "a": 2})"));
    const OpenAPIArrayContainer list{1, 2};
    EXPECT_EQ(OpenAPIArrayContainer{list}, list);
    EXPECT_EQ(OpenAPIArrayContainer{OpenAPIValueContainer(list)}.description(), "[[1, 2]]");
    EXPECT_EQ(OpenAPIArrayContainer(std::vector<std::string>{"a", "b"}).description(), R"(["a", "b"])");
    const std::map<std::string, int> counts{{"x", 1}, {"y", 2}};
    EXPECT_EQ(OpenAPIObjectContainer(counts), (OpenAPIObjectContainer{{"y", 2}, {"x", 1}}));
}

TEST(OpenAPIValueContainer, GivesAccessByKindKeyAndPosition) {
    OpenAPIObjectContainer object{{"a", 1}};
    object["c"] = 2.5;
    object["b"] = OpenAPIArrayContainer{"x"};
    ASSERT_NE(object.find("b"), nullptr);
    object.find("b")->getIf<OpenAPIArrayContainer>()->value().push_back(7);
    std::string keys;
    for (const auto& [key, value] : object)
        keys += key + value.description();
    EXPECT_EQ(keys, R"(a1b["x", 7]c2.5)");
    EXPECT_TRUE(object.erase("a"));
    EXPECT_FALSE(object.erase("a") || object.contains("a"));
    const OpenAPIValueContainer value = std::move(object);
    EXPECT_EQ(*value["b"][0].getIf<std::string>(), "x");
    EXPECT_EQ(value["b"][1].number(), 7.0);
    EXPECT_EQ(value["c"].number(), 2.5);
    EXPECT_FALSE(value["b"][2].hasValue() || value["z"][0]["y"].hasValue() || value["c"].is<std::int64_t>());
}

TEST(OpenAPIValueContainer, ComparesByKindAndHashesAlike) {
    const OpenAPIValueContainer values[] = {
        nullptr,
        false,
        true,
        0,
        1,
        0.0,
        1.0,
        "",
        "1",
        OpenAPIArrayContainer{},
        OpenAPIArrayContainer{1},
        OpenAPIArrayContainer{nullptr},
        OpenAPIArrayContainer{1, 2},
        OpenAPIArrayContainer{2, 1},
        OpenAPIObjectContainer{},
        OpenAPIObjectContainer{{"a", 1}},
        OpenAPIObjectContainer{{"a", nullptr}},
        OpenAPIObjectContainer{{"b", 1}},
    };
    for (const auto& left : values) {
        for (const auto& right : values)
            EXPECT_EQ(left == right, &left == &right) << left.description() << " " << right.description();
    }
    const OpenAPIObjectContainer one{{"a", 1}, {"b", OpenAPIArrayContainer{"x"}}};
    const OpenAPIObjectContainer same{{"b", OpenAPIArrayContainer{"x"}}, {"a", 1}};
    EXPECT_EQ(one, same);
    EXPECT_EQ(std::hash<OpenAPIObjectContainer>()(one), std::hash<OpenAPIValueContainer>()(same));
    EXPECT_EQ(std::unordered_set<OpenAPIValueContainer>(std::begin(values), std::end(values)).size(), 18U);
    EXPECT_EQ(
        std::hash<OpenAPIArrayContainer>()({}), std::hash<OpenAPIArrayContainer>()(OpenAPIArrayContainer{nullptr})
    ) << "what is absent adds nothing";
}

TEST(OpenAPIValueContainer, TakesWhatIsAPartOfItself) {
    for (const char* text : {R"({"in": 1})", R"({"in": "some text that is long"})", R"({"in": {"in": [1]}})"}) {
        OpenAPIValueContainer copied = parsed(text);
        OpenAPIValueContainer moved = copied;
        const OpenAPIValueContainer part = copied["in"];
        copied = copied["in"];
        moved = std::move(*moved.getIf<OpenAPIObjectContainer>()->find("in"));
        EXPECT_EQ(copied, part);
        EXPECT_EQ(moved, part);
    }
    OpenAPIArrayContainer list{OpenAPIArrayContainer{1, 2}, 3};
    list = *list[0].getIf<OpenAPIArrayContainer>();
    EXPECT_EQ(list.description(), "[1, 2]");
}

TEST(OpenAPIValueContainer, IsDestroyedAndRefusedByTheEncoderAtAnyDepth) {
    OpenAPIValueContainer value;
    for (int i = 0; i < 200'000; ++i) {
        OpenAPIArrayContainer list{7};
        list.value().push_back(std::move(value));
        value = OpenAPIObjectContainer(std::vector<OpenAPIObjectContainer::Member>(1));
        value.getIf<OpenAPIObjectContainer>()->find("")->emplace<OpenAPIArrayContainer>() = std::move(list);
    }
    EXPECT_THROW((void)JSONEncoder().encode(value), EncodingError);
    value = nullptr;
    EXPECT_FALSE(value.hasValue());
}

TEST(OpenAPIValueContainer, ValidatesValuesOfUnknownTypes) {
    using List = std::vector<AnyValue>;
    using Map = std::map<std::string, AnyValue>;
    const AnyValue good(
        Map{{"a", AnyValue(List{AnyValue(), AnyValue(1), AnyValue("x"), AnyValue(false)})},
            {"b", AnyValue(OpenAPIObjectContainer{{"c", 1.5}})}}
    );
    EXPECT_EQ(OpenAPIValueContainer::validating(good), parsed(R"({"a": [null, 1, "x", false], "b": {"c": 1.5}})"));
    EXPECT_EQ(OpenAPIArrayContainer::validating({AnyValue(std::string("s"))}), OpenAPIArrayContainer{"s"});
    EXPECT_EQ(OpenAPIObjectContainer::validating({{"k", AnyValue(2L)}}), (OpenAPIObjectContainer{{"k", 2}}));
    const AnyValue date{platform::Date()};
    for (const AnyValue& bad : {date, AnyValue(List{date}), AnyValue(Map{{"a", AnyValue(List{AnyValue(1), date})}})}) {
        try {
            static_cast<void>(OpenAPIValueContainer::validating(bad));
            ADD_FAILURE() << bad.description();
        } catch (const EncodingError& error) {
            EXPECT_EQ(error.context().debugDescription, "Type 'Date' is not a supported OpenAPI value.");
            EXPECT_TRUE(error.context().codingPath.empty());
            EXPECT_NE(error.value().getIf<platform::Date>(), nullptr);
        }
    }
}

TEST(OpenAPIValueContainer, RoundTripsThroughJSON) {
    struct {
        std::string_view json;
        OpenAPIValueContainer value;
        std::string_view encoded;
    } const cases[] = {
        {"true", true, "true"},
        {"1", 1, "1"},
        {"1.0", 1, "1"},
        {"1.5", 1.5, "1.5"},
        {"9223372036854775808", 9223372036854775808.0, "9.223372036854776e+18"},
        {"-9223372036854775808", std::numeric_limits<std::int64_t>::min(), "-9223372036854775808"},
        {R"("1")", "1", R"("1")"},
        {"null", nullptr, "null"},
        {"[]", OpenAPIArrayContainer{}, "[]"},
        {R"({"z":null,"a":[{},[null]],"prefix_2":2,"prefix_10":1})",
         OpenAPIObjectContainer{
             {"prefix_10", 1},
             {"prefix_2", 2},
             {"a", OpenAPIArrayContainer{OpenAPIObjectContainer{}, OpenAPIArrayContainer{nullptr}}},
             {"z", nullptr}
         },
         R"({"a":[{},[null]],"prefix_10":1,"prefix_2":2,"z":null})"},
    };

    for (const auto& [json, value, encoded] : cases) {
        EXPECT_EQ(parsed(json), value) << json;
        EXPECT_EQ(parsed(JSONEncoder().encode(value)), value);
        EXPECT_EQ(JSONEncoder().encode(value), encoded);
    }
}

/// A value that is written piece by piece through containers.
struct PieceByPiece {
    const OpenAPIValueContainer& value;
};

} // namespace

template <>
struct platform::Coding<PieceByPiece> {
    static void encode(Encoder& encoder, const PieceByPiece& piece) {
        if (const auto* const list = piece.value.getIf<OpenAPIArrayContainer>()) {
            auto container = encoder.unkeyedContainer();
            for (const OpenAPIValueContainer& element : *list)
                container.encode(PieceByPiece{element});
        } else if (const auto* const object = piece.value.getIf<OpenAPIObjectContainer>()) {
            auto container = encoder.container();
            for (const auto& [key, element] : *object)
                container.encode(key, PieceByPiece{element});
        } else {
            Coding<OpenAPIValueContainer>::encode(encoder, piece.value);
        }
    }
};

namespace {

TEST(OpenAPIValueContainer, IsTheSameByEveryWay) {
    std::string json =
        R"({"s":["","a/b","\"\\\n\u0001","h\u00e9 h\u00e9","0123456789abcdef/","0123456789abcdef01234\u00e9"],)";
    for (const std::size_t length : {3U, 4U, 7U, 8U, 15U, 16U, 17U, 33U, 2050U, 5000U})
        json += '"' + std::string(length, 'k') + "\":\"" + std::string(length - 1, 'v') + "/\",";
    for (int i = 0; i < 100; ++i)
        json += "\"n" + std::to_string(i * 37 % 100) + "\":[" + std::to_string(i) + ".125,-0.001,1e300,{}],";
    json += R"("e":{"a":[],"b":[[null,true,false]],"c":{"d":{}}}})";
    const OpenAPIValueContainer value = parsed(json);
    ASSERT_EQ(value["n37"][0].number(), 1.125);
    for (unsigned layout = 0; layout < 8; ++layout) {
        const JSONEncoder encoder(static_cast<JSONEncoder::OutputFormatting>(layout));
        EXPECT_EQ(encoder.encode(value), encoder.encode(PieceByPiece{value}));
        const OpenAPIArrayContainer list{value, value};
        EXPECT_EQ(
            encoder.encode(std::vector<OpenAPIValueContainer>{value, value}),
            encoder.encode(PieceByPiece{OpenAPIValueContainer(list)})
        );
    }
    kindless::Decoder decoder(value);
    OpenAPIValueContainer decoded;
    platform::Coding<OpenAPIValueContainer>::decode(decoder, decoded);
    EXPECT_EQ(decoded, value);
}

TEST(OpenAPIValueContainer, TellsWhatCannotBeCoded) {
    const auto failure = [](auto decode) -> std::string {
        try {
            decode();
        } catch (const DecodingError& error) {
            return std::string(error.context().codingPath.description() + "|" + error.context().debugDescription);
        }
        return "none";
    };
    EXPECT_EQ(failure([] { parsed(R"({"a": [1, 1e999]})"); }), "|OpenAPIValueContainer cannot be decoded");
    EXPECT_EQ(
        failure([] { static_cast<void>(JSONDecoder().decode<OpenAPIObjectContainer>(R"({"a": [1, 1e999]})")); }),
        "a|OpenAPIValueContainer cannot be decoded"
    );
    EXPECT_EQ(
        failure([] { static_cast<void>(JSONDecoder().decode<OpenAPIArrayContainer>("[1, 1e999]")); }),
        "1|OpenAPIValueContainer cannot be decoded"
    );
    EXPECT_EQ(
        failure([] { static_cast<void>(JSONDecoder().decode<OpenAPIObjectContainer>("[]")); }),
        "|Expected to decode OpenAPIObjectContainer but found an array instead (byte offset 0)."
    );
    try {
        const OpenAPIArrayContainer infinite{1, OpenAPIArrayContainer{std::numeric_limits<double>::infinity()}};
        static_cast<void>(JSONEncoder().encode(OpenAPIValueContainer(infinite)));
        ADD_FAILURE();
    } catch (const EncodingError& error) {
        EXPECT_EQ(error.context().codingPath.description(), "1/0");
    }
}

} // namespace
