#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Servers.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <memory>

// An address that nothing can be loaded from ends the call in the transport: the whole library is linked and runs, and
// no server is needed.
int main() {
    using OpenAPIURLSession::URLSessionTransport;
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    const auto transport = std::make_shared<URLSessionTransport>(configuration);
    const auto base = platform::URL::make("mailto:nobody");
    QuillbeamAPI::Client client(*base, transport);
    try {
        (void)platform::syncWait(client.getDomains());
        return 1;
    } catch (const OpenAPIRuntime::ClientError& error) {
        return error.causeDescription == "Transport threw an error." && !error.response ? 0 : 2;
    }
}
