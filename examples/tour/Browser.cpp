#include "examples/tour/Browser.hpp"

#include "OpenAPIURLSession/URLSessionTransport.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/url/URLComponents.hpp"

#include <stdexcept>

namespace examples {

namespace {

using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using OpenAPIRuntime::ClientTransport;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using OpenAPIURLSession::URLSessionTransport;
using platform::Task;
using platform::URL;
using platform::URLComponents;

constexpr std::size_t longestContent = 1 << 20;

Task<Page>
load(std::shared_ptr<ClientTransport> transport, HTTPRequest request, std::optional<HTTPBody> body, URL url) {
    Task<HTTPResponseAndBody> sending = transport->send(std::move(request), std::move(body), std::move(url), "visit");
    HTTPResponseAndBody answer = co_await std::move(sending);
    std::string content;
    if (answer.body) {
        const HTTPBody received = *answer.body;
        platform::ByteChunk bytes = co_await OpenAPIRuntime::collect(received, longestContent);
        content = bytes.view();
    }
    co_return Page(answer.response.status().code(), answer.response.headerFields, std::move(content));
}

} // namespace

Browser::Browser() {
    platform::URLSessionConfiguration loading;
    loading.maximumRedirects = 0;
    const URLSessionTransport::Configuration configuration{platform::URLSession(loading)};
    transport_ = std::make_shared<URLSessionTransport>(configuration);
}

Task<Page> Browser::visit(HTTPRequest::Method method, std::string address) const {
    return visit(std::move(method), std::move(address), HTTPFields());
}

Task<Page> Browser::visit(HTTPRequest::Method method, std::string address, HTTPFields fields) const {
    return visit(std::move(method), std::move(address), std::move(fields), std::nullopt);
}

Task<Page>
Browser::visit(HTTPRequest::Method method, std::string address, HTTPFields fields, std::optional<HTTPBody> body) const {
    auto components = URLComponents::make(address);
    if (!components) throw std::invalid_argument("not an address: " + address);
    std::string path = components->percentEncodedPath();
    if (const auto& query = components->percentEncodedQuery()) path += "?" + *query;
    components->setPercentEncodedPath("");
    HTTPRequest request(method, std::nullopt, std::nullopt, path, std::move(fields));
    return load(transport_, std::move(request), std::move(body), components->url().value());
}

} // namespace examples
