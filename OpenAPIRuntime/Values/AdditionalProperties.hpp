#pragma once

#include "OpenAPIRuntime/Values/OpenAPIObjectContainer.hpp"
#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"

#include <initializer_list>
#include <map>
#include <span>
#include <string>
#include <string_view>
#include <utility>

/// For the coding of a schema with additional properties, or one that forbids them. It codes its own fields by name and
/// leaves the rest to these functions, which open the same object again:
///
///     void platform::Coding<Pet>::decode(Decoder& decoder, Pet& out) {
///         auto container = decoder.container();
///         container.decode("name", out.name);
///         out.additionalProperties = OpenAPIRuntime::decodeAdditionalProperties(decoder, {"name"});
///     }
///
///     void platform::Coding<Pet>::encode(Encoder& encoder, const Pet& value) {
///         auto container = encoder.container();
///         container.encode("name", value.name);
///         OpenAPIRuntime::encodeAdditionalProperties(encoder, value.additionalProperties);
///     }
namespace OpenAPIRuntime::inline v1 {

/// The keys that a schema names itself; lent for a call.
class KnownKeys {
public:
    KnownKeys(std::initializer_list<std::string_view> keys) noexcept
        : keys_(keys.begin(), keys.size()) {}

    KnownKeys(std::span<const std::string_view> keys) noexcept
        : keys_(keys) {}

    template <std::size_t N>
    KnownKeys(const std::string_view (&keys)[N]) noexcept
        : keys_(keys) {}

    [[nodiscard]] QUILLBEAM_EXPORT bool contains(std::string_view key) const noexcept;

private:
    std::span<const std::string_view> keys_;
};

/// Refuses an object with other keys than these.
/// @throws platform::DecodingError of the data-corrupted kind for the first such key in ascending order
QUILLBEAM_EXPORT void ensureNoAdditionalProperties(platform::Decoder& decoder, KnownKeys knownKeys);

/// The members of an object without the known ones, whatever they are; a null stays as an absent value.
/// @throws platform::DecodingError of the data-corrupted kind for a value that is no free-form value
[[nodiscard]] QUILLBEAM_EXPORT OpenAPIObjectContainer
decodeAdditionalProperties(platform::Decoder& decoder, KnownKeys knownKeys);

/// The members of an object without the known ones, each a `T`; a null is left out.
/// @throws platform::DecodingError where a member is no `T`
template <class T>
[[nodiscard]] std::map<std::string, T> decodeAdditionalProperties(platform::Decoder& decoder, KnownKeys knownKeys) {
    std::map<std::string, T> properties;
    auto container = decoder.container();
    std::size_t cursor = 0;
    for (std::string key; container.implementation().nextKey(cursor, key); key.clear()) {
        if (knownKeys.contains(key)) continue;
        if (auto value = container.template decodeIfPresent<T>(key))
            properties.emplace(std::move(key), *std::move(value));
    }
    return properties;
}

/// Adds members to the object that an encoder makes; without any it leaves the encoder as it is.
QUILLBEAM_EXPORT void
encodeAdditionalProperties(platform::Encoder& encoder, const OpenAPIObjectContainer& additionalProperties);

template <class T>
void encodeAdditionalProperties(platform::Encoder& encoder, const std::map<std::string, T>& additionalProperties) {
    if (additionalProperties.empty()) return;
    auto container = encoder.container();
    for (const auto& [key, value] : additionalProperties)
        container.encode(key, value);
}

} // namespace OpenAPIRuntime::inline v1
