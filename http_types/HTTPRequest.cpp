#include "http_types/HTTPRequest.hpp"

#include "http_types/detail/Characters.hpp"
#include "platform/ProgrammingError.hpp"

#include <algorithm>

namespace HTTPTypes::inline v1 {

namespace {

void checkName(const HTTPField& field, const HTTPField::Name& name) {
    if (field.name != name) {
        platform::stopOnProgrammingError(
            "Expected the pseudo header field " + name.description() + ", got " + field.name.description()
        );
    }
}

std::optional<std::string> textOf(const std::optional<HTTPField>& field) {
    return field ? std::optional(field->value()) : std::nullopt;
}

void setText(std::optional<HTTPField>& field, const HTTPField::Name& name, std::optional<std::string_view> text) {
    if (!text) {
        field.reset();
    } else if (field) {
        field->setValue(std::string(*text));
    } else {
        field.emplace(name, *text);
    }
}

} // namespace

std::optional<HTTPRequest::Method> HTTPRequest::Method::make(std::string_view rawValue) {
    const auto known = std::ranges::find(detail::methodTexts, rawValue, &detail::TextRecord::text);
    if (known != detail::methodTexts.end()) return Method(*known);
    if (!detail::isToken(rawValue)) return std::nullopt;
    return Method(detail::SharedText::owning(rawValue));
}

HTTPRequest::PseudoHeaderFields::PseudoHeaderFields(const Method& method)
    : method_(HTTPField::Name::pseudoMethod, method.rawValue()) {}

void HTTPRequest::PseudoHeaderFields::setMethod(HTTPField field) {
    checkName(field, HTTPField::Name::pseudoMethod);
    if (!detail::isToken(field.rawValue().view())) {
        platform::stopOnProgrammingError("Not a valid method: " + field.value());
    }
    method_ = std::move(field);
}

void HTTPRequest::PseudoHeaderFields::setScheme(std::optional<HTTPField> field) {
    if (field) checkName(*field, HTTPField::Name::pseudoScheme);
    scheme_ = std::move(field);
}

void HTTPRequest::PseudoHeaderFields::setAuthority(std::optional<HTTPField> field) {
    if (field) checkName(*field, HTTPField::Name::pseudoAuthority);
    authority_ = std::move(field);
}

void HTTPRequest::PseudoHeaderFields::setPath(std::optional<HTTPField> field) {
    if (field) checkName(*field, HTTPField::Name::pseudoPath);
    path_ = std::move(field);
}

void HTTPRequest::PseudoHeaderFields::setExtendedConnectProtocol(std::optional<HTTPField> field) {
    if (field) checkName(*field, HTTPField::Name::pseudoProtocol);
    protocol_ = std::move(field);
}

HTTPRequest::HTTPRequest()
    : pseudoHeaderFields(Method::get) {}

HTTPRequest::HTTPRequest(
    const Method& method,
    std::optional<std::string_view> scheme,
    std::optional<std::string_view> authority,
    std::optional<std::string_view> path,
    HTTPFields fields
)
    : pseudoHeaderFields(method)
    , headerFields(std::move(fields)) {
    setScheme(scheme);
    setAuthority(authority);
    setPath(path);
}

HTTPRequest::HTTPRequest(std::string_view soar_path, const Method& method, HTTPFields fields)
    : HTTPRequest(method, std::nullopt, std::nullopt, soar_path, std::move(fields)) {}

HTTPRequest::Method HTTPRequest::method() const {
    // The field's value is a token, but of a request that was moved from.
    return Method::make(pseudoHeaderFields.method_.rawValue().view()).value_or(Method::get);
}

void HTTPRequest::setMethod(const Method& method) {
    pseudoHeaderFields.method_.setValue(method.description());
}

std::optional<std::string> HTTPRequest::scheme() const {
    return textOf(pseudoHeaderFields.scheme_);
}

void HTTPRequest::setScheme(std::optional<std::string_view> scheme) {
    setText(pseudoHeaderFields.scheme_, HTTPField::Name::pseudoScheme, scheme);
}

std::optional<std::string> HTTPRequest::authority() const {
    return textOf(pseudoHeaderFields.authority_);
}

void HTTPRequest::setAuthority(std::optional<std::string_view> authority) {
    setText(pseudoHeaderFields.authority_, HTTPField::Name::pseudoAuthority, authority);
}

std::optional<std::string> HTTPRequest::path() const {
    return textOf(pseudoHeaderFields.path_);
}

void HTTPRequest::setPath(std::optional<std::string_view> path) {
    setText(pseudoHeaderFields.path_, HTTPField::Name::pseudoPath, path);
}

std::optional<std::string> HTTPRequest::extendedConnectProtocol() const {
    return textOf(pseudoHeaderFields.protocol_);
}

void HTTPRequest::setExtendedConnectProtocol(std::optional<std::string_view> protocol) {
    setText(pseudoHeaderFields.protocol_, HTTPField::Name::pseudoProtocol, protocol);
}

std::string HTTPRequest::soar_pathOnly() const {
    std::string all = path().value_or(std::string());
    const std::size_t question = all.find('?');
    all.resize(std::min(question != std::string::npos ? question : all.find('#'), all.size()));
    return all;
}

std::optional<std::string> HTTPRequest::soar_query() const {
    const std::string all = path().value_or(std::string());
    const std::size_t question = all.find('?');
    const std::size_t hash = all.find('#');
    if (question == std::string::npos || hash < question) return std::nullopt;
    return all.substr(question + 1, hash == std::string::npos ? hash : hash - question - 1);
}

std::string HTTPRequest::debugDescription() const {
    std::string text = "(" + method().description() + ") ";
    if (const auto present = scheme()) text += *present + "://";
    return text + authority().value_or(std::string()) + path().value_or(std::string());
}

std::string HTTPRequest::prettyDescription() const {
    return method().description() + " " + path().value_or("<nil>") + " [" + headerFields.prettyDescription() + "]";
}

} // namespace HTTPTypes::inline v1

std::size_t std::hash<HTTPTypes::HTTPRequest>::operator()(const HTTPTypes::HTTPRequest& request) const noexcept {
    const auto& pseudo = request.pseudoHeaderFields;
    const std::hash<HTTPTypes::HTTPField> hashOf;
    std::size_t sum = hashOf(pseudo.method()) + std::hash<HTTPTypes::HTTPFields>()(request.headerFields);
    for (const auto* field :
         {&pseudo.scheme(), &pseudo.authority(), &pseudo.path(), &pseudo.extendedConnectProtocol()}) {
        if (*field) sum += hashOf(**field); // the name is part of it, so that a path never counts as an authority
    }
    return sum;
}
