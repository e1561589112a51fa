#include "OpenAPIRuntime/Values/AdditionalProperties.hpp"

#include "OpenAPIRuntime/Values/detail/FreeFormCoding.hpp"

#include <algorithm>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

bool KnownKeys::contains(std::string_view key) const noexcept {
    return std::find(keys_.begin(), keys_.end(), key) != keys_.end();
}

void ensureNoAdditionalProperties(platform::Decoder& decoder, KnownKeys knownKeys) {
    auto container = decoder.container();
    std::vector<std::string> unknown = container.allKeys();
    std::erase_if(unknown, [&](const std::string& key) { return knownKeys.contains(key); });
    if (unknown.empty()) return;
    container.throwDataCorrupted(
        *std::min_element(unknown.begin(), unknown.end()),
        "Additional properties are disabled, but found " + std::to_string(unknown.size()) +
            " unknown keys during decoding"
    );
}

OpenAPIObjectContainer decodeAdditionalProperties(platform::Decoder& decoder, KnownKeys knownKeys) {
    OpenAPIObjectContainer properties;
    static_cast<void>(detail::decodeMembers(decoder, knownKeys, properties, detail::OnFailure::fail));
    return properties;
}

void encodeAdditionalProperties(platform::Encoder& encoder, const OpenAPIObjectContainer& additionalProperties) {
    if (!additionalProperties.empty()) platform::Coding<OpenAPIObjectContainer>::encode(encoder, additionalProperties);
}

} // namespace OpenAPIRuntime::inline v1
