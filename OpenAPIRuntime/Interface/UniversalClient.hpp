#pragma once

#include "OpenAPIRuntime/Conversion/Configuration.hpp"
#include "OpenAPIRuntime/Conversion/Converter.hpp"
#include "OpenAPIRuntime/Interface/ClientMiddleware.hpp"
#include "OpenAPIRuntime/Interface/ClientTransport.hpp"
#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "OpenAPIRuntime/Interface/HTTPRequestAndBody.hpp"
#include "OpenAPIRuntime/Interface/detail/Call.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/url/URL.hpp"

#include <memory>
#include <optional>
#include <string>
#include <type_traits>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// The pipeline that every call of a typed client goes through: serialize the input, pass the middlewares, send, and
/// deserialize the response.
///
/// A value without a lifecycle; copies share what they hold until one is changed. A running call keeps what it needs
/// alive, so the client may be changed or destroyed meanwhile.
///
/// Thread safety: distinct objects: safe; shared objects: any number of calls at once, while nobody changes the client.
class QUILLBEAM_EXPORT UniversalClient {
public:
    /// @param serverURL the address handed to the whole chain
    /// @param configuration what the conversions can be told to do differently
    /// @param transport carries the requests; shared, never null, and called concurrently
    /// @param middlewares the first sees a request first and its response last; shared, never null, and called
    /// concurrently
    UniversalClient(
        platform::URL serverURL,
        Configuration configuration,
        std::shared_ptr<ClientTransport> transport,
        std::vector<std::shared_ptr<ClientMiddleware>> middlewares = {}
    );

    [[nodiscard]] const platform::URL& serverURL() const noexcept { return stack_->serverURL; }

    /// The conversions, made from the configuration.
    [[nodiscard]] const Converter& converter() const noexcept { return stack_->converter; }

    [[nodiscard]] const std::shared_ptr<ClientTransport>& transport() const noexcept { return stack_->transport; }

    /// Sends later calls through another transport, which is not null.
    void setTransport(std::shared_ptr<ClientTransport> transport);

    [[nodiscard]] const std::vector<std::shared_ptr<ClientMiddleware>>& middlewares() const noexcept {
        return stack_->middlewares;
    }

    /// Sends later calls through other middlewares, none of them null.
    void setMiddlewares(std::vector<std::shared_ptr<ClientMiddleware>> middlewares);

    /// Runs one call.
    ///
    /// @param input the operation's input; kept for the error's context
    /// @param operationID the operation's name
    /// @param serializer a function from `const Input&` to `HTTPRequestAndBody`, which may throw
    /// @param deserializer a function from `HTTPResponse` and `std::optional<HTTPBody>` to `Task<Output>`, which may
    /// throw and
    ///        whose task may fail
    /// @return the deserializer's output. The task does nothing until it is awaited, and fails only with `ClientError`.
    template <class Input, class Serializer, class Deserializer>
        requires std::is_invocable_r_v<HTTPRequestAndBody, Serializer&, const Input&>
    [[nodiscard]] auto
    send(Input input, std::string operationID, Serializer serializer, Deserializer deserializer) const
        -> std::invoke_result_t<Deserializer&, HTTPTypes::HTTPResponse, std::optional<HTTPBody>> {
        using OutputTask = std::invoke_result_t<Deserializer&, HTTPTypes::HTTPResponse, std::optional<HTTPBody>>;
        auto call = std::make_shared<detail::CallOf<Input>>(stack_, std::move(operationID), std::move(input));
        return run<OutputTask>(std::move(call), std::move(serializer), std::move(deserializer));
    }

private:
    template <class OutputTask, class Input, class Serializer, class Deserializer>
    static OutputTask
    run(std::shared_ptr<detail::CallOf<Input>> call, Serializer serializer, Deserializer deserializer) {
        try {
            call->setRequest(serializer(call->input()));
        } catch (...) {
            call->failSerializing();
        }
        HTTPResponseAndBody received;
        try {
            auto sending = call->send();
            received = co_await std::move(sending);
        } catch (...) {
            call->failSending();
        }
        try {
            auto deserializing = deserializer(received.response, received.body);
            co_return co_await std::move(deserializing);
        } catch (...) {
            call->failDeserializing(received);
        }
    }

    std::shared_ptr<const detail::ClientStack> stack_;
};

} // namespace OpenAPIRuntime::inline v1
