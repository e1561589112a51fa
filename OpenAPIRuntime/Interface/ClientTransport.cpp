#include "OpenAPIRuntime/Interface/ClientTransport.hpp"

namespace OpenAPIRuntime::inline v1 {

ClientTransport::~ClientTransport() = default;

} // namespace OpenAPIRuntime::inline v1
