#pragma once

#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "http_types/HTTPFields.hpp"
#include "http_types/HTTPRequest.hpp"
#include "platform/concurrency/Task.hpp"

#include <memory>
#include <optional>
#include <string>
#include <utility>

namespace examples {

/// What a browser got.
struct Page {
    int status = 0;
    HTTPTypes::HTTPFields fields{};
    std::string content{}; ///< the bytes of the body

    Page() = default;

    Page(int status_, HTTPTypes::HTTPFields fields_, std::string content_)
        : status(status_)
        , fields(std::move(fields_))
        , content(std::move(content_)) {}
};

/// Plain HTTP as people send it, who have no key: they follow short links, confirm a checkout, upload a picture. It is
/// the same transport that the client uses, without the client. It follows no redirect.
class Browser {
public:
    Browser();

    /// @param address absolute
    platform::Task<Page> visit(HTTPTypes::HTTPRequest::Method method, std::string address) const;
    platform::Task<Page>
    visit(HTTPTypes::HTTPRequest::Method method, std::string address, HTTPTypes::HTTPFields fields) const;
    platform::Task<Page> visit(
        HTTPTypes::HTTPRequest::Method method,
        std::string address,
        HTTPTypes::HTTPFields fields,
        std::optional<OpenAPIRuntime::HTTPBody> body
    ) const;

private:
    std::shared_ptr<OpenAPIRuntime::ClientTransport> transport_;
};

} // namespace examples
