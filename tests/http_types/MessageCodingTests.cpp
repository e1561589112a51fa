#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"
#include "tests/http_types/RecordingCoder.hpp"

#include <gtest/gtest.h>

#include <algorithm>
#include <random>
#include <string>
#include <string_view>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;
using Name = HTTPField::Name;
using Strategy = HTTPField::DynamicTableIndexingStrategy;

const platform::JSONEncoder encoder(platform::JSONEncoder::withoutEscapingSlashes);
const platform::JSONDecoder decoder;

HTTPRequest sampleRequest() {
    HTTPRequest request(HTTPRequest::Method::make("get").value(), "https", "a.example", "/é");
    HTTPField path = request.pseudoHeaderFields.path().value();
    path.indexingStrategy = Strategy::disallow;
    request.pseudoHeaderFields.setPath(path);
    request.setExtendedConnectProtocol("websocket");
    request.headerFields.append(HTTPField(Name::accept, "a\tb"));
    return request;
}

TEST(MessageCoding, Forms) {
    const HTTPRequest request = sampleRequest();
    EXPECT_EQ(
        encoder.encode(request),
        R"({"pseudoHeaderFields":[{"name":":method","value":"get"},{"name":":scheme","value":"https"},)"
        R"({"name":":authority","value":"a.example"},{"name":":path","value":"/Ã©","indexingStrategy":3},)"
        R"({"name":":protocol","value":"websocket"}],"headerFields":[{"name":"Accept","value":"a\tb"}]})"
    );
    const HTTPResponse response(HTTPResponse::Status(45, "a€"), HTTPFields(1, HTTPField(Name::age, "\xE9")));
    EXPECT_EQ(
        encoder.encode(response),
        R"({"pseudoHeaderFields":[{"name":":status","value":"045"}],"reasonPhrase":"a€",)"
        R"("headerFields":[{"name":"Age","value":"é"}]})"
    );
    const recording::Node recorded = recording::encoded(request);
    EXPECT_EQ(
        recorded.text(),
        "{pseudoHeaderFields:[{name:':method' value:'get'} {name:':scheme' value:'https'} "
        "{name:':authority' value:'a.example'} {name:':path' value:'/Ã©' indexingStrategy:3u} "
        "{name:':protocol' value:'websocket'}] headerFields:[{name:'Accept' value:'a\tb'}]}"
    );
    EXPECT_EQ(recording::decoded<HTTPRequest>(recorded), request);
    EXPECT_EQ(recording::decoded<HTTPResponse>(recording::encoded(response)).reasonPhrase(), "a€");
}

template <class T>
std::string afterDecoding(const std::string& json) {
    try {
        return encoder.encode(decoder.decode<T>(json));
    } catch (const platform::DecodingError& error) {
        return std::string(error.kind() == platform::DecodingError::Kind::dataCorrupted ? "" : "other ") +
               error.context().codingPath.description() + ": " + error.context().debugDescription;
    } catch (const HTTPResponse::DecodingError& error) {
        return error.what() + (" of " + std::to_string(error.reasonPhrase().size()));
    }
}

TEST(MessageCoding, DecodesStrictly) {
    struct Case {
        std::string (*decoding)(const std::string&);
        std::string json;
        std::string result;
    };

    const auto field = [](const std::string& name, const std::string& value, const std::string& more = "") {
        return R"({"name":")" + name + R"(","value":")" + value + '"' + more + '}';
    };
    const auto name = afterDecoding<Name>;
    const auto fieldResult = afterDecoding<HTTPField>;
    const auto fields = afterDecoding<HTTPFields>;
    const auto requestPseudo = afterDecoding<HTTPRequest::PseudoHeaderFields>;
    const auto responsePseudo = afterDecoding<HTTPResponse::PseudoHeaderFields>;
    const auto request = [](const std::string& pseudo) {
        return R"({"headerFields":[],"pseudoHeaderFields":[)" + pseudo + "]}";
    };
    const auto response = [&](const std::string& phrase) {
        return R"({"pseudoHeaderFields":[)" + field(":status", "200") + R"(],"reasonPhrase":")" + phrase +
               R"(","headerFields":[]})";
    };
    const std::string get = field(":method", "GET");
    std::vector<Case> cases{
        {name, R"("FOO")", R"("FOO")"},
        {name, R"(":foo")", R"(":foo")"},
        {name, R"("")", R"(: HTTP field name "" contains invalid characters)"},
        {name, R"("a b")", R"(: HTTP field name "a b" contains invalid characters)"},
        {name, R"(":FOO")", R"(: HTTP pseudo field name ":FOO" contains invalid characters)"},
        {name, R"(":")", R"(: HTTP pseudo field name ":" contains invalid characters)"},
        {name, R"("::a")", R"(: HTTP pseudo field name "::a" contains invalid characters)"},
        {name, "5", "other : Expected to decode String but found a number instead (byte offset 0)."},

        {fieldResult, field("é", ""), R"(name: HTTP field name "é" contains invalid characters)"},
        {fieldResult, field("a", " b"), R"(value: HTTP field value " b" contains invalid characters)"},
        {fieldResult, field("a", "\\u007f"), "value: HTTP field value \"\x7F\" contains invalid characters"},
        {fieldResult, field("a", "\\u0080"), field("a", "\u0080")},
        {fieldResult, field("a", "", R"(,"indexingStrategy":3)"), field("a", "", R"(,"indexingStrategy":3)")},
        {fieldResult, field("a", "", R"(,"indexingStrategy":0)"), field("a", "")},
        {fieldResult, field("a", "", R"(,"indexingStrategy":9)"), field("a", "")},
        {fieldResult, field("a", "", R"(,"indexingStrategy":null)"), field("a", "")},
        {fieldResult, R"({"name":"a"})", "other : No value associated with key 'value' (byte offset 0)."},
        // Above Latin-1 a character stands for its UTF-8 bytes, so it can never become a control character.
        {fieldResult, field("a", "\\u010a"), field("a", "Ä\u008A")},

        {fields,
         "[" + field("b", "1") + "," + field(":path", "/Ã©") + "]",
         R"(: Pseudo header field ":path: /é" disallowed)"},
        {fields,
         "[" + field("b", "1") + "," + field("é", "1") + "]",
         R"(1/name: HTTP field name "é" contains invalid characters)"},

        {requestPseudo, "[" + get + "," + field(":foo", "1") + "]", "[" + get + "]"},
        {requestPseudo, "[" + field("Accept", "text") + "]", R"(: "Accept: text" is not a pseudo header field)"},
        {requestPseudo, "[]", R"(: ":method" pseudo header field is missing)"},
        {requestPseudo, "[" + field(":method", "G T") + "]", R"(: "G T" is not a valid method)"},
        {requestPseudo, "[" + field(":method", "") + "]", R"(: "" is not a valid method)"},
        {requestPseudo, "[" + field(":status", "200") + "]", R"(: ":method" pseudo header field is missing)"},
        {afterDecoding<HTTPRequest>,
         request(get + "," + get),
         R"(pseudoHeaderFields: Multiple ":method" pseudo header fields)"},
        {afterDecoding<HTTPRequest>, "{}", "other : No value associated with key 'pseudoHeaderFields' (byte offset 0)."
        },
        {afterDecoding<HTTPRequest>,
         R"({"pseudoHeaderFields":[)" + get + "]}",
         "other : No value associated with key 'headerFields' (byte offset 0)."},

        {responsePseudo, "[]", R"(: ":status" pseudo header field is missing)"},
        {responsePseudo,
         "[" + field(":status", "200") + "," + field(":status", "200") + "]",
         R"(: Multiple ":status" pseudo header fields)"},
        {responsePseudo, "[" + field("Accept", "text") + "]", R"(: "Accept: text" is not a pseudo header field)"},
        {responsePseudo,
         "[" + field(":method", "GET") + "," + field(":status", "999") + "]",
         "[" + field(":status", "999") + "]"},
        {afterDecoding<HTTPResponse>,
         response("a\\nb"),
         R"(HTTPResponse.DecodingError: invalidReasonPhrase "a\nb" of 3)"},
        {afterDecoding<HTTPResponse>, response("é"), response("é")},
        {afterDecoding<HTTPResponse>,
         R"({"pseudoHeaderFields":[)" + field(":status", "200") + R"(],"headerFields":[]})",
         "other : No value associated with key 'reasonPhrase' (byte offset 0)."},
    };
    for (const std::string other : {":scheme", ":authority", ":path", ":protocol"}) {
        const std::string twice = field(other, "") + "," + field(other, "");
        cases.push_back({requestPseudo, "[" + twice + "]", ": Multiple \"" + other + "\" pseudo header fields"});
    }
    for (const std::string status : {"20", "2000", "2a0", ""}) {
        cases.push_back(
            {responsePseudo, "[" + field(":status", status) + "]", ": \"" + status + "\" is not a valid status code"}
        );
    }
    for (const Case& c : cases)
        EXPECT_EQ(c.decoding(c.json), c.result) << c.json;
}

TEST(MessageCoding, RefusesMoreFieldsThanACollectionHolds) {
    std::string list = "[";
    for (std::size_t i = 0; i < HTTPFields::maximumCount; ++i)
        list += R"({"name":"a","value":""},)";
    list.back() = ']';
    EXPECT_EQ(decoder.decode<HTTPFields>(list).size(), HTTPFields::maximumCount);
    list.back() = ',';
    EXPECT_EQ(
        afterDecoding<HTTPFields>(list + R"({"name":"a","value":""}])"), ": More than 65534 header fields disallowed"
    );
}

TEST(MessageCoding, RoundTripsOfRandomMessages) {
    const auto seed = std::random_device{}();
    SCOPED_TRACE("seed " + std::to_string(seed));
    std::mt19937 random(seed);
    const auto bytes = [&](std::size_t limit, std::string_view alphabet) {
        std::string text(random() % limit, ' ');
        std::ranges::generate(text, [&] {
            return alphabet.empty() ? static_cast<char>(random()) : alphabet[random() % alphabet.size()];
        });
        return text;
    };
    const auto fields = [&] {
        HTTPFields all;
        for (std::size_t count = random() % 5; count > 0; --count) {
            all.append(HTTPField(Name::make("X" + bytes(3, "aB-")).value(), bytes(9, "")));
            HTTPField last = all[all.size() - 1];
            last.indexingStrategy = Strategy{static_cast<std::uint8_t>(random() % 4)};
            all.set(all.size() - 1, last);
        }
        return all;
    };
    const auto sameSpelling = [](const HTTPField& left, const HTTPField& right) {
        return left == right && left.name.rawName() == right.name.rawName();
    };
    const auto sameFields = [&](const HTTPFields& left, const HTTPFields& right) {
        return std::ranges::equal(left, right, sameSpelling);
    };
    for (int round = 0; round < 500; ++round) {
        const std::string path = bytes(9, "");
        HTTPRequest request(
            HTTPRequest::Method::make("M" + bytes(4, "aZ!")).value(),
            std::nullopt,
            bytes(5, ""),
            random() % 2 == 0 ? std::nullopt : std::optional<std::string_view>(path),
            fields()
        );
        const auto requestAgain = decoder.decode<HTTPRequest>(encoder.encode(request));
        EXPECT_EQ(requestAgain, request);
        EXPECT_TRUE(sameFields(requestAgain.headerFields, request.headerFields));
        EXPECT_EQ(recording::decoded<HTTPRequest>(recording::encoded(request)), request);

        const HTTPResponse response(HTTPResponse::Status(static_cast<int>(random() % 1000), bytes(9, "")), fields());
        const auto responseAgain = decoder.decode<HTTPResponse>(encoder.encode(response));
        EXPECT_EQ(responseAgain, response);
        EXPECT_EQ(responseAgain.reasonPhrase(), response.reasonPhrase());
        EXPECT_TRUE(sameFields(responseAgain.headerFields, response.headerFields));
    }
}

TEST(MessageCoding, StandsInsideOtherValues) {
    const auto list = decoder.decode<std::vector<HTTPField>>(R"([{"name":"Age","value":"1"}])");
    EXPECT_EQ(list, std::vector<HTTPField>(1, HTTPField(Name::age, "1")));
    EXPECT_EQ(decoder.decode<std::optional<HTTPField>>("null"), std::nullopt);
    EXPECT_EQ(decoder.decode<std::optional<HTTPFields>>("[]"), HTTPFields());
}

} // namespace
