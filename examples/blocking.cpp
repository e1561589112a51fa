// A program without coroutines: lists the account's domains and waits for the answer.
//
//     blocking ADDRESS KEY

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <iostream>
#include <memory>

int main(int count, char** arguments) {
    using OpenAPIURLSession::URLSessionTransport;
    const auto server = platform::URL::make(count == 3 ? arguments[1] : "");
    if (count != 3 || !server) {
        std::cerr << "Usage: blocking ADDRESS KEY\n";
        return 2;
    }
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    const auto transport = std::make_shared<URLSessionTransport>(configuration);
    const auto authentication = std::make_shared<OpenAPIRuntime::BearerToken>(arguments[2]);
    QuillbeamAPI::Client client(*server, transport, {authentication});
    try {
        const auto output = platform::syncWait(client.getDomains());
        for (const auto& domain : output.ok().body.json().domains) {
            std::cout << domain.name << '\n';
        }
    } catch (const std::exception& error) { // the service could not be asked, or answered with another status
        std::cerr << error.what() << '\n';
        return 1;
    }
}
