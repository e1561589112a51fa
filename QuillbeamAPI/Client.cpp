#include "QuillbeamAPI/Client.hpp"

#include "OpenAPIRuntime/Interface/UniversalClient.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

APIProtocol::~APIProtocol() = default;

Client::Client(
    platform::URL serverURL,
    OpenAPIRuntime::Configuration configuration,
    std::shared_ptr<OpenAPIRuntime::ClientTransport> transport,
    std::vector<std::shared_ptr<OpenAPIRuntime::ClientMiddleware>> middlewares
)
    : client_(std::make_shared<const OpenAPIRuntime::UniversalClient>(
          std::move(serverURL), std::move(configuration), std::move(transport), std::move(middlewares)
      )) {}

Client::Client(
    platform::URL serverURL,
    std::shared_ptr<OpenAPIRuntime::ClientTransport> transport,
    std::vector<std::shared_ptr<OpenAPIRuntime::ClientMiddleware>> middlewares
)
    : Client(std::move(serverURL), OpenAPIRuntime::Configuration(), std::move(transport), std::move(middlewares)) {}

Client::Client(const Client&) = default;
Client& Client::operator=(const Client&) = default;
Client::~Client() = default;

} // namespace QuillbeamAPI::inline v1
