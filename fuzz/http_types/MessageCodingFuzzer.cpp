#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <algorithm>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <string_view>

// The input is JSON, read as each kind of message.

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;

void require(bool holds) {
    if (!holds) std::abort();
}

void requireSame(const HTTPField& left, const HTTPField& right) {
    require(left == right && left.name.rawName() == right.name.rawName());
}

void requireSame(const HTTPFields& left, const HTTPFields& right) {
    require(left == right && left.size() == right.size());
    for (std::size_t i = 0; i < left.size(); ++i)
        requireSame(left[i], right[i]);
}

void requireSame(const HTTPRequest& left, const HTTPRequest& right) {
    require(left == right);
    requireSame(left.headerFields, right.headerFields);
}

void requireSame(const HTTPResponse& left, const HTTPResponse& right) {
    require(left == right && left.reasonPhrase() == right.reasonPhrase());
    requireSame(left.headerFields, right.headerFields);
}

template <class T>
std::optional<T> accepted(std::string_view json) {
    try {
        return platform::JSONDecoder().decode<T>(json);
    } catch (const platform::DecodingError& error) {
        require(!error.context().debugDescription.empty());
    } catch (const HTTPResponse::DecodingError& error) {
        require(HTTPResponse::Status(200, error.reasonPhrase()).reasonPhrase() != error.reasonPhrase());
    }
    return std::nullopt;
}

/// What was accepted reads back as the same value from its coded form, and that form is then its own.
template <class T>
std::optional<T> check(std::string_view json) {
    const std::optional<T> value = accepted<T>(json);
    if (value) {
        const std::string text = platform::JSONEncoder().encode(*value);
        const std::optional<T> again = accepted<T>(text);
        require(again.has_value());
        requireSame(*value, *again);
        require(platform::JSONEncoder().encode(*again) == text);
    }
    return value;
}

/// What no value in memory may hold never comes through decoding either.
void requireValid(const HTTPFields& fields) {
    for (const HTTPField& field : fields) {
        require(!field.name.isPseudo() && HTTPField::Name::make(field.name.rawName()) == field.name);
        require(HTTPField::isValidValue(field.rawValue().bytes()));
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view json(reinterpret_cast<const char*>(data), size);
    check<HTTPField>(json);
    if (const auto fields = check<HTTPFields>(json)) requireValid(*fields);
    if (const auto request = check<HTTPRequest>(json)) {
        requireValid(request->headerFields);
        require(HTTPRequest::Method::make(request->method().rawValue()) == request->method());
        HTTPRequest changed = *request;
        changed.setPath(changed.path());
        require(changed.path() == request->path());
    }
    if (const auto response = check<HTTPResponse>(json)) {
        requireValid(response->headerFields);
        require(response->pseudoHeaderFields.status().value() == response->status().fieldValue());
    }
    return 0;
}
