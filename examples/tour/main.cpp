// Calls every operation that the sandbox serves and tells what came back:
//
//     tour ADDRESS KEY
//
// Ends with status 0 if everything was as expected.

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "examples/tour/Domains.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <exception>
#include <iostream>

namespace {

// A port that is reserved (RFC 6335, section 6): nobody listens there.
constexpr const char* addressOfNobody = "http://127.0.0.1:1";

bool walk(const char* address, const char* key) {
    using OpenAPIURLSession::URLSessionTransport;
    using QuillbeamAPI::Client;

    const auto server = platform::URL::make(address);
    if (!server) throw std::invalid_argument(std::string("not an address: ") + address);
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    auto transport = std::make_shared<URLSessionTransport>(configuration);
    auto trace = std::make_shared<examples::Trace>();
    auto authentication = std::make_shared<OpenAPIRuntime::BearerToken>(key);
    auto guide = std::make_shared<examples::Guide>(examples::Guide{
        Client(*server, transport, {authentication, trace}),
        Client(*server, transport, {trace}),
        Client(*server, transport, {authentication, std::make_shared<examples::WishedStatus>(418), trace}),
        Client(*platform::URL::make(addressOfNobody), transport, {trace}),
        trace,
    });
    std::cout << "A tour of the service at " << address << '\n';
    platform::syncWait(examples::walkDomains(guide));
    return guide->report.finish();
}

} // namespace

int main(int count, char** arguments) {
    if (count != 3) {
        std::cerr << "Usage: tour ADDRESS KEY\n";
        return 2;
    }
    try {
        return walk(arguments[1], arguments[2]) ? 0 : 1;
    } catch (const std::exception& error) {
        std::cerr << "tour: " << error.what() << '\n';
        return 1;
    }
}
