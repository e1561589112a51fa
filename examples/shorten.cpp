// Shortens one URL, on the first of the account's domains.
//
//     shorten ADDRESS KEY URL

#include "OpenAPIRuntime/Middlewares/BearerToken.hpp"
#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Links.hpp"
#include "platform/concurrency/SyncWait.hpp"

#include <iostream>
#include <memory>

int main(int count, char** arguments) {
    using OpenAPIURLSession::URLSessionTransport;
    const auto server = platform::URL::make(count == 4 ? arguments[1] : "");
    if (count != 4 || !server) {
        std::cerr << "Usage: shorten ADDRESS KEY URL\n";
        return 2;
    }
    const URLSessionTransport::Configuration configuration{platform::URLSession()};
    const auto transport = std::make_shared<URLSessionTransport>(configuration);
    const auto authentication = std::make_shared<OpenAPIRuntime::BearerToken>(arguments[2]);
    QuillbeamAPI::Client client(*server, transport, {authentication});
    try {
        const auto domains = platform::syncWait(client.getDomains());
        QuillbeamAPI::Components::Schemas::CreateLinkDTO link;
        link.destinationUrl = arguments[3];
        link.domain = domains.ok().body.json().domains.at(0).name;
        const auto output = platform::syncWait(client.createLink(link));
        std::cout << output.created().body.json().shortUrl << '\n';
    } catch (const std::exception& error) { // also where the service refuses the URL: the text then tells why
        std::cerr << error.what() << '\n';
        return 1;
    }
}
