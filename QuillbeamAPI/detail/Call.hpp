#pragma once

#include "OpenAPIRuntime/Conversion/Converter.hpp"
#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/HTTPRequestAndBody.hpp"
#include "OpenAPIRuntime/Interface/UniversalClient.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/coding/Fields.hpp"
#include "platform/concurrency/Task.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

/// What all operations share: one serializer and one deserializer, both driven by the operations' declarations.
///
/// Only the resources' source files include it.

/// A body is coded as what it holds.
template <class Schema>
struct platform::Coding<QuillbeamAPI::JSONBody<Schema>> {
    static void decode(platform::Decoder& decoder, QuillbeamAPI::JSONBody<Schema>& out) {
        platform::Coding<Schema>::decode(decoder, out.json());
    }

    static void encode(platform::Encoder& encoder, const QuillbeamAPI::JSONBody<Schema>& value) {
        platform::Coding<Schema>::encode(encoder, value.json());
    }
};

namespace QuillbeamAPI::inline v1::detail {

/// What an operation's types do not say: the request line.
struct OperationDescription {
    std::string_view id;
    const HTTPTypes::HTTPRequest::Method& method;
    std::string_view pathTemplate; ///< with {} for each field of the operation's `Path`, in order
};

/// The fields of a record, with the record: parameters of one kind. A default one has none.
struct Parameters {
    const platform::RecordFields* fields = nullptr;
    const void* record = nullptr;

    Parameters() = default;

    template <platform::Record Record>
    explicit Parameters(const Record& value)
        : fields(&Record::recordFields())
        , record(&value) {}
};

/// The request's head but for Accept and the fields of the body: path, query items, header parameters, in this order.
[[nodiscard]] HTTPTypes::HTTPRequest makeRequest(
    const OpenAPIRuntime::Converter& converter,
    const OperationDescription& operation,
    Parameters path,
    Parameters query,
    Parameters headers
);

/// Checks that the response's content type is one to be read as JSON.
/// @throws OpenAPIRuntime::RuntimeError (unexpectedContentTypeHeader)
void requireJSON(const OpenAPIRuntime::Converter& converter, const HTTPTypes::HTTPFields& headerFields);

/// The serializer of every operation.
template <class Input>
OpenAPIRuntime::HTTPRequestAndBody
serialize(const OpenAPIRuntime::Converter& converter, const OperationDescription& operation, const Input& input) {
    Parameters path;
    Parameters query;
    if constexpr (requires { input.path; }) path = Parameters(input.path);
    if constexpr (requires { input.query; }) query = Parameters(input.query);
    OpenAPIRuntime::HTTPRequestAndBody made(makeRequest(converter, operation, path, query, Parameters(input.headers)));
    auto& headerFields = made.request.headerFields;
    converter.setAcceptHeader(headerFields, input.headers.accept);
    if constexpr (requires { input.body; }) {
        made.body =
            converter.setRequiredRequestBodyAsJSON(input.body.json(), headerFields, "application/json; charset=utf-8");
    }
    return made;
}

/// Reads the response as the documented one `Case`.
template <class Output, class Case>
platform::Task<Output> readAs(
    const OpenAPIRuntime::Converter& converter,
    const HTTPTypes::HTTPFields& headerFields,
    std::optional<OpenAPIRuntime::HTTPBody>&& body
) {
    if constexpr (std::is_same_v<Case, Response<Case::statusCode>>) {
        return platform::Task<Output>::ready(Case()); // documented without a body: whatever came stays unread
    } else {
        using Schema = std::remove_cvref_t<decltype(std::declval<Case&>().body.json())>;
        requireJSON(converter, headerFields);
        return converter.getResponseBodyAsJSON<Schema>(std::move(body), [](Schema value) {
            return Output(Case(std::move(value)));
        });
    }
}

template <class Output, class... Documented>
platform::Task<Output> deserializeAs(
    const Responses<Output, Documented...>*, // for deduction only
    const OpenAPIRuntime::Converter& converter,
    HTTPTypes::HTTPResponse response,
    std::optional<OpenAPIRuntime::HTTPBody> body
) {
    const int status = response.status().code();
    using Head = HTTPTypes::HTTPFields;
    using Body = std::optional<OpenAPIRuntime::HTTPBody>;
    using Reader = platform::Task<Output> (*)(const OpenAPIRuntime::Converter&, const Head&, Body&&);
    Reader reader = nullptr;
    ((status == Documented::statusCode ? void(reader = &readAs<Output, Documented>) : void()), ...);
    if (reader) return reader(converter, response.headerFields, std::move(body));
    return platform::Task<Output>::ready(Output::undocumented(
        status, OpenAPIRuntime::UndocumentedPayload(std::move(response.headerFields), std::move(body))
    ));
}

/// The deserializer of every operation: the exact numeric status decides, and what is not documented is no failure.
template <class Output>
platform::Task<Output> deserialize(
    const OpenAPIRuntime::Converter& converter,
    HTTPTypes::HTTPResponse response,
    std::optional<OpenAPIRuntime::HTTPBody> body
) {
    return deserializeAs(static_cast<const Output*>(nullptr), converter, std::move(response), std::move(body));
}

template <class Output>
void failExpecting(std::string_view expectedStatus, const Output& output) {
    OpenAPIRuntime::throwUnexpectedResponseStatus(expectedStatus, output);
}

/// A call of an operation. Its functions hold a converter of their own, so that a running call needs no client.
template <class Output, class Input>
platform::Task<Output>
call(const OpenAPIRuntime::UniversalClient& client, const OperationDescription& operation, Input input) {
    return client.send(
        std::move(input),
        std::string(operation.id),
        [converter = client.converter(), operation](const Input& serialized) {
            return serialize(converter, operation, serialized);
        },
        [converter =
             client.converter()](HTTPTypes::HTTPResponse response, std::optional<OpenAPIRuntime::HTTPBody> body) {
            return deserialize<Output>(converter, std::move(response), std::move(body));
        }
    );
}

} // namespace QuillbeamAPI::inline v1::detail
