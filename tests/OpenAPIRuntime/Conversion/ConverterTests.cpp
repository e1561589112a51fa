#include "OpenAPIRuntime/Conversion/Converter.hpp"
#include "OpenAPIRuntime/Conversion/ISO8601DateTranscoder.hpp"
#include "OpenAPIRuntime/Interface/AnySequence.hpp"
#include "platform/coding/CodingError.hpp"
#include "platform/concurrency/Continuation.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <limits>
#include <map>
#include <memory>
#include <optional>
#include <stdexcept>
#include <string>
#include <thread>
#include <vector>

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using OpenAPIRuntime::AcceptHeaderContentType;
using OpenAPIRuntime::Configuration;
using OpenAPIRuntime::Converter;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::ISO8601DateTranscoder;
using OpenAPIRuntime::OpenAPIMIMEType;
using OpenAPIRuntime::ParameterStyle;
using OpenAPIRuntime::QualityValue;
using OpenAPIRuntime::RuntimeError;
using platform::Date;
using platform::syncWait;

using List = std::vector<std::string>;
using Map = std::map<std::string, int>;

const Converter converter{Configuration()};
const Date date = std::chrono::sys_days(std::chrono::January / 2 / 2024) + std::chrono::hours(3) +
                  std::chrono::minutes(4) + std::chrono::milliseconds(5678);

/// What a function gives, or "error: " and the text of the error that it throws.
std::string outcome(const std::function<std::string()>& function) {
    try {
        return function();
    } catch (...) {
        return "error: " + platform::prettyDescription(std::current_exception());
    }
}

TEST(Converter, RendersPaths) {
    EXPECT_EQ(converter.renderedPath("/domains"), "/domains");
    EXPECT_EQ(converter.renderedPath("/a/{}/b"), "/a/{}/b");
    EXPECT_EQ(converter.renderedPath("/a/{}/b", "x y"), "/a/x%20y/b");
    EXPECT_EQ(converter.renderedPath("/a/{}/{}", std::string("{}/?"), 5), "/a/%7B%7D%2F%3F/5");
    EXPECT_EQ(converter.renderedPath("/a/{}", "b", "dropped"), "/a/b");
    EXPECT_EQ(converter.renderedPath("/{}/{}", List{"a", "b"}, date), "/a,b/2024-01-02T03%3A04%3A05Z");
    EXPECT_ANY_THROW((void)converter.renderedPath("/a/{}", "b", std::vector<List>{{"nested"}}));
}

TEST(Converter, AppendsQueryItems) {
    // What a path becomes when a value is appended to it as "k".
    struct Case {
        std::optional<std::string> path;
        std::function<void(HTTPRequest&)> append;
        std::string expected;
    };

    const auto item = [](auto value, std::optional<ParameterStyle> style = {}, std::optional<bool> explode = {}) {
        return [=](HTTPRequest& request) { converter.setQueryItemAsURI(request, style, explode, "k", value); };
    };
    const std::string unsupported =
        "error: Unsupported parameter style, parameter name: 'k', kind: query, style: simple, ";
    const auto form = ParameterStyle::form;
    const auto simple = ParameterStyle::simple;
    const std::vector<Case> cases = {
        {"/x", item("2"), "/x?k=2"},
        {"/x?a=1#f", item("2"), "/x?a=1&k=2#f"},
        {"/x#f?a=1", item("2"), "/x?k=2#f?a=1"},
        {"/x?", item(2), "/x?&k=2"},
        {"", item(true), "?k=true"},
        {"/x", item(std::optional<std::string>("a b")), "/x?k=a%20b"},
        {"/x", item(std::optional<std::string>()), "/x"},
        {"/x", item(std::optional<std::string>(), simple), "/x"},
        {"/x", item(List{"a", "b&c"}), "/x?k=a&k=b%26c"},
        {"/x", item(List{"a", "b"}, form, false), "/x?k=a,b"},
        {"/x", item(List()), "/x?"},
        {"/x", item(Map{{"x", 1}, {"Y", 2}}, form, true), "/x?x=1&Y=2"},
        {"/x", item(1.0), "/x?k=1.0"},
        {"/x", item(date), "/x?k=2024-01-02T03%3A04%3A05Z"},
        {"/x", item("2", simple), unsupported + "explode: false"},
        {"/x", item("2", simple, true), unsupported + "explode: true"},
        {std::nullopt, item("2"), "error: Path was not set on the request."},
    };
    for (const auto& [path, append, expected] : cases) {
        HTTPRequest request(HTTPRequest::Method::get, std::nullopt, std::nullopt, path);
        EXPECT_EQ(
            outcome([&] {
                append(request);
                return *request.path();
            }),
            expected
        );
        if (expected.starts_with("error")) {
            EXPECT_EQ(request.path(), path);
        }
    }
}

TEST(Converter, AppendsHeaderFields) {
    HTTPFields fields;
    converter.setHeaderFieldAsURI(fields, "X-App", "a b");
    converter.setHeaderFieldAsURI(fields, "x-app", List{"a", "b"});
    converter.setHeaderFieldAsURI(fields, "X-App", std::optional<int>());
    converter.setHeaderFieldAsURI(fields, "bad name", std::optional<int>());
    EXPECT_EQ(fields.values(*HTTPField::Name::make("X-App")), (List{"a%20b", "a,b"}));
    EXPECT_EQ(
        outcome([&] {
            converter.setHeaderFieldAsURI(fields, "bad name", std::vector<List>{{"nested"}});
            return "";
        }),
        "error: Invalid header field name: 'bad name'"
    );
    EXPECT_ANY_THROW(converter.setHeaderFieldAsURI(fields, "X-App", std::vector<List>{{"nested"}}));
    EXPECT_EQ(fields.size(), 2u);
}

struct ContentType {
    std::string text;

    static std::optional<ContentType> fromRawValue(std::string_view rawValue) {
        return ContentType{std::string(rawValue)};
    }

    [[nodiscard]] std::string rawValue() const { return text; }

    static List allCases() { return {}; }

    bool operator==(const ContentType&) const = default;
};

TEST(Converter, SetsTheAcceptField) {
    using Accept = AcceptHeaderContentType<ContentType>;
    HTTPFields fields{{HTTPField::Name::accept, "old"}};
    converter.setAcceptHeader(
        fields, std::vector{Accept({"application/json"}), Accept({"text/plain"}, QualityValue(0.5))}
    );
    EXPECT_EQ(fields[HTTPField::Name::accept], "application/json, text/plain; q=0.500");
    converter.setAcceptHeader(fields, std::vector<Accept>());
    EXPECT_EQ(fields.values(HTTPField::Name::accept), List{""});
}

TEST(Converter, ChoosesTheBestContentType) {
    struct Case {
        std::optional<std::string> received;
        List options;
        std::string expected;
    };

    const std::string unexpected = "error: Unexpected Content-Type header: ";
    const std::vector<Case> cases = {
        {std::nullopt, {"application/json", "bad"}, "application/json"},
        {"*/*", {"bad"}, "bad"},
        {"text/*", {"application/json", "text/plain"}, "application/json"},
        {"malformed", {"application/json"}, "application/json"},
        {"APPLICATION/JSON", {"application/json"}, "application/json"},
        {"text/plain", {"application/json", "application/xml"}, unexpected + "application/json"},
        {"text/plain", {"text/*", "*/*"}, "text/*"},
        {"text/plain", {"*/*", "text/plain"}, "text/plain"},
        {"text/plain", {"text/plain", "Text/Plain"}, "text/plain"},
        {"application/json; charset=utf-8",
         {"application/json", "application/json; charset=utf-8"},
         "application/json; charset=utf-8"},
        {"application/json; charset=utf-8",
         {"application/json; charset=ascii"},
         unexpected + "application/json; charset=ascii"},
        {"text/plain", {"text/plain", "bad"}, "error: Invalid expected content type: 'bad'"},
    };
    for (const auto& [received, options, expected] : cases) {
        SCOPED_TRACE(received.value_or("none"));
        HTTPFields fields;
        fields.setValue(HTTPField::Name::contentType, received);
        const auto type = converter.extractContentTypeIfPresent(fields);
        EXPECT_EQ(outcome([&] { return converter.bestContentType(type, options); }), expected);
        if (options.size() == 1) {
            const std::string_view only = options[0];
            EXPECT_EQ(outcome([&] { return std::string(converter.bestContentType(type, {only})); }), expected);
        }
    }
}

TEST(Converter, WritesJSONBodies) {
    HTTPFields fields{{HTTPField::Name::contentType, "old"}};
    const std::map<std::string, std::optional<std::string>> value = {{"url", "a/b"}};
    const HTTPBody body = converter.setRequiredRequestBodyAsJSON(value, fields, "application/json; charset=utf-8");
    EXPECT_EQ(syncWait(OpenAPIRuntime::collect<std::string>(body, 100)), "{\n  \"url\": \"a\\/b\"\n}");
    EXPECT_EQ(fields[HTTPField::Name::contentType], "application/json; charset=utf-8");
    EXPECT_EQ(fields[HTTPField::Name::contentLength], std::to_string(body.length().byteCount().value()));
    EXPECT_EQ(fields.size(), 2u);

    HTTPFields untouched;
    EXPECT_FALSE(converter.setOptionalRequestBodyAsJSON(std::optional<int>(), untouched, "application/json"));
    EXPECT_THROW(
        (void)converter.setRequiredRequestBodyAsJSON(std::numeric_limits<double>::infinity(), untouched, "a/b"),
        platform::EncodingError
    );
    EXPECT_TRUE(untouched.empty());
    EXPECT_TRUE(converter.setOptionalRequestBodyAsJSON(std::optional(List{"x"}), untouched, "application/json"));
    EXPECT_EQ(untouched.size(), 2u);
    EXPECT_EQ(converter.headerFieldEncoder().encode(Map{{"b/", 1}, {"a", 2}}), R"({"a":2,"b/":1})");
}

/// A body in two chunks, the second of which comes from another thread.
struct SlowChunks {
    using Element = platform::ByteChunk;

    struct Iterator {
        using Element = platform::ByteChunk;
        int position = 0;

        platform::Task<std::optional<Element>> next() {
            ++position;
            if (position == 1) return platform::Task<std::optional<Element>>::ready(Element("[1,"));
            return later(position == 2);
        }

        static platform::Task<std::optional<Element>> later(bool more) {
            auto body = [](platform::Continuation<void> continuation) {
                std::thread([continuation = std::move(continuation)]() mutable { continuation.resume(); }).detach();
            };
            auto waiting = platform::withContinuation<void>(std::move(body));
            co_await waiting;
            std::optional<Element> chunk;
            if (more) chunk = Element("2]");
            co_return chunk;
        }
    };

    [[nodiscard]] Iterator makeAsyncIterator() const { return {}; }
};

TEST(Converter, ReadsJSONBodies) {
    const auto sum = [](const std::vector<int>& numbers) {
        int result = 0;
        for (const int number : numbers)
            result += number;
        return std::to_string(result);
    };
    const auto read = [&](std::optional<HTTPBody> body) {
        return outcome([&] { return syncWait(converter.getResponseBodyAsJSON<std::vector<int>>(body, sum)); });
    };
    EXPECT_EQ(read(HTTPBody(" [1, 2, 3]")), "6");
    EXPECT_EQ(read(HTTPBody(SlowChunks(), HTTPBody::Length::unknown())), "3");
    EXPECT_EQ(read(std::nullopt), "error: Missing required response body");
    EXPECT_EQ(read(HTTPBody()).find("error: DecodingError: dataCorrupted - at : "), 0u);
    EXPECT_EQ(read(HTTPBody("[1, \"2\"]")).find("error: DecodingError: typeMismatch Int32 - at "), 0u);
    EXPECT_TRUE(converter.getResponseBodyAsJSON<int>(HTTPBody("7")).isReady());
    EXPECT_EQ(syncWait(converter.getResponseBodyAsJSON<int>(HTTPBody("7"))), 7);
}

/// Counts days since the epoch, and refuses those before it.
struct DayTranscoder final : OpenAPIRuntime::DateTranscoder {
    [[nodiscard]] std::string encode(Date value) const override {
        if (value < Date()) throw std::runtime_error("before the epoch");
        return std::to_string(std::chrono::duration_cast<std::chrono::days>(value.time_since_epoch()).count());
    }

    [[nodiscard]] Date decode(std::string_view text) const override {
        return Date(std::chrono::days(std::stoi(std::string(text))));
    }
};

TEST(Converter, EveryDateGoesThroughTheTranscoder) {
    const Converter days{Configuration(std::make_shared<const DayTranscoder>())};
    const Date second = Date(std::chrono::days(2));
    EXPECT_EQ(days.encoder().encode(second), "\"2\"");
    EXPECT_EQ(days.headerFieldEncoder().encode(second), "\"2\"");
    EXPECT_EQ(days.decoder().decode<Date>("\"2\""), second);
    EXPECT_EQ(days.renderedPath("/{}", second), "/2");
    EXPECT_EQ(outcome([&] { return days.encoder().encode(Date(std::chrono::days(-1))); }), "error: before the epoch");
    EXPECT_EQ(
        outcome([&] { return days.renderedPath("/{}", Date(std::chrono::days(-1))); }), "error: before the epoch"
    );

    const auto plain = ISO8601DateTranscoder::iso8601();
    const auto fractional = ISO8601DateTranscoder::iso8601WithFractionalSeconds();
    EXPECT_EQ(plain->encode(date), "2024-01-02T03:04:05Z");
    EXPECT_EQ(fractional->encode(date), "2024-01-02T03:04:05.678Z");
    EXPECT_EQ(fractional->decode("2024-01-02T03:04:05.678Z"), date);
    const std::string refused = "error: DecodingError: dataCorrupted - at : Expected date string to be "
                                "ISO8601-formatted. (underlying error: <nil>)";
    EXPECT_EQ(outcome([&] { return plain->encode(plain->decode("2024-01-02T03:04:05.678Z")); }), refused);
    EXPECT_EQ(outcome([&] { return plain->encode(plain->decode("yesterday")); }), refused);
    EXPECT_EQ(outcome([&] { return plain->encode(converter.decoder().decode<Date>("\"yesterday\"")); }), refused);
}

} // namespace
