#include "OpenAPIRuntime/URICoding/URIEncoder.hpp"

#include "OpenAPIRuntime/URICoding/URIValueToNodeEncoder.hpp"

#include <utility>

namespace OpenAPIRuntime::inline v1 {

URIEncoder::URIEncoder(URICoderConfiguration configuration)
    : serializer_(std::move(configuration)) {}

std::string URIEncoder::encodeText(std::string_view value, std::string_view key) const {
    return URISerializer(serializer_).serializeNode(URIEncodedNode::primitive(std::string(value)), key);
}

std::string
URIEncoder::encode(const platform::EncodeOperations& operations, const void* value, std::string_view key) const {
    URIValueToNodeEncoder encoder;
    return URISerializer(serializer_).serializeNode(encoder.encodeValue(operations, value), key);
}

} // namespace OpenAPIRuntime::inline v1
