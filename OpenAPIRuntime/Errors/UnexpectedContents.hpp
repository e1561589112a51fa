#pragma once

#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"

#include <string_view>
#include <type_traits>

/// How accessors fail, without the header of the error itself: whatever has accessors stays light to include.
namespace OpenAPIRuntime::inline v1 {

/// Fails on behalf of an accessor that was asked for another status than the response has.
/// @param expectedStatus the name of the accessor, such as "ok"
/// @param response the whole response, kept for the error's text
/// @throws RuntimeError always: the case `unexpectedResponseStatus`
[[noreturn]] QUILLBEAM_EXPORT void
throwUnexpectedResponseStatus(std::string_view expectedStatus, platform::AnyValue response);

template <class Response>
    requires(!std::is_same_v<Response, platform::AnyValue>)
[[noreturn]] void throwUnexpectedResponseStatus(std::string_view expectedStatus, const Response& response) {
    throwUnexpectedResponseStatus(expectedStatus, platform::AnyValue(response));
}

/// Fails on behalf of an accessor that was asked for another content type than the body has.
/// @param expectedContent the content type of the accessor
/// @param body the whole body, kept for the error's text
/// @throws RuntimeError always: the case `unexpectedResponseBody`
[[noreturn]] QUILLBEAM_EXPORT void
throwUnexpectedResponseBody(std::string_view expectedContent, platform::AnyValue body);

template <class Body>
    requires(!std::is_same_v<Body, platform::AnyValue>)
[[noreturn]] void throwUnexpectedResponseBody(std::string_view expectedContent, const Body& body) {
    throwUnexpectedResponseBody(expectedContent, platform::AnyValue(body));
}

} // namespace OpenAPIRuntime::inline v1
