#pragma once

#include "OpenAPIRuntime/Values/AdditionalProperties.hpp"
#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
#include "platform/coding/Decoder.hpp"
#include "platform/coding/Encoder.hpp"

#include <string_view>
#include <vector>

namespace OpenAPIRuntime::inline v1::detail {

/// Puts members in ascending order of their keys; of equal keys only the first stays.
void sortByKey(std::vector<OpenAPIObjectContainer::Member>& members);

/// Reads whatever stands at a place; false, and `out` unspecified, where it is no free-form value. Throws only what a
/// coder throws beyond `DecodingError`s.
template <class Place>
[[nodiscard]] bool tryReadFreeForm(platform::ValueReader<Place>& reader, Place place, OpenAPIValueContainer& out);

enum class OnFailure { fail, tell };

/// Reads the members of an object but those with some keys. Where one is no free-form value it fails for that member,
/// or is false.
[[nodiscard]] bool
decodeMembers(platform::Decoder& decoder, KnownKeys without, OpenAPIObjectContainer& out, OnFailure onFailure);

template <class Place>
void writeFreeForm(platform::ValueWriter<Place>& writer, Place place, const OpenAPIValueContainer& value);

extern template bool tryReadFreeForm(platform::ValueReader<platform::Here>&, platform::Here, OpenAPIValueContainer&);
extern template bool
tryReadFreeForm(platform::ValueReader<std::string_view>&, std::string_view, OpenAPIValueContainer&);
extern template void
writeFreeForm(platform::ValueWriter<platform::Here>&, platform::Here, const OpenAPIValueContainer&);
extern template void
writeFreeForm(platform::ValueWriter<std::string_view>&, std::string_view, const OpenAPIValueContainer&);

} // namespace OpenAPIRuntime::inline v1::detail
