#include "OpenAPIRuntime/Interface/UniversalClient.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

namespace {

std::shared_ptr<const detail::ClientStack> share(detail::ClientStack stack) {
    return std::make_shared<const detail::ClientStack>(std::move(stack));
}

} // namespace

UniversalClient::UniversalClient(
    platform::URL serverURL,
    Configuration configuration,
    std::shared_ptr<ClientTransport> transport,
    std::vector<std::shared_ptr<ClientMiddleware>> middlewares
)
    : stack_(share(
          {std::move(serverURL), Converter(std::move(configuration)), std::move(transport), std::move(middlewares)}
      )) {}

void UniversalClient::setTransport(std::shared_ptr<ClientTransport> transport) {
    detail::ClientStack stack = *stack_;
    stack.transport = std::move(transport);
    stack_ = share(std::move(stack));
}

void UniversalClient::setMiddlewares(std::vector<std::shared_ptr<ClientMiddleware>> middlewares) {
    detail::ClientStack stack = *stack_;
    stack.middlewares = std::move(middlewares);
    stack_ = share(std::move(stack));
}

} // namespace OpenAPIRuntime::inline v1
