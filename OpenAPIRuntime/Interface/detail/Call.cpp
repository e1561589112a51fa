#include "OpenAPIRuntime/Interface/detail/Call.hpp"

#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "platform/TypeName.hpp"

#include <exception>
#include <typeinfo>

namespace OpenAPIRuntime::inline v1::detail {

namespace {

/// What a `ClientError` says of the error that caused it.
struct Cause {
    std::string description;
    std::exception_ptr underlyingError;
};

/// The errors that stand for a failed stage step back behind the error that the stage failed with.
Cause causeOf(const RuntimeError& error, std::exception_ptr itself) {
    std::exception_ptr underlying = error.visit([&](const auto& payload) -> std::exception_ptr {
        if constexpr (requires { payload.underlyingError; }) {
            return payload.underlyingError;
        } else {
            return std::move(itself);
        }
    });
    return {error.prettyDescription(), std::move(underlying)};
}

/// Passes a `ClientError` through by throwing it on.
Cause causeOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const ClientError&) {
        throw;
    } catch (const RuntimeError& runtimeError) {
        return causeOf(runtimeError, error);
    } catch (...) {
        return {"Unknown", error};
    }
}

bool isClientError(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const ClientError&) {
        return true;
    } catch (...) {
        return false;
    }
}

} // namespace

Call::~Call() = default;

platform::Task<HTTPResponseAndBody> Call::send() const {
    return enter(0, made_.request, made_.body, stack_->serverURL);
}

platform::Task<HTTPResponseAndBody> Call::enter(
    std::size_t position, HTTPTypes::HTTPRequest request, std::optional<HTTPBody> body, platform::URL baseURL
) const {
    if (position == stack_->middlewares.size()) {
        return stack_->transport->send(std::move(request), std::move(body), std::move(baseURL), operationID_);
    }
    return stack_->middlewares[position]->intercept(
        std::move(request),
        std::move(body),
        std::move(baseURL),
        operationID_,
        ClientMiddleware::Next(shared_from_this(), position + 1)
    );
}

platform::Task<HTTPResponseAndBody> Call::runFrom(
    std::shared_ptr<const Call> call,
    std::size_t position,
    HTTPTypes::HTTPRequest request,
    std::optional<HTTPBody> body,
    platform::URL baseURL
) {
    try {
        auto task = call->enter(position, std::move(request), std::move(body), std::move(baseURL));
        co_return co_await std::move(task);
    } catch (...) {
        call->failAt(position);
    }
}

void Call::failSerializing() const {
    fail(std::current_exception(), Context::none, nullptr);
}

void Call::failDeserializing(const HTTPResponseAndBody& received) const {
    fail(std::current_exception(), Context::request, &received);
}

void Call::failAt(std::size_t position) const {
    std::exception_ptr error = std::current_exception();
    if (isClientError(error)) std::rethrow_exception(error);
    if (position == stack_->middlewares.size()) {
        error = std::make_exception_ptr(RuntimeError::transportFailed(std::move(error)));
    } else {
        const ClientMiddleware& middleware = *stack_->middlewares[position];
        const std::string type = platform::unqualifiedTypeName(typeid(middleware));
        error = std::make_exception_ptr(RuntimeError::middlewareFailed(type, std::move(error)));
    }
    fail(error, Context::request, nullptr);
}

void Call::fail(const std::exception_ptr& error, Context context, const HTTPResponseAndBody* received) const {
    Cause cause = causeOf(error);
    const bool hasRequest = context == Context::request;
    throw ClientError(
        operationID_,
        operationInput(),
        hasRequest ? std::optional(made_.request) : std::nullopt,
        hasRequest ? made_.body : std::nullopt,
        hasRequest ? std::optional(stack_->serverURL) : std::nullopt,
        received ? std::optional(received->response) : std::nullopt,
        received ? received->body : std::nullopt,
        std::move(cause.description),
        std::move(cause.underlyingError)
    );
}

} // namespace OpenAPIRuntime::inline v1::detail
