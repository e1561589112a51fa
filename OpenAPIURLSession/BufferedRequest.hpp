#pragma once

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "platform/loading/URLSession.hpp"

#include <optional>

namespace OpenAPIURLSession::inline v1 {

/// Makes a call with both bodies held whole in memory. Fails with `platform::CancellationError` where the task was
/// cancelled before the transfer began, with `platform::URLError` (`cancelled`) where it was cancelled later.
[[nodiscard]] platform::Task<OpenAPIRuntime::HTTPResponseAndBody> bufferedRequest(
    platform::URLSession session,
    HTTPTypes::HTTPRequest request,
    platform::URL baseURL,
    std::optional<OpenAPIRuntime::HTTPBody> requestBody
);

} // namespace OpenAPIURLSession::inline v1
