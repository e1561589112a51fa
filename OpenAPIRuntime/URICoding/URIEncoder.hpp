#pragma once

#include "OpenAPIRuntime/URICoding/URICoderConfiguration.hpp"
#include "OpenAPIRuntime/URICoding/URISerializer.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"

#include <concepts>
#include <string>
#include <string_view>

namespace OpenAPIRuntime::inline v1 {

/// Turns values into URI text: path parameters, query items, header fields, URL-encoded forms.
///
///     const URIEncoder encoder(URICoderConfiguration(
///         URICoderConfiguration::Style::form, true, URICoderConfiguration::SpaceEscapingCharacter::percentEncoded,
///         ISO8601DateTranscoder::iso8601()));
///     encoder.encode(std::vector<std::string>{"a b", "c"}, "tag");  // "tag=a%20b&tag=c"
///
/// A value is flat: a primitive, a list of primitives or an object of primitives. `URISerializer` shows the forms.
///
/// Thread safety: safe to share, for any number of calls at once.
class QUILLBEAM_EXPORT URIEncoder {
public:
    explicit URIEncoder(URICoderConfiguration configuration);

    /// The text of `value` under `key`; the empty key stands for a value without a name. An absent optional and a value
    /// that writes nothing have the empty text.
    ///
    /// @throws URIEncodedNode::InsertionError, URIValueToNodeEncoder::GeneralError or
    /// URISerializer::SerializationError for a value that has no URI text, and what the value's own encoding or the
    /// date transcoder throws
    template <class T>
    [[nodiscard]] std::string encode(const T& value, std::string_view key) const {
        if constexpr (std::convertible_to<const T&, std::string_view>) {
            return encodeText(value, key);
        } else {
            return encode(platform::detail::encodeOperations<T>, &value, key);
        }
    }

private:
    [[nodiscard]] std::string encodeText(std::string_view value, std::string_view key) const;
    [[nodiscard]] std::string
    encode(const platform::EncodeOperations& operations, const void* value, std::string_view key) const;

    URISerializer serializer_;
};

} // namespace OpenAPIRuntime::inline v1
