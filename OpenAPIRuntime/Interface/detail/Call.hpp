#pragma once

#include "OpenAPIRuntime/Conversion/Converter.hpp"
#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"
#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "OpenAPIRuntime/Interface/HTTPRequestAndBody.hpp"
#include "platform/AnyValue.hpp"
#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/url/URL.hpp"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1::detail {

/// What all calls of one client share. Immutable once it is shared.
struct ClientStack {
    platform::URL serverURL;
    Converter converter;
    std::shared_ptr<ClientTransport> transport;
    std::vector<std::shared_ptr<ClientMiddleware>> middlewares;
};

/// The state of one call that does not depend on its operation's types.
///
/// Shared by the call's coroutine and by the `Next` values of its middlewares, any of which may live longest. It does
/// not change once the request has been set, which comes before anybody else sees it.
class QUILLBEAM_EXPORT Call : public std::enable_shared_from_this<Call> {
public:
    Call(std::shared_ptr<const ClientStack> stack, std::string operationID) noexcept
        : stack_(std::move(stack))
        , operationID_(std::move(operationID)) {}

    virtual ~Call();
    Call(const Call&) = delete;
    Call& operator=(const Call&) = delete;

    /// Sets what the serializer made.
    void setRequest(HTTPRequestAndBody made) { made_ = std::move(made); }

    /// Sends the serializer's request down the whole chain. The failures of the task are as the chain's first link
    /// raises them: the caller passes them to `failSending`.
    [[nodiscard]] platform::Task<HTTPResponseAndBody> send() const;

    /// @name Turning the exception that is being handled into the call's `ClientError`
    /// A `ClientError` passes through untouched. To be called within a handler only.
    /// @{
    [[noreturn]] void failSerializing() const;

    [[noreturn]] void failSending() const { failAt(0); }

    [[noreturn]] void failDeserializing(const HTTPResponseAndBody& received) const;
    /// @}

    /// The link at `position` and all behind it, failing only with `ClientError`. A position equal to the number of
    /// middlewares is the transport.
    [[nodiscard]] static platform::Task<HTTPResponseAndBody> runFrom(
        std::shared_ptr<const Call> call,
        std::size_t position,
        HTTPTypes::HTTPRequest request,
        std::optional<HTTPBody> body,
        platform::URL baseURL
    );

protected:
    [[nodiscard]] virtual platform::AnyValue operationInput() const = 0;

private:
    /// How much of the context a stage knows.
    enum class Context { none, request };

    [[nodiscard]] platform::Task<HTTPResponseAndBody> enter(
        std::size_t position, HTTPTypes::HTTPRequest request, std::optional<HTTPBody> body, platform::URL baseURL
    ) const;
    [[noreturn]] void failAt(std::size_t position) const;
    [[noreturn]] void fail(const std::exception_ptr& error, Context context, const HTTPResponseAndBody* received) const;

    std::shared_ptr<const ClientStack> stack_;
    std::string operationID_;
    HTTPRequestAndBody made_{};
};

/// A call with its operation's input, which is copied only when an error is made of it.
template <class Input>
class CallOf final : public Call {
public:
    CallOf(std::shared_ptr<const ClientStack> stack, std::string operationID, Input input)
        : Call(std::move(stack), std::move(operationID))
        , input_(std::move(input)) {}

    [[nodiscard]] const Input& input() const noexcept { return input_; }

protected:
    [[nodiscard]] platform::AnyValue operationInput() const override { return platform::AnyValue(input_); }

private:
    Input input_;
};

} // namespace OpenAPIRuntime::inline v1::detail
