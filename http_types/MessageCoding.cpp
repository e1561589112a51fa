#include "http_types/HTTPField.hpp"
#include "http_types/HTTPFields.hpp"
#include "http_types/HTTPRequest.hpp"
#include "http_types/HTTPResponse.hpp"
#include "http_types/detail/Characters.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/text/UTF8.hpp"

#include <algorithm>
#include <cstdint>
#include <span>

// The coded forms of messages. Values in memory repair what they are given; here everything foreign is refused.

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;
using HTTPTypes::HTTPRequest;
using HTTPTypes::HTTPResponse;

namespace platform::inline v1 {

namespace {

using HTTPTypes::detail::TextRecord;

/// A pseudo-field that a message has, and where it goes.
struct PseudoField {
    const TextRecord& name;
    std::optional<HTTPField>& field;
};

/// Reads the fields of a list into those of `known`, each of which may come once. Other pseudo-fields are passed over.
void decodePseudoFields(UnkeyedDecodingContainer& container, std::span<const PseudoField> known) {
    while (!container.isAtEnd()) {
        auto field = container.decode<HTTPField>();
        const auto match = std::ranges::find(known, field.name.canonicalName(), [](const PseudoField& pseudo) {
            return pseudo.name.text;
        });
        if (match != known.end()) {
            if (match->field) {
                container.throwDataCorrupted("Multiple \"" + std::string(match->name.text) + "\" pseudo header fields");
            }
            match->field = std::move(field);
        } else if (!field.name.isPseudo()) {
            container.throwDataCorrupted("\"" + field.description() + "\" is not a pseudo header field");
        }
    }
}

/// The field of `pseudo`, which the message cannot be without.
HTTPField& required(const UnkeyedDecodingContainer& container, const PseudoField& pseudo) {
    if (!pseudo.field) {
        container.throwDataCorrupted("\"" + std::string(pseudo.name.text) + "\" pseudo header field is missing");
    }
    return *pseudo.field;
}

} // namespace

HTTPField::Name Coding<HTTPField::Name>::blank() {
    return HTTPField::Name::accept;
}

void Coding<HTTPField::Name>::decode(Decoder& decoder, HTTPField::Name& out) {
    auto container = decoder.singleValueContainer();
    const auto text = container.decode<std::string>();
    const bool isPseudo = text.starts_with(':');
    auto name = isPseudo ? HTTPField::Name::makePseudo(text) : HTTPField::Name::make(text);
    if (!name) {
        return container.throwDataCorrupted(
            (isPseudo ? "HTTP pseudo field name \"" : "HTTP field name \"") + text + "\" contains invalid characters"
        );
    }
    out = *std::move(name);
}

void Coding<HTTPField::Name>::encode(Encoder& encoder, const HTTPField::Name& value) {
    auto container = encoder.singleValueContainer();
    container.encode(value.rawName());
}

HTTPField Coding<HTTPField>::blank() {
    return {HTTPField::Name::accept, ""};
}

void Coding<HTTPField>::decode(Decoder& decoder, HTTPField& out) {
    auto container = decoder.container();
    auto name = container.decode<HTTPField::Name>("name");
    auto value = container.decode<std::string>("value");
    if (!HTTPField::isValidValue(value)) {
        container.throwDataCorrupted("value", "HTTP field value \"" + value + "\" contains invalid characters");
    }
    const auto strategy = container.decodeIfPresent<std::uint8_t>("indexingStrategy").value_or(0);
    using Strategy = HTTPField::DynamicTableIndexingStrategy;
    out.name = std::move(name);
    out.indexingStrategy = strategy <= 3 ? Strategy{strategy} : Strategy::automatic;
    // As valid as the text was: no character above ASCII stands for an ASCII byte.
    out.rawValue_ = HTTPTypes::ISOLatin1String::fromLatin1Text(std::move(value));
}

void Coding<HTTPField>::encode(Encoder& encoder, const HTTPField& value) {
    auto container = encoder.container();
    container.encode("name", value.name);
    if (isASCII(value.rawValue().view())) {
        container.encode("value", value.rawValue().view());
    } else {
        container.encode("value", value.rawValue().latin1Text());
    }
    if (value.indexingStrategy != HTTPField::DynamicTableIndexingStrategy::automatic) {
        container.encode("indexingStrategy", static_cast<std::uint8_t>(value.indexingStrategy));
    }
}

void Coding<HTTPFields>::decode(Decoder& decoder, HTTPFields& out) {
    auto container = decoder.unkeyedContainer();
    HTTPFields fields;
    const std::size_t count = container.count().value_or(0);
    if (count > 0) fields.reserveCapacity(std::min(count, HTTPFields::maximumCount));
    while (!container.isAtEnd()) {
        auto field = container.decode<HTTPField>();
        if (field.name.isPseudo()) {
            container.throwDataCorrupted("Pseudo header field \"" + field.description() + "\" disallowed");
        }
        if (fields.size() == HTTPFields::maximumCount) {
            container.throwDataCorrupted(
                "More than " + std::to_string(HTTPFields::maximumCount) + " header fields disallowed"
            );
        }
        fields.append(std::move(field));
    }
    out = std::move(fields);
}

void Coding<HTTPFields>::encode(Encoder& encoder, const HTTPFields& value) {
    auto container = encoder.unkeyedContainer();
    for (const HTTPField& field : value)
        container.encode(field);
}

HTTPRequest::PseudoHeaderFields Coding<HTTPRequest::PseudoHeaderFields>::blank() {
    return HTTPRequest().pseudoHeaderFields;
}

void Coding<HTTPRequest::PseudoHeaderFields>::decode(Decoder& decoder, HTTPRequest::PseudoHeaderFields& out) {
    std::optional<HTTPField> method;
    std::optional<HTTPField> scheme;
    std::optional<HTTPField> authority;
    std::optional<HTTPField> path;
    std::optional<HTTPField> protocol;
    const PseudoField known[]{
        {HTTPTypes::detail::pseudoMethodText, method},
        {HTTPTypes::detail::pseudoSchemeText, scheme},
        {HTTPTypes::detail::pseudoAuthorityText, authority},
        {HTTPTypes::detail::pseudoPathText, path},
        {HTTPTypes::detail::pseudoProtocolText, protocol},
    };
    auto container = decoder.unkeyedContainer();
    decodePseudoFields(container, known);
    HTTPField& methodField = required(container, known[0]);
    if (!HTTPTypes::detail::isToken(methodField.rawValue().view())) {
        container.throwDataCorrupted("\"" + methodField.value() + "\" is not a valid method");
    }
    out.setMethod(std::move(methodField));
    out.setScheme(std::move(scheme));
    out.setAuthority(std::move(authority));
    out.setPath(std::move(path));
    out.setExtendedConnectProtocol(std::move(protocol));
}

void Coding<HTTPRequest::PseudoHeaderFields>::encode(Encoder& encoder, const HTTPRequest::PseudoHeaderFields& value) {
    auto container = encoder.unkeyedContainer();
    container.encode(value.method());
    for (const auto* field : {&value.scheme(), &value.authority(), &value.path(), &value.extendedConnectProtocol()}) {
        if (*field) container.encode(**field);
    }
}

void Coding<HTTPRequest>::decode(Decoder& decoder, HTTPRequest& out) {
    auto container = decoder.container();
    container.decode("pseudoHeaderFields", out.pseudoHeaderFields);
    container.decode("headerFields", out.headerFields);
}

void Coding<HTTPRequest>::encode(Encoder& encoder, const HTTPRequest& value) {
    auto container = encoder.container();
    container.encode("pseudoHeaderFields", value.pseudoHeaderFields);
    container.encode("headerFields", value.headerFields);
}

HTTPResponse::PseudoHeaderFields Coding<HTTPResponse::PseudoHeaderFields>::blank() {
    return HTTPResponse().pseudoHeaderFields;
}

void Coding<HTTPResponse::PseudoHeaderFields>::decode(Decoder& decoder, HTTPResponse::PseudoHeaderFields& out) {
    std::optional<HTTPField> status;
    const PseudoField known[]{{HTTPTypes::detail::pseudoStatusText, status}};
    auto container = decoder.unkeyedContainer();
    decodePseudoFields(container, known);
    HTTPField& statusField = required(container, known[0]);
    if (!HTTPTypes::detail::isThreeDigits(statusField.rawValue().view())) {
        container.throwDataCorrupted("\"" + statusField.value() + "\" is not a valid status code");
    }
    out.setStatus(std::move(statusField));
}

void Coding<HTTPResponse::PseudoHeaderFields>::encode(Encoder& encoder, const HTTPResponse::PseudoHeaderFields& value) {
    auto container = encoder.unkeyedContainer();
    container.encode(value.status());
}

void Coding<HTTPResponse>::decode(Decoder& decoder, HTTPResponse& out) {
    auto container = decoder.container();
    auto pseudoHeaderFields = container.decode<HTTPResponse::PseudoHeaderFields>("pseudoHeaderFields");
    const auto reasonPhrase = container.decode<std::string>("reasonPhrase");
    if (HTTPTypes::detail::holdsBarred(reasonPhrase)) {
        throw HTTPResponse::DecodingError::invalidReasonPhrase(reasonPhrase);
    }
    auto headerFields = container.decode<HTTPFields>("headerFields");
    out.pseudoHeaderFields = std::move(pseudoHeaderFields);
    out.setStatus(HTTPResponse::Status(out.status().code(), reasonPhrase));
    out.headerFields = std::move(headerFields);
}

void Coding<HTTPResponse>::encode(Encoder& encoder, const HTTPResponse& value) {
    auto container = encoder.container();
    container.encode("pseudoHeaderFields", value.pseudoHeaderFields);
    container.encode("reasonPhrase", value.reasonPhrase());
    container.encode("headerFields", value.headerFields);
}

} // namespace platform::inline v1
