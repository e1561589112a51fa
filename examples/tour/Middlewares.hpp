#pragma once

#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"

#include <mutex>
#include <optional>
#include <string>
#include <utility>

namespace examples {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPRequest;
using OpenAPIRuntime::ClientMiddleware;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::HTTPResponseAndBody;
using platform::Task;
using platform::URL;

/// Asks the sandbox to answer with a status, whatever the request: one that the service documents for no operation.
class WishedStatus final : public ClientMiddleware {
public:
    explicit WishedStatus(int status)
        : value_(std::to_string(status)) {}

    Task<HTTPResponseAndBody> intercept(
        HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string /*operationID*/, Next next
    ) override {
        request.headerFields[HTTPField::Name::make("X-Sandbox-Status").value()] = value_;
        return next(std::move(request), std::move(body), std::move(baseURL));
    }

private:
    const std::string value_;
};

/// Counts the requests, and remembers the method and path of the latest.
class Trace final : public ClientMiddleware {
public:
    Task<HTTPResponseAndBody> intercept(
        HTTPRequest request, std::optional<HTTPBody> body, URL baseURL, std::string /*operationID*/, Next next
    ) override {
        {
            const std::lock_guard lock(mutex_);
            ++count_;
            latest_ = request.method().description() + " " + request.path().value_or("");
        }
        return next(std::move(request), std::move(body), std::move(baseURL));
    }

    std::string latest() const {
        const std::lock_guard lock(mutex_);
        return latest_;
    }

    int count() const {
        const std::lock_guard lock(mutex_);
        return count_;
    }

private:
    mutable std::mutex mutex_;
    std::string latest_;
    int count_ = 0;
};

} // namespace examples
