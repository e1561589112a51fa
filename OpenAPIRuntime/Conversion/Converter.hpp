#pragma once

#include "OpenAPIRuntime/Conversion/AcceptHeaderContentType.hpp"
#include "OpenAPIRuntime/Conversion/AcceptableProtocol.hpp"
#include "OpenAPIRuntime/Conversion/Configuration.hpp"
#include "OpenAPIRuntime/Conversion/OpenAPIMIMEType.hpp"
#include "OpenAPIRuntime/Conversion/ParameterStyle.hpp"
#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "OpenAPIRuntime/URICoding/URIEncoder.hpp"
#include "http_types/HTTPFields.hpp"
#include "http_types/HTTPRequest.hpp"
#include "platform/Export.hpp"
#include "platform/bytes/ByteChunk.hpp"
#include "platform/concurrency/Task.hpp"
#include "platform/json/JSONDecoder.hpp"
#include "platform/json/JSONEncoder.hpp"

#include <exception>
#include <functional>
#include <initializer_list>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// Turns typed values into pieces of HTTP messages and back: what every operation of a typed client is made of.
///
/// Immutable; copies share the coders and cost a reference count. A failed conversion leaves what it was to change as
/// it was.
///
/// Thread safety: safe to share, for any number of calls at once.
class QUILLBEAM_EXPORT Converter {
public:
    explicit Converter(Configuration configuration);

    [[nodiscard]] const Configuration& configuration() const noexcept { return parts_->configuration; }

    /// Writes JSON bodies: sorted keys, pretty printed, slashes escaped.
    [[nodiscard]] const platform::JSONEncoder& encoder() const noexcept { return parts_->encoder; }

    /// Reads JSON bodies and JSON header fields.
    [[nodiscard]] const platform::JSONDecoder& decoder() const noexcept { return parts_->decoder; }

    /// Writes header fields in JSON form: sorted keys, one line, slashes as they are.
    [[nodiscard]] const platform::JSONEncoder& headerFieldEncoder() const noexcept {
        return parts_->headerFieldEncoder;
    }

    /// @name Path, query and header parameters
    /// @{

    /// The template with each "{}" in turn replaced by the text of one of the parameters, in the simple style with
    /// everything escaped that has a meaning in a path. Parameters left over are encoded and dropped; placeholders left
    /// over stay.
    ///
    ///     converter.renderedPath("/domains/{}", "a b") // "/domains/a%20b"
    ///
    /// @throws whatever the encoding of a parameter throws
    template <class... Parameters>
    [[nodiscard]] std::string renderedPath(std::string_view pathTemplate, const Parameters&... parameters) const {
        std::string path(pathTemplate);
        if constexpr (sizeof...(Parameters) > 0) {
            const URIEncoder encoder = simpleStyleEncoder();
            (fillPlaceholder(path, encoder.encode(parameters, "")), ...);
        }
        return path;
    }

    /// Appends a query item to the request's path; an optional value that is absent changes nothing.
    /// @param style form where none is given, and the only one allowed
    /// @param explode true where none is given: a list becomes one item for each element
    /// @throws RuntimeError (unsupportedParameterStyle, pathUnset); whatever the encoding of the value throws
    template <class T>
    void setQueryItemAsURI(
        HTTPTypes::HTTPRequest& request,
        std::optional<ParameterStyle> style,
        std::optional<bool> explode,
        std::string_view name,
        const T& value
    ) const {
        if (const auto* present = presentValue(value)) {
            appendQueryItem(request, queryItemEncoder(style, explode, name).encode(*present, name));
        }
    }

    /// Appends a header field with the value in the simple style; an optional value that is absent changes nothing.
    /// @throws RuntimeError (invalidHeaderFieldName); whatever the encoding of the value throws
    template <class T>
    void setHeaderFieldAsURI(HTTPTypes::HTTPFields& headerFields, std::string_view name, const T& value) const {
        if (const auto* present = presentValue(value)) {
            HTTPTypes::HTTPField::Name fieldName = checkedFieldName(name);
            headerFields.append(HTTPTypes::HTTPField(std::move(fieldName), simpleStyleEncoder().encode(*present, "")));
        }
    }

    /// @}
    /// @name Content types
    /// @{

    /// Sets the field Accept to the entries joined by ", ", in their order; no entries make an empty value.
    template <AcceptableProtocol ContentType>
    void setAcceptHeader(
        HTTPTypes::HTTPFields& headerFields, const std::vector<AcceptHeaderContentType<ContentType>>& contentTypes
    ) const {
        std::string text;
        for (const auto& contentType : contentTypes) {
            if (&contentType != &contentTypes.front()) text += ", ";
            text += contentType.rawValue();
        }
        headerFields.setValue(HTTPTypes::HTTPField::Name::accept, text);
    }

    /// The media type of the field Content-Type; nothing where there is none or it is malformed.
    [[nodiscard]] std::optional<OpenAPIMIMEType> extractContentTypeIfPresent(const HTTPTypes::HTTPFields& headerFields
    ) const;

    /// The documented content type that a received one is to be read as: the option that fits best, the earlier one of
    /// two that fit alike; the first one where none was received or it is a range.
    /// @param options the documented content types in their order, at least one
    /// @throws RuntimeError (invalidExpectedContentType) for an option that is no media type;
    /// (unexpectedContentTypeHeader)
    ///         where none fits
    [[nodiscard]] std::string_view bestContentType(
        const std::optional<OpenAPIMIMEType>& received, std::initializer_list<std::string_view> options
    ) const;
    [[nodiscard]] std::string
    bestContentType(const std::optional<OpenAPIMIMEType>& received, const std::vector<std::string>& options) const;

    /// @}
    /// @name JSON bodies
    /// @{

    /// The value as a JSON body; sets the fields Content-Type, to `contentType`, and Content-Length.
    /// @throws platform::EncodingError, or whatever the encoding of the value throws
    template <class T>
    [[nodiscard]] HTTPBody setRequiredRequestBodyAsJSON(
        const T& value, HTTPTypes::HTTPFields& headerFields, std::string_view contentType
    ) const {
        return setRequestBody(HTTPBody(encoder().encode(value)), headerFields, contentType);
    }

    /// The same, or nothing, with the fields left alone, for an absent value.
    template <class T>
    [[nodiscard]] std::optional<HTTPBody> setOptionalRequestBodyAsJSON(
        const std::optional<T>& value, HTTPTypes::HTTPFields& headerFields, std::string_view contentType
    ) const {
        if (!value) return std::nullopt;
        return setRequiredRequestBodyAsJSON(*value, headerFields, contentType);
    }

    /// Reads the whole body, decodes a `T` from it and yields what `transforming` makes of the `T`.
    ///
    /// The body is read when this is called where all of it is at hand, else when the task is awaited.
    /// The task fails with RuntimeError (missingRequiredResponseBody), platform::DecodingError, or the body's own
    /// failure.
    template <class T, class Transforming>
    [[nodiscard]] auto getResponseBodyAsJSON(std::optional<HTTPBody> body, Transforming transforming) const
        -> platform::Task<std::decay_t<std::invoke_result_t<Transforming&, T>>> {
        using Result = platform::Task<std::decay_t<std::invoke_result_t<Transforming&, T>>>;
        if (!body) return Result::failed(std::make_exception_ptr(RuntimeError::missingRequiredResponseBody()));
        auto collecting = collectWhole(std::move(*body));
        if (!collecting.isReady()) {
            return decodeCollected<T>(*this, std::move(collecting), std::move(transforming));
        }
        try {
            return Result::ready(transforming(decoder().template decode<T>(collecting.takeReady().view())));
        } catch (...) {
            return Result::failed(std::current_exception());
        }
    }

    /// The same, yielding the `T` itself.
    template <class T>
    [[nodiscard]] platform::Task<T> getResponseBodyAsJSON(std::optional<HTTPBody> body) const {
        return getResponseBodyAsJSON<T>(std::move(body), std::identity());
    }

    /// @}

private:
    struct Parts {
        Configuration configuration;
        platform::JSONEncoder encoder;
        platform::JSONDecoder decoder;
        platform::JSONEncoder headerFieldEncoder;
    };

    template <class T>
    static const T* presentValue(const T& value) noexcept {
        return &value;
    }

    template <class T>
    static const T* presentValue(const std::optional<T>& value) noexcept {
        return value ? &*value : nullptr;
    }

    template <class T, class Transforming>
    static platform::Task<std::decay_t<std::invoke_result_t<Transforming&, T>>>
    decodeCollected(Converter converter, platform::Task<platform::ByteChunk> collecting, Transforming transforming) {
        platform::ByteChunk bytes = co_await std::move(collecting);
        co_return transforming(converter.decoder().template decode<T>(bytes.view()));
    }

    [[nodiscard]] URIEncoder simpleStyleEncoder() const;
    [[nodiscard]] URIEncoder
    queryItemEncoder(std::optional<ParameterStyle> style, std::optional<bool> explode, std::string_view name) const;
    [[nodiscard]] static HTTPTypes::HTTPField::Name checkedFieldName(std::string_view name);
    static void fillPlaceholder(std::string& path, std::string_view text);
    static void appendQueryItem(HTTPTypes::HTTPRequest& request, std::string_view item);
    [[nodiscard]] static HTTPBody
    setRequestBody(HTTPBody body, HTTPTypes::HTTPFields& headerFields, std::string_view contentType);
    [[nodiscard]] static platform::Task<platform::ByteChunk> collectWhole(HTTPBody body);

    std::shared_ptr<const Parts> parts_;
};

} // namespace OpenAPIRuntime::inline v1
