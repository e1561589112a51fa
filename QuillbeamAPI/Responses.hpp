#pragma once

#include "OpenAPIRuntime/Interface/UndocumentedPayload.hpp"
#include "QuillbeamAPI/JSONBody.hpp"
#include "platform/DiagnosticText.hpp"
#include "platform/Export.hpp"
#include "platform/coding/HashValue.hpp"

#include <concepts>
#include <cstddef>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <variant>

/// What an operation answers: one case for each status that the service documents for it, and one for all others.
///
/// An operation lists its documented responses, and everything else follows from the list:
///
///     class Output : public Responses<Output, Ok<DomainResponseDTO>, BadRequest, Unauthorized, NotFound> {
///         using Responses::Responses;
///     };
///
///     auto output = co_await client.getDomain(Operations::getDomain::Path("d1"));
///     const DomainDTO& domain = output.ok().body.json().domain;
///
/// `ok()`, `badRequest()` and their sisters exist only for the statuses in the list: asking for another one does not
/// compile.
namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {
struct ErrorResponseDTO;
}

/// One documented response: its status and its JSON body. A response without a body has the schema `void`.
template <int StatusCode, class Schema = void>
struct Response {
    static constexpr int statusCode = StatusCode;
    using Body = JSONBody<Schema>;

    Body body{};

    Response() = default;

    Response(Body body_) // NOLINT(google-explicit-constructor): a record of one field
        : body(std::move(body_)) {}

    Response(Schema json) // NOLINT(google-explicit-constructor): and that of one case
        : body(std::move(json)) {}

    friend bool operator==(const Response&, const Response&) = default;
};

template <int StatusCode>
struct Response<StatusCode, void> {
    static constexpr int statusCode = StatusCode;

    Response() noexcept {}

    friend bool operator==(const Response&, const Response&) = default;
};

template <class Schema = void>
using Ok = Response<200, Schema>;
template <class Schema = void>
using Created = Response<201, Schema>;
using BadRequest = Response<400, Components::Schemas::ErrorResponseDTO>;
using Unauthorized = Response<401, Components::Schemas::ErrorResponseDTO>;
using NotFound = Response<404, Components::Schemas::ErrorResponseDTO>;
using Conflict = Response<409, Components::Schemas::ErrorResponseDTO>;

/// A response with a status that the service does not document for the operation. It is no failure.
struct Undocumented {
    int statusCode = 0;
    OpenAPIRuntime::UndocumentedPayload payload{};

    Undocumented() = default;

    Undocumented(int statusCode_, OpenAPIRuntime::UndocumentedPayload payload_)
        : statusCode(statusCode_)
        , payload(std::move(payload_)) {}

    friend bool operator==(const Undocumented&, const Undocumented&) = default;
};

namespace detail {

/// The name of a documented status: that of its accessor, also used in diagnostic texts.
template <int StatusCode>
inline constexpr std::string_view statusName{};
template <>
inline constexpr std::string_view statusName<200> = "ok";
template <>
inline constexpr std::string_view statusName<201> = "created";
template <>
inline constexpr std::string_view statusName<400> = "badRequest";
template <>
inline constexpr std::string_view statusName<401> = "unauthorized";
template <>
inline constexpr std::string_view statusName<404> = "notFound";
template <>
inline constexpr std::string_view statusName<409> = "conflict";

/// The maker and the accessor that a documented response adds to its output type.
///
/// The accessors are overloaded for lvalues and rvalues; the latter move the response out, so that nothing dangles when
/// the output itself is a temporary. All throw `OpenAPIRuntime::RuntimeError` (unexpectedResponseStatus) on any other
/// case.
template <class Self, class Documented>
struct StatusAccessors;

template <class Self, class Schema>
struct StatusAccessors<Self, Response<200, Schema>> {
    using Ok = Response<200, Schema>;

    [[nodiscard]] static Self ok(Ok response) { return Self(std::move(response)); }

    [[nodiscard]] const Ok& ok() const& { return static_cast<const Self&>(*this).template expect<Ok>(); }

    [[nodiscard]] Ok ok() && { return static_cast<Self&&>(*this).template take<Ok>(); }
};

template <class Self, class Schema>
struct StatusAccessors<Self, Response<201, Schema>> {
    using Created = Response<201, Schema>;

    [[nodiscard]] static Self created(Created response) { return Self(std::move(response)); }

    [[nodiscard]] const Created& created() const& { return static_cast<const Self&>(*this).template expect<Created>(); }

    [[nodiscard]] Created created() && { return static_cast<Self&&>(*this).template take<Created>(); }
};

template <class Self, class Schema>
struct StatusAccessors<Self, Response<400, Schema>> {
    using BadRequest = Response<400, Schema>;

    [[nodiscard]] static Self badRequest(BadRequest response) { return Self(std::move(response)); }

    [[nodiscard]] const BadRequest& badRequest() const& {
        return static_cast<const Self&>(*this).template expect<BadRequest>();
    }

    [[nodiscard]] BadRequest badRequest() && { return static_cast<Self&&>(*this).template take<BadRequest>(); }
};

template <class Self, class Schema>
struct StatusAccessors<Self, Response<401, Schema>> {
    using Unauthorized = Response<401, Schema>;

    [[nodiscard]] static Self unauthorized(Unauthorized response) { return Self(std::move(response)); }

    [[nodiscard]] const Unauthorized& unauthorized() const& {
        return static_cast<const Self&>(*this).template expect<Unauthorized>();
    }

    [[nodiscard]] Unauthorized unauthorized() && { return static_cast<Self&&>(*this).template take<Unauthorized>(); }
};

template <class Self, class Schema>
struct StatusAccessors<Self, Response<404, Schema>> {
    using NotFound = Response<404, Schema>;

    [[nodiscard]] static Self notFound(NotFound response) { return Self(std::move(response)); }

    [[nodiscard]] const NotFound& notFound() const& {
        return static_cast<const Self&>(*this).template expect<NotFound>();
    }

    [[nodiscard]] NotFound notFound() && { return static_cast<Self&&>(*this).template take<NotFound>(); }
};

template <class Self, class Schema>
struct StatusAccessors<Self, Response<409, Schema>> {
    using Conflict = Response<409, Schema>;

    [[nodiscard]] static Self conflict(Conflict response) { return Self(std::move(response)); }

    [[nodiscard]] const Conflict& conflict() const& {
        return static_cast<const Self&>(*this).template expect<Conflict>();
    }

    [[nodiscard]] Conflict conflict() && { return static_cast<Self&&>(*this).template take<Conflict>(); }
};

/// Fails on behalf of an accessor whose case `output` is not. Instantiated in the operations' source files, since it
/// takes the copying and describing of whole outputs, which callers seldom need.
/// @param expectedStatus the name of the accessor, such as "ok"
/// @throws OpenAPIRuntime::RuntimeError always: the case `unexpectedResponseStatus`
template <class Output>
[[noreturn]] QUILLBEAM_EXPORT void failExpecting(std::string_view expectedStatus, const Output& output);

/// Marks every output type, for what is written once for all of them.
struct OutputTag {};

template <class T, class... Cases>
concept OneOf = (std::same_as<T, Cases> || ...);

} // namespace detail

/// The tagged union of the documented responses and `Undocumented`. `Self` is the operation's output type, which
/// derives from it.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
template <class Self, class... Documented>
class Responses : public detail::OutputTag, public detail::StatusAccessors<Self, Documented>... {
public:
    using Variant = std::variant<Documented..., Undocumented>;

    template <detail::OneOf<Documented..., Undocumented> Case>
    Responses(Case response) // NOLINT(google-explicit-constructor): every case is an output
        : variant_(std::move(response)) {}

    /// The case for a status that is not in the list.
    [[nodiscard]] static Self undocumented(int statusCode, OpenAPIRuntime::UndocumentedPayload payload) {
        return Self(Undocumented(statusCode, std::move(payload)));
    }

    /// Whether this is the case, as in `output.is<Output::Ok>()`.
    template <detail::OneOf<Documented..., Undocumented> Case>
    [[nodiscard]] bool is() const noexcept {
        return std::holds_alternative<Case>(variant_);
    }

    /// The case, or nothing where this is another one.
    template <detail::OneOf<Documented..., Undocumented> Case>
    [[nodiscard]] const Case* getIf() const noexcept {
        return std::get_if<Case>(&variant_);
    }

    /// Calls `visitor` with the case and returns what it gives.
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), variant_);
    }

    /// The response's numeric status, documented or not.
    [[nodiscard]] int statusCode() const {
        return visit([](const auto& response) { return response.statusCode; });
    }

    friend bool operator==(const Responses& left, const Responses& right) { return left.variant_ == right.variant_; }

    /// The diagnostic text: the case's name and what it holds.
    friend void describe(std::string& out, const Responses& output) {
        output.visit([&out](const auto& response) {
            using Case = std::decay_t<decltype(response)>;
            if constexpr (std::is_same_v<Case, Undocumented>) {
                out += "undocumented(statusCode: ";
                platform::appendDiagnosticText(out, response.statusCode);
                out += ", headerFields: [";
                out += response.payload.headerFields.prettyDescription();
                out += "], body: ";
                platform::appendDiagnosticText(out, response.payload.body);
                out += ')';
            } else {
                out += detail::statusName<Case::statusCode>;
                out += '(';
                if constexpr (requires { response.body.json(); }) {
                    platform::appendDiagnosticText(out, response.body.json());
                }
                out += ')';
            }
        });
    }

    /// A hash of the case and what it holds.
    [[nodiscard]] std::size_t hashValue() const {
        return visit([](const auto& response) { return platform::hashValue(response); });
    }

private:
    template <class, class>
    friend struct detail::StatusAccessors;

    template <class Case>
    const Case& expect() const {
        if (const auto* response = getIf<Case>()) return *response;
        detail::failExpecting(detail::statusName<Case::statusCode>, static_cast<const Self&>(*this));
    }

    template <class Case>
    Case take() && {
        static_cast<void>(expect<Case>());
        return std::move(*std::get_if<Case>(&variant_));
    }

    Variant variant_;
};

} // namespace QuillbeamAPI::inline v1

template <int StatusCode, class Schema>
struct std::hash<QuillbeamAPI::Response<StatusCode, Schema>> {
    std::size_t operator()(const QuillbeamAPI::Response<StatusCode, Schema>& response) const {
        if constexpr (requires { response.body; }) {
            return platform::combinedHash(std::size_t{StatusCode}, platform::hashValue(response.body));
        } else {
            return std::size_t{StatusCode};
        }
    }
};

template <>
struct std::hash<QuillbeamAPI::Undocumented> {
    std::size_t operator()(const QuillbeamAPI::Undocumented& response) const {
        const auto status = static_cast<std::size_t>(response.statusCode);
        return platform::combinedHash(status, platform::hashValue(response.payload));
    }
};

template <class Output>
    requires std::derived_from<Output, QuillbeamAPI::detail::OutputTag>
struct std::hash<Output> {
    std::size_t operator()(const Output& output) const { return output.hashValue(); }
};
