#include "examples/tour/Guide.hpp"

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"

namespace examples {

namespace {

using OpenAPIRuntime::BearerToken;
using OpenAPIURLSession::URLSessionTransport;
using QuillbeamAPI::Client;

constexpr int noOperationsStatus = 418;

// A port that is reserved (RFC 6335, section 6): nobody listens there.
constexpr const char* addressOfNobody = "http://127.0.0.1:1";

std::shared_ptr<URLSessionTransport> makeTransport() {
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    return std::make_shared<URLSessionTransport>(configuration);
}

std::string_view nameOf(int documentedStatus) {
    switch (documentedStatus) {
    case 200:
        return "ok";
    case 201:
        return "created";
    case 400:
        return "badRequest";
    case 401:
        return "unauthorized";
    case 404:
        return "notFound";
    case 409:
        return "conflict";
    default:
        return "";
    }
}

} // namespace

Guide::Guide(const platform::URL& server_, const std::string& key)
    : server(server_)
    , transport(makeTransport())
    , trace(std::make_shared<Trace>())
    , client(clientWith(std::make_shared<BearerToken>(key)))
    , keyless(server, transport, {trace})
    , undocumented(server, transport, {std::make_shared<WishedStatus>(noOperationsStatus), trace})
    , unreachable(*URL::make(addressOfNobody), transport, {trace}) {}

Client Guide::clientWith(std::shared_ptr<ClientMiddleware> authentication) const {
    return {server, transport, {std::move(authentication), trace}};
}

void Guide::showStatus(std::string_view operation, int status, bool isDocumented, int expectedStatus) {
    const std::string request = trace->latest();
    const auto query = request.find('?');
    const std::string shown = query == std::string::npos ? request : request.substr(0, query) + "?...";
    report.call(operation, shown, status, isDocumented ? nameOf(status) : "undocumented", expectedStatus);
}

void Guide::showError(const ErrorResponseDTO& error) {
    if (error.code) report.detail("code", platform::rawValue(*error.code));
    report.detail("error", error.errorDescription);
}

} // namespace examples
