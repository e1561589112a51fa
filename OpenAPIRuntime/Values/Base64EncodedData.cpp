#include "OpenAPIRuntime/Values/Base64EncodedData.hpp"

#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/text/Base64.hpp"

namespace OpenAPIRuntime::inline v1 {

std::string Base64EncodedData::description() const {
    return platform::base64Encoded(data.bytes());
}

} // namespace OpenAPIRuntime::inline v1

using OpenAPIRuntime::Base64EncodedData;

void platform::Coding<Base64EncodedData>::decode(Decoder& decoder, Base64EncodedData& out) {
    auto container = decoder.singleValueContainer();
    std::string text;
    container.decode(text);
    auto bytes = base64Decoded(text, UnknownBase64Characters::ignore);
    if (!bytes) throw OpenAPIRuntime::RuntimeError::invalidBase64String(std::move(text));
    out.data = ByteChunk(*std::move(bytes));
}

void platform::Coding<Base64EncodedData>::encode(Encoder& encoder, const Base64EncodedData& value) {
    auto container = encoder.singleValueContainer();
    container.encode(base64Encoded(value.data.bytes()));
}
