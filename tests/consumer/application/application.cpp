#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Servers.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <cstdio>
#include <cstring>
#include <memory>

// A request path that no URL can hold ends the call before anything goes on the wire: the whole library is linked and
// runs, and no server is needed.
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
        return std::strstr(error.what(), "Invalid request URL") != nullptr ? 0 : 2;
    }
}
