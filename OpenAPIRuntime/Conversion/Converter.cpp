#include "OpenAPIRuntime/Conversion/Converter.hpp"

#include "OpenAPIRuntime/URICoding/URICoderConfiguration.hpp"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <span>

namespace OpenAPIRuntime::inline v1 {

namespace {

using HTTPTypes::HTTPField;
using HTTPTypes::HTTPFields;

/// The position of the option that fits best, by the rules of `Converter::bestContentType`.
template <class Text>
std::size_t bestOption(const std::optional<OpenAPIMIMEType>& received, std::span<const Text> options) {
    if (!received || received->kind.whichCase() != OpenAPIMIMEType::Kind::Case::concrete) return 0;
    std::size_t best = 0;
    std::size_t bestScore = 0;
    for (std::size_t i = 0; i < options.size(); ++i) {
        // Every option is parsed, also behind a perfect match: a bad one is a fault of the program, whatever arrives.
        const std::optional<OpenAPIMIMEType> option = OpenAPIMIMEType::make(options[i]);
        if (!option) throw RuntimeError::invalidExpectedContentType(options[i]);
        const auto match = OpenAPIMIMEType::matchReceived(
            received->kind.type(), received->kind.subtype(), received->parameters, *option
        );
        if (match.score() > bestScore) {
            best = i;
            bestScore = match.score();
        }
    }
    if (bestScore == 0) throw RuntimeError::unexpectedContentTypeHeader(options[best]);
    return best;
}

} // namespace

Converter::Converter(Configuration configuration) {
    const auto transcoder = configuration.dateTranscoder;
    const auto encodeDate = [transcoder](platform::Date date) { return transcoder->encode(date); };
    const auto decodeDate = [transcoder](std::string_view text) { return transcoder->decode(text); };
    using platform::JSONEncoder;
    parts_ = std::make_shared<const Parts>(Parts{
        std::move(configuration),
        JSONEncoder(JSONEncoder::sortedKeys | JSONEncoder::prettyPrinted, encodeDate),
        platform::JSONDecoder(decodeDate),
        JSONEncoder(JSONEncoder::sortedKeys | JSONEncoder::withoutEscapingSlashes, encodeDate),
    });
}

std::optional<OpenAPIMIMEType> Converter::extractContentTypeIfPresent(const HTTPFields& headerFields) const {
    const std::optional<std::string> value = headerFields.value(HTTPField::Name::contentType);
    return value ? OpenAPIMIMEType::make(*value) : std::nullopt;
}

std::string_view Converter::bestContentType(
    const std::optional<OpenAPIMIMEType>& received, std::initializer_list<std::string_view> options
) const {
    return options.begin()[bestOption(received, std::span(options.begin(), options.size()))];
}

std::string Converter::bestContentType(
    const std::optional<OpenAPIMIMEType>& received, const std::vector<std::string>& options
) const {
    return options[bestOption(received, std::span(options))];
}

URIEncoder Converter::simpleStyleEncoder() const {
    return URIEncoder(URICoderConfiguration(
        URICoderConfiguration::Style::simple,
        false,
        URICoderConfiguration::SpaceEscapingCharacter::percentEncoded,
        configuration().dateTranscoder
    ));
}

URIEncoder Converter::queryItemEncoder(
    std::optional<ParameterStyle> style, std::optional<bool> explode, std::string_view name
) const {
    if (style == ParameterStyle::simple) {
        throw RuntimeError::unsupportedParameterStyle(
            name, RuntimeError::ParameterLocation::query, ParameterStyle::simple, explode.value_or(false)
        );
    }
    return URIEncoder(URICoderConfiguration(
        URICoderConfiguration::Style::form,
        explode.value_or(true),
        URICoderConfiguration::SpaceEscapingCharacter::percentEncoded,
        configuration().dateTranscoder
    ));
}

HTTPField::Name Converter::checkedFieldName(std::string_view name) {
    std::optional<HTTPField::Name> fieldName = HTTPField::Name::make(name);
    if (!fieldName) throw RuntimeError::invalidHeaderFieldName(name);
    return std::move(*fieldName);
}

void Converter::fillPlaceholder(std::string& path, std::string_view text) {
    // A text never holds braces, they are escaped, so an earlier parameter is never taken for a placeholder.
    if (const auto at = path.find("{}"); at != std::string::npos) path.replace(at, 2, text);
}

void Converter::appendQueryItem(HTTPTypes::HTTPRequest& request, std::string_view item) {
    const std::optional<std::string> path = request.path();
    if (!path) throw RuntimeError::pathUnset();
    const std::size_t fragment = std::min(path->find('#'), path->size());
    const bool hasQuery = path->find('?') < fragment;
    std::string extended;
    extended.reserve(path->size() + 1 + item.size());
    extended.append(*path, 0, fragment).append(hasQuery ? "&" : "?").append(item).append(*path, fragment);
    request.setPath(extended);
}

HTTPBody Converter::setRequestBody(HTTPBody body, HTTPFields& headerFields, std::string_view contentType) {
    headerFields.setValue(HTTPField::Name::contentType, contentType);
    if (const std::optional<std::int64_t> byteCount = body.length().byteCount()) {
        headerFields.setValue(HTTPField::Name::contentLength, std::to_string(*byteCount));
    }
    return body;
}

platform::Task<platform::ByteChunk> Converter::collectWhole(HTTPBody body) {
    return collect<platform::ByteChunk>(
        std::move(body), static_cast<std::size_t>(std::numeric_limits<std::int64_t>::max())
    );
}

} // namespace OpenAPIRuntime::inline v1
