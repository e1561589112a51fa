#include "OpenAPIRuntime/Values/detail/FreeFormCoding.hpp"

#include "platform/coding/Coding.hpp"

#include <algorithm>
#include <bit>
#include <cstring>

namespace OpenAPIRuntime::inline v1 {

using detail::OnFailure;
using platform::CodedKind;
using platform::Decoder;
using platform::Encoder;
using platform::Here;
using platform::Read;
using Member = OpenAPIObjectContainer::Member;

namespace {

/// A key to be sorted: mostly its first bytes tell.
struct SortKey {
    std::uint64_t prefix; ///< the first eight bytes, the first one most significant
    std::uint32_t position;
};

std::uint64_t prefixOf(const std::string& key) noexcept {
    char bytes[8] = {};
    std::memcpy(bytes, key.data(), std::min<std::size_t>(key.size(), 8));
    std::uint64_t prefix = 0;
    for (const char byte : bytes)
        prefix = prefix << 8U | static_cast<unsigned char>(byte);
    return prefix;
}

} // namespace

void detail::sortByKey(std::vector<Member>& members) {
    const auto isNotBelow = [](const Member& left, const Member& right) { return left.first >= right.first; };
    if (std::adjacent_find(members.begin(), members.end(), isNotBelow) == members.end()) return;
    std::vector<SortKey> keys;
    keys.reserve(members.size());
    for (const Member& member : members)
        keys.push_back({prefixOf(member.first), static_cast<std::uint32_t>(keys.size())});
    std::sort(keys.begin(), keys.end(), [&members](const SortKey& left, const SortKey& right) {
        if (left.prefix != right.prefix) return left.prefix < right.prefix;
        const int order = members[left.position].first.compare(members[right.position].first);
        return order == 0 ? left.position < right.position : order < 0;
    });
    std::vector<Member> sorted;
    sorted.reserve(members.size());
    for (const SortKey& key : keys) {
        Member& member = members[key.position];
        if (sorted.empty() || sorted.back().first != member.first) sorted.push_back(std::move(member));
    }
    members = std::move(sorted);
}

// Decoding. An attempt tells by its result whether it succeeded: an error thrown and caught at each level of a tree
// would cost a thousand times as much.

namespace {

template <class Container>
struct Attempt {
    Container& out;
    bool hasSucceeded = false;
};

constexpr std::string_view notFreeForm = "OpenAPIValueContainer cannot be decoded";

bool decodeContents(Decoder& decoder, OpenAPIArrayContainer& out, OnFailure onFailure) {
    auto container = decoder.unkeyedContainer();
    auto& reader = container.implementation();
    auto& elements = out.value();
    elements.clear();
    elements.reserve(reader.count().value_or(0));
    while (!reader.isAtEnd()) {
        if (detail::tryReadFreeForm<Here>(reader, Here{}, elements.emplace_back())) continue;
        if (onFailure == OnFailure::fail) reader.corrupted(Here{}, std::string(notFreeForm));
        return false;
    }
    return true;
}

bool decodeContents(Decoder& decoder, OpenAPIObjectContainer& out, OnFailure onFailure) {
    return detail::decodeMembers(decoder, {}, out, onFailure);
}

template <class Container>
constexpr platform::DecodeOperations attempting{
    &platform::typeNameOf<Container>,
    platform::codedShapeOf<Container>(),
    [](Decoder& decoder, void* out) {
        auto& attempt = *static_cast<Attempt<Container>*>(out);
        attempt.hasSucceeded = decodeContents(decoder, attempt.out, OnFailure::tell);
    }
};

template <class Container, class Place>
bool tryReadContainer(platform::ValueReader<Place>& reader, Place place, OpenAPIValueContainer& out) {
    Attempt<Container> attempt{out.emplace<Container>()};
    return reader.value(place, attempting<Container>, &attempt) == Read::ok && attempt.hasSucceeded;
}

/// A coder that finds only while it decodes that a value is no list or object, says so by an error.
template <class Container, class Place>
bool probeContainer(platform::ValueReader<Place>& reader, Place place, OpenAPIValueContainer& out) {
    try {
        return tryReadContainer<Container>(reader, place, out);
    } catch (const platform::DecodingError&) {
        return false;
    }
}

template <class T, class Place>
bool tryReadScalar(platform::ValueReader<Place>& reader, Place place, OpenAPIValueContainer& out) {
    return platform::detail::readValue(reader, place, out.emplace<T>()) == Read::ok;
}

} // namespace

bool detail::decodeMembers(Decoder& decoder, KnownKeys without, OpenAPIObjectContainer& out, OnFailure onFailure) {
    auto container = decoder.container();
    auto& reader = container.implementation();
    std::vector<Member> members;
    members.reserve(reader.memberCountHint());
    std::size_t cursor = 0;
    for (std::string key; reader.nextKey(cursor, key);) {
        if (without.contains(key)) continue;
        Member& member = members.emplace_back();
        member.first = std::move(key);
        if (tryReadFreeForm<std::string_view>(reader, member.first, member.second)) continue;
        if (onFailure == OnFailure::fail) reader.corrupted(member.first, std::string(notFreeForm));
        return false;
    }
    out = OpenAPIObjectContainer(std::move(members));
    return true;
}

template <class Place>
bool detail::tryReadFreeForm(platform::ValueReader<Place>& reader, Place place, OpenAPIValueContainer& out) {
    switch (reader.kind(place)) {
    case CodedKind::null:
        out = nullptr;
        return reader.nil(place);
    case CodedKind::boolean:
        return tryReadScalar<bool>(reader, place, out);
    case CodedKind::number:
        return tryReadScalar<std::int64_t>(reader, place, out) || tryReadScalar<double>(reader, place, out);
    case CodedKind::string:
        return tryReadScalar<std::string>(reader, place, out);
    case CodedKind::list:
        return tryReadContainer<OpenAPIArrayContainer>(reader, place, out);
    case CodedKind::object:
        return tryReadContainer<OpenAPIObjectContainer>(reader, place, out);
    case CodedKind::unknown:
        break;
    }
    out = nullptr;
    return reader.nil(place) || tryReadScalar<bool>(reader, place, out) ||
           tryReadScalar<std::int64_t>(reader, place, out) || tryReadScalar<double>(reader, place, out) ||
           tryReadScalar<std::string>(reader, place, out) ||
           probeContainer<OpenAPIArrayContainer>(reader, place, out) ||
           probeContainer<OpenAPIObjectContainer>(reader, place, out);
}

template <class Place>
void detail::writeFreeForm(platform::ValueWriter<Place>& writer, Place place, const OpenAPIValueContainer& value) {
    value.visit([&]<class T>(const T& alternative) {
        if constexpr (std::same_as<T, std::nullptr_t>) {
            writer.nil(place);
        } else {
            platform::detail::writeValue(writer, place, alternative);
        }
    });
}

template bool detail::tryReadFreeForm(platform::ValueReader<Here>&, Here, OpenAPIValueContainer&);
template bool
detail::tryReadFreeForm(platform::ValueReader<std::string_view>&, std::string_view, OpenAPIValueContainer&);
template void detail::writeFreeForm(platform::ValueWriter<Here>&, Here, const OpenAPIValueContainer&);
template void
detail::writeFreeForm(platform::ValueWriter<std::string_view>&, std::string_view, const OpenAPIValueContainer&);

} // namespace OpenAPIRuntime::inline v1

using OpenAPIRuntime::OpenAPIArrayContainer;
using OpenAPIRuntime::OpenAPIObjectContainer;
using OpenAPIRuntime::OpenAPIValueContainer;

void platform::Coding<OpenAPIValueContainer>::decode(Decoder& decoder, OpenAPIValueContainer& out) {
    auto container = decoder.singleValueContainer();
    if (!OpenAPIRuntime::detail::tryReadFreeForm(container.implementation(), Here{}, out))
        container.throwDataCorrupted(std::string(OpenAPIRuntime::notFreeForm));
}

void platform::Coding<OpenAPIValueContainer>::encode(Encoder& encoder, const OpenAPIValueContainer& value) {
    auto container = encoder.singleValueContainer();
    OpenAPIRuntime::detail::writeFreeForm(container.implementation(), Here{}, value);
}

void platform::Coding<OpenAPIArrayContainer>::decode(Decoder& decoder, OpenAPIArrayContainer& out) {
    OpenAPIRuntime::decodeContents(decoder, out, OpenAPIRuntime::detail::OnFailure::fail);
}

void platform::Coding<OpenAPIArrayContainer>::encode(Encoder& encoder, const OpenAPIArrayContainer& value) {
    auto container = encoder.unkeyedContainer();
    for (const OpenAPIValueContainer& element : value)
        OpenAPIRuntime::detail::writeFreeForm<Here>(container.implementation(), Here{}, element);
}

void platform::Coding<OpenAPIObjectContainer>::decode(Decoder& decoder, OpenAPIObjectContainer& out) {
    OpenAPIRuntime::decodeContents(decoder, out, OpenAPIRuntime::detail::OnFailure::fail);
}

void platform::Coding<OpenAPIObjectContainer>::encode(Encoder& encoder, const OpenAPIObjectContainer& value) {
    auto container = encoder.container();
    for (const auto& [key, element] : value)
        OpenAPIRuntime::detail::writeFreeForm<std::string_view>(container.implementation(), key, element);
}
