#include "OpenAPIURLSession/URLSessionTransport.hpp"

#include "OpenAPIURLSession/BufferedRequest.hpp"
#include "OpenAPIURLSession/URLSessionTransportError.hpp"

namespace OpenAPIURLSession::inline v1 {

using OpenAPIRuntime::HTTPResponseAndBody;
using platform::Task;

URLSessionTransport::Configuration::Configuration(platform::URLSession urlSession)
    : Configuration(std::move(urlSession), Implementation::buffering()) {}

URLSessionTransport::Configuration::Configuration(platform::URLSession urlSession, Implementation chosen)
    : session(std::move(urlSession))
    , implementation(chosen) {}

URLSessionTransport::URLSessionTransport(Configuration configuration_)
    : configuration(std::move(configuration_)) {}

Task<HTTPResponseAndBody> URLSessionTransport::send(
    HTTPTypes::HTTPRequest request,
    std::optional<OpenAPIRuntime::HTTPBody> body,
    platform::URL baseURL,
    std::string /*operationID*/
) {
    if (configuration.implementation.is<Configuration::Implementation::Streaming>()) {
        const auto error = URLSessionTransportError::streamingNotSupported();
        return Task<HTTPResponseAndBody>::failed(std::make_exception_ptr(error));
    }
    return bufferedRequest(configuration.session, std::move(request), std::move(baseURL), std::move(body));
}

} // namespace OpenAPIURLSession::inline v1
