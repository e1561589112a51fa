#include "OpenAPIRuntime/Errors/RuntimeError.hpp"

#include <gtest/gtest.h>

#include <map>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

using OpenAPIRuntime::ParameterStyle;
using OpenAPIRuntime::RuntimeError;
using platform::AnyValue;

TEST(RuntimeError, EveryCaseHasItsText) {
    const auto cause = std::make_exception_ptr(std::runtime_error("cause"));
    std::string longText;
    for (int i = 0; i < 130; ++i)
        longText += "é";
    const std::vector<std::pair<RuntimeError, std::string>> cases = {
        {RuntimeError::invalidServerURL("a b"), "Invalid server URL: a b"},
        {RuntimeError::invalidServerVariableValue("n", "v", {"x", "y"}),
         "Invalid server variable named: 'n', which has the value: 'v', but the only allowed values are: x, y"},
        {RuntimeError::invalidExpectedContentType("json"), "Invalid expected content type: 'json'"},
        {RuntimeError::invalidHeaderFieldName("a b"), "Invalid header field name: 'a b'"},
        {RuntimeError::invalidBase64String(longText),
         "Invalid base64-encoded string (first 128 bytes): '" + longText.substr(0, 256) + "'"},
        {RuntimeError::invalidBase64String("=="), "Invalid base64-encoded string (first 128 bytes): '=='"},
        {RuntimeError::failedToDecodeStringConvertibleValue("Int"), "Failed to decode a value of type 'Int'."},
        {RuntimeError::unsupportedParameterStyle(
             "p", RuntimeError::ParameterLocation::query, ParameterStyle::simple, false
         ),
         "Unsupported parameter style, parameter name: 'p', kind: query, style: simple, explode: false"},
        {RuntimeError::missingRequiredHeaderField("h"), "The required header field named 'h' is missing."},
        {RuntimeError::unexpectedContentTypeHeader("t"), "Unexpected Content-Type header: t"},
        {RuntimeError::unexpectedAcceptHeader("t"), "Unexpected Accept header: t"},
        {RuntimeError::malformedAcceptHeader("t"), "Malformed Accept header: t"},
        {RuntimeError::missingRequiredPathParameter("p"), "Missing required path parameter named: p"},
        {RuntimeError::missingRequiredQueryParameter("p"), "Missing required query parameter named: p"},
        {RuntimeError::transportFailed(cause), "Transport threw an error."},
        {RuntimeError::middlewareFailed("M", cause), "Middleware of type 'M' threw an error."},
        {RuntimeError::handlerFailed(cause), "User handler threw an error."},
        {RuntimeError::unexpectedResponseStatus("ok", AnyValue(404)),
         "Unexpected response, expected status code: ok, response: 404"},
        {RuntimeError::unexpectedResponseBody("application/json", AnyValue("text")),
         "Unexpected response body, expected content type: application/json, body: text"},
        {RuntimeError::missingOrMalformedContentDispositionName(),
         "Missing or malformed Content-Disposition header or it's missing a name."},
        {RuntimeError::pathUnset(), "Path was not set on the request."},
        {RuntimeError::missingRequiredRequestBody(), "Missing required request body"},
        {RuntimeError::missingRequiredResponseBody(), "Missing required response body"},
        {RuntimeError::missingRequiredMultipartFormDataContentType(), "Expected a 'multipart/form-data' content type."},
        {RuntimeError::missingMultipartBoundaryContentTypeParameter(),
         "Missing 'boundary' parameter in the 'multipart/form-data' content type."},
    };
    for (const auto& [error, text] : cases) {
        EXPECT_EQ(error.what(), text);
        EXPECT_EQ(error.errorDescription(), text);
        EXPECT_EQ(platform::prettyDescription(std::make_exception_ptr(error)), text);
    }
}

TEST(RuntimeError, PayloadsComeBack) {
    try {
        OpenAPIRuntime::throwUnexpectedResponseStatus("ok", std::vector<int>{1, 2});
    } catch (const RuntimeError& error) {
        const RuntimeError copy = error;
        const auto* payload = copy.getIf<RuntimeError::UnexpectedResponseStatus>();
        ASSERT_NE(payload, nullptr);
        EXPECT_EQ(*payload->response.getIf<std::vector<int>>(), (std::vector<int>{1, 2}));
        EXPECT_EQ(payload->response.getIf<int>(), nullptr);
        EXPECT_FALSE(copy.is<RuntimeError::UnexpectedResponseBody>());
    }
    EXPECT_THROW(OpenAPIRuntime::throwUnexpectedResponseBody("json", std::string("x")), RuntimeError);
}

struct Named {
    friend void describe(std::string& out, const Named&) { out += "Named()"; }
};

struct Nameless {};

enum class Style { one };

[[maybe_unused]] std::string_view rawValue(Style) {
    return "ONE";
}

TEST(DiagnosticText, NamesTheContentsOfAnyValue) {
    EXPECT_EQ(AnyValue().description(), "<nil>");
    EXPECT_EQ(AnyValue(std::string("a \"b\"")).description(), "a \"b\"");
    EXPECT_EQ(AnyValue(true).description(), "true");
    EXPECT_EQ(AnyValue(0.5).description(), "0.5");
    EXPECT_EQ(AnyValue(Style::one).description(), "ONE");
    EXPECT_EQ(AnyValue(Nameless()).description(), "Nameless");
    EXPECT_EQ(AnyValue(std::vector<Named>(2)).description(), "[Named(), Named()]");
    const std::map<std::string, std::optional<int>> map = {{"a\n\x01", 1}, {"b", std::nullopt}};
    EXPECT_EQ(AnyValue(map).description(), R"(["a\n\x01": 1, "b": nil])");
}

} // namespace
