// A coroutine that calls the service: finds the domains that still wait for their DNS records, and what is missing.
//
//     coroutine ADDRESS KEY

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "platform/concurrency/Task.hpp"

#include <iostream>
#include <memory>

namespace {

using namespace QuillbeamAPI::Operations;

platform::Task<int> countWaitingDomains(QuillbeamAPI::Client client) {
    int waiting = 0;
    auto list = co_await client.getDomains();
    for (const auto& domain : list.ok().body.json().domains) {
        auto current = co_await client.getDomain(getDomain::Path(domain.id));
        if (current.is<getDomain::Output::NotFound>()) continue; // deleted meanwhile
        if (current.ok().body.json().ready) continue;
        ++waiting;
        std::cout << domain.name << " is not ready\n";
        const auto& metadata = current.ok().body.json().domain.customDomainMetadata;
        if (!metadata) continue;
        for (const auto& error : metadata->verificationErrors) {
            std::cout << "  " << error << '\n';
        }
    }
    co_return waiting;
}

} // namespace

int main(int count, char** arguments) {
    using OpenAPIURLSession::URLSessionTransport;
    const auto server = platform::URL::make(count == 3 ? arguments[1] : "");
    if (count != 3 || !server) {
        std::cerr << "Usage: coroutine ADDRESS KEY\n";
        return 2;
    }
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    const auto transport = std::make_shared<URLSessionTransport>(configuration);
    const auto authentication = std::make_shared<OpenAPIRuntime::BearerToken>(arguments[2]);
    QuillbeamAPI::Client client(*server, transport, {authentication});
    try {
        const int waiting = platform::syncWait(countWaitingDomains(client));
        std::cout << waiting << " waiting\n";
    } catch (const std::exception& error) {
        std::cerr << error.what() << '\n';
        return 1;
    }
}
