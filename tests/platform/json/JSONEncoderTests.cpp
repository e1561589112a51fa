#include "platform/json/JSONEncoder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <limits>
#include <stdexcept>

namespace {

using namespace platform;

/// Encodes itself by a function.
struct Scripted {
    std::function<void(Encoder&)> body;
};

} // namespace

template <>
struct platform::Coding<Scripted> {
    static constexpr std::string_view typeName = "Scripted";

    static void encode(Encoder& encoder, const Scripted& value) { value.body(encoder); }
};

namespace {

constexpr auto sorted = JSONEncoder::sortedKeys;

std::string encoded(std::function<void(Encoder&)> body, JSONEncoder::OutputFormatting formatting = JSONEncoder::plain) {
    return JSONEncoder(formatting).encode(Scripted{std::move(body)});
}

template <class T>
std::string failure(const T& value) {
    try {
        (void)JSONEncoder().encode(value);
    } catch (const EncodingError& error) {
        return error.what();
    }
    return "no error";
}

TEST(JSONEncoder, WritesScalars) {
    const JSONEncoder encoder;
    EXPECT_EQ(encoder.encode(true), "true");
    EXPECT_EQ(encoder.encode(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(encoder.encode(std::numeric_limits<std::uint64_t>::max()), "18446744073709551615");
    EXPECT_EQ(encoder.encode(std::uint8_t{255}), "255");
    EXPECT_EQ(encoder.encode(0.1F), "0.1");
    EXPECT_EQ(encoder.encode(std::optional<int>()), "null");
    EXPECT_EQ(
        encoder.encode(std::vector{0.0, -0.0, 3.0, -1.5, 1e15, 9007199254740991.0, 1e300, 5e-324}),
        "[0,-0,3,-1.5,1000000000000000,9007199254740991,1e+300,5e-324]"
    );
    EXPECT_EQ(encoder.encode(Date(std::chrono::milliseconds(1500))), "1.5");
    EXPECT_EQ(
        encoder.encode(std::string("\"\\/\b\f\n\r\t\x01\x1F\x7F é\U0001F600 and so on and on\0", 36)),
        "\"\\\"\\\\\\/\\b\\f\\n\\r\\t\\u0001\\u001f\x7F é\U0001F600 and so on and on\\u0000\""
    );
    EXPECT_EQ(JSONEncoder(JSONEncoder::withoutEscapingSlashes).encode(std::string("a/b")), R"("a/b")");
    EXPECT_EQ(
        encoder.encode(std::string("0123456789abcdef\xC3 \xFF/")), "\"0123456789abcdef\xEF\xBF\xBD \xEF\xBF\xBD\\/\""
    );
}

TEST(JSONEncoder, LaysOutAndSorts) {
    const auto body = [](Encoder& encoder) {
        auto container = encoder.container();
        container.encode("b\n", 1); // sorts by the key, not by its escaped form
        container.encode("b", std::vector<int>());
        container.encode("prefix-b", std::map<std::string, int>());
        container.encode("prefix-a", std::vector{1, 2});
        container.encode("b!", std::map<std::string, bool>{{"x", true}});
    };
    EXPECT_EQ(encoded(body), R"({"b\n":1,"b":[],"prefix-b":{},"prefix-a":[1,2],"b!":{"x":true}})");
    EXPECT_EQ(encoded(body, sorted), R"({"b":[],"b\n":1,"b!":{"x":true},"prefix-a":[1,2],"prefix-b":{}})");
    EXPECT_EQ(encoded(body, sorted | JSONEncoder::prettyPrinted), R"({
  "b": [],
  "b\n": 1,
  "b!": {
    "x": true
  },
  "prefix-a": [
    1,
    2
  ],
  "prefix-b": {}
})");
}

TEST(JSONEncoder, OfTwoMembersWithOneKeyTheLastCounts) {
    const auto body = [](Encoder& encoder) {
        auto container = encoder.container();
        container.encode("b", 1);
        container.encode("a", 2);
        encoder.container().encode("b", 3); // a second container is on the same object
    };
    EXPECT_EQ(encoded(body), R"({"a":2,"b":3})");
    EXPECT_EQ(encoded(body, sorted), R"({"a":2,"b":3})");
}

TEST(JSONEncoder, NestedContainersAndSuperEncodersWorkInAnyOrder) {
    const auto body = [](Encoder& encoder) {
        auto top = encoder.container();
        auto z = top.nestedContainer("z");
        auto list = top.nestedUnkeyedContainer("m");
        const auto super = top.superEncoder();
        const auto named = top.superEncoder("empty");
        top.encode("a", 1);
        list.encode(1);
        auto inList = list.nestedContainer();
        EXPECT_EQ(inList.codingPath().description(), "m/1");
        auto listInList = list.nestedUnkeyedContainer();
        const auto superInList = list.superEncoder();
        list.encodeNil();
        EXPECT_EQ(list.count(), 5U);
        z.encode("y", 2);
        z.encodeIfPresent("none", std::optional<int>());
        listInList.encode(std::string("x"));
        inList.encode("k", true);
        z.encodeNil("x");
        superInList->singleValueContainer().encode(2.5);
        super->container().encode("s", std::vector{std::map<std::string, int>{{"d", 1}}});
        top.encode("b", 2);
    };
    EXPECT_EQ(
        encoded(body),
        R"({"z":{"y":2,"x":null},"m":[1,{"k":true},["x"],2.5,null],"super":{"s":[{"d":1}]},"empty":{},"a":1,"b":2})"
    );
    EXPECT_EQ(encoded(body, sorted | JSONEncoder::prettyPrinted), R"({
  "a": 1,
  "b": 2,
  "empty": {},
  "m": [
    1,
    {
      "k": true
    },
    [
      "x"
    ],
    2.5,
    null
  ],
  "super": {
    "s": [
      {
        "d": 1
      }
    ]
  },
  "z": {
    "x": null,
    "y": 2
  }
})");
}

TEST(JSONEncoder, RefusesWhatHasNoForm) {
    EXPECT_EQ(
        failure(std::map<std::string, std::vector<double>>{{"k", {1, std::numeric_limits<double>::infinity()}}}),
        "EncodingError: invalidValue inf - at k/1: Unable to encode inf directly in JSON. (underlying error: <nil>)"
    );
    EXPECT_NE(failure(std::numeric_limits<float>::quiet_NaN()), "no error");
    EXPECT_EQ(
        failure(Scripted{[](Encoder&) {}}),
        "EncodingError: invalidValue Scripted - at : Top-level Scripted did not "
        "encode any values. (underlying error: <nil>)"
    );
    EXPECT_EQ(JSONEncoder().encode(std::vector{Scripted{[](Encoder&) {}}}), "[{}]");
    EXPECT_NE(
        failure(Scripted{[](Encoder& encoder) {
            encoder.singleValueContainer().encode(1);
            encoder.singleValueContainer().encode(2);
        }}),
        "no error"
    );
    EXPECT_NE(
        failure(Scripted{[](Encoder& encoder) {
            (void)encoder.container();
            (void)encoder.unkeyedContainer();
        }}),
        "no error"
    );
    // A member that fails leaves nothing behind, so that another may take its place.
    const Scripted failing{[](Encoder& encoder) {
        auto container = encoder.container();
        (void)container.nestedContainer("x");
        container.encode("y", std::numeric_limits<double>::infinity());
    }};
    EXPECT_EQ(
        encoded([&](Encoder& encoder) {
            auto container = encoder.container();
            container.encode("a", 1);
            EXPECT_THROW(container.encode("b", failing), EncodingError);
            container.encode("b", 2);
        }),
        R"({"a":1,"b":2})"
    );
    EXPECT_EQ(
        encoded([&](Encoder& encoder) {
            auto container = encoder.singleValueContainer();
            EXPECT_THROW(container.encode(failing), EncodingError);
            container.encode(3);
        }),
        "3"
    );
}

Scripted lists(int depth) {
    return {[depth](Encoder& encoder) {
        auto container = encoder.unkeyedContainer();
        if (depth > 1) container.encode(lists(depth - 1));
    }};
}

void nest(KeyedEncodingContainer& container, int depth) {
    if (depth == 1) return;
    auto inner = container.nestedContainer("k");
    nest(inner, depth - 1);
}

TEST(JSONEncoder, WritesNothingThatIsTooDeepToRead) {
    const auto objects = [](int depth) {
        return Scripted{[depth](Encoder& encoder) {
            auto container = encoder.container();
            nest(container, depth);
        }};
    };
    EXPECT_EQ(JSONEncoder().encode(lists(512)).size(), 1024U);
    EXPECT_EQ(JSONEncoder().encode(objects(512)).size(), 512U * 2 + 511 * 4);
    for (const Scripted& value : {lists(513), objects(513)}) {
        const std::string text = failure(value);
        EXPECT_NE(text.find(": More than 512 containers inside one another."), std::string::npos) << text;
        EXPECT_EQ(std::count(text.begin(), text.end(), '/'), 511) << text; // 512 keys lead to what is refused
    }
}

TEST(JSONEncoder, DatesGoThroughTheStrategy) {
    const JSONEncoder encoder(JSONEncoder::plain, [](Date date) {
        if (date < Date()) throw std::invalid_argument("too early");
        return std::to_string(date.time_since_epoch().count()) + "/";
    });
    EXPECT_EQ(encoder.encode(std::vector{Date(std::chrono::microseconds(7))}), R"(["7\/"])");
    EXPECT_THROW((void)encoder.encode(Date(std::chrono::microseconds(-1))), std::invalid_argument);
}

} // namespace
