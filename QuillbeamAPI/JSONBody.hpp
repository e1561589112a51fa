#pragma once

#include "platform/DiagnosticText.hpp"
#include "platform/coding/HashValue.hpp"

#include <cstddef>
#include <string>
#include <utility>

namespace QuillbeamAPI::inline v1 {

/// The body of a request or a response in the content types that the service documents: one case, `json`.
///
/// Converts from its schema, so that `client.createDomain(CreateDomainDTO("links.example"))` reads as it should.
///
/// Thread safety: distinct objects: safe; shared objects: safe while nobody changes them.
template <class Schema>
class JSONBody {
public:
    JSONBody() = default;

    JSONBody(Schema value) // NOLINT(google-explicit-constructor): the conversion is the point
        : json_(std::move(value)) {}

    /// The case `json` with `value`.
    [[nodiscard]] static JSONBody json(Schema value) { return JSONBody(std::move(value)); }

    /// The value of the case `json`. It is the only case, so this cannot fail.
    [[nodiscard]] const Schema& json() const& noexcept { return json_; }

    [[nodiscard]] Schema& json() & noexcept { return json_; }

    [[nodiscard]] Schema json() && noexcept { return std::move(json_); }

    friend bool operator==(const JSONBody&, const JSONBody&) = default;

    /// The diagnostic text: the case and its value.
    friend void describe(std::string& out, const JSONBody& body) {
        out += "json(";
        platform::appendDiagnosticText(out, body.json_);
        out += ')';
    }

private:
    Schema json_{};
};

} // namespace QuillbeamAPI::inline v1

template <class Schema>
struct std::hash<QuillbeamAPI::JSONBody<Schema>> {
    std::size_t operator()(const QuillbeamAPI::JSONBody<Schema>& body) const {
        return platform::hashValue(body.json());
    }
};
