#include "OpenAPIRuntime/Values/detail/FreeFormCoding.hpp"

#include "platform/coding/Coding.hpp"
#include "platform/coding/ValueEvents.hpp"

#include <algorithm>
#include <bit>
#include <cstring>
#include <tuple>

namespace OpenAPIRuntime::inline v1 {

using detail::OnFailure;
using platform::Decoder;
using platform::Encoder;
using platform::Here;
using platform::Read;
using Member = OpenAPIObjectContainer::Member;

namespace {

template <class Word>
std::uint64_t bigEndian(const char* at) noexcept {
    Word word = 0;
    std::memcpy(&word, at, sizeof word);
    if constexpr (std::endian::native == std::endian::big) return word;
    return sizeof word == 8 ? __builtin_bswap64(word) : __builtin_bswap32(static_cast<std::uint32_t>(word));
}

std::uint64_t prefixOf(const std::string& key) noexcept {
    const std::size_t size = key.size();
    if (size >= 8) return bigEndian<std::uint64_t>(key.data());
    if (size == 0) return 0;
    const std::size_t behind = 8 * (8 - size);
    if (size >= 4) { // the two words overlap
        return bigEndian<std::uint32_t>(key.data()) << 32U | bigEndian<std::uint32_t>(&key[size - 4]) << behind;
    }
    const auto byte = [&key](std::size_t position) -> std::uint64_t {
        return static_cast<unsigned char>(key[position]);
    };
    return byte(0) << 56U | byte(size / 2) << (56 - 8 * (size / 2)) | byte(size - 1) << behind;
}

} // namespace

std::vector<Member> detail::MemberSorter::sorted(std::span<Member> members) {
    prefixes_.clear();
    for (const Member& member : members)
        prefixes_.push_back(prefixOf(member.first));
    Order& order = remembered(members.size());
    if (order.prefixes != prefixes_) {
        order.keys.clear();
        for (const std::uint64_t prefix : prefixes_)
            order.keys.push_back({prefix, static_cast<std::uint32_t>(order.keys.size())});
        std::sort(order.keys.begin(), order.keys.end(), [members](const SortKey& left, const SortKey& right) {
            if (left.prefix != right.prefix) return left.prefix < right.prefix;
            const int comparison = members[left.position].first.compare(members[right.position].first);
            return comparison == 0 ? left.position < right.position : comparison < 0;
        });
        const auto isSame = [](const SortKey& left, const SortKey& right) { return left.prefix == right.prefix; };
        const bool decides = std::adjacent_find(order.keys.begin(), order.keys.end(), isSame) == order.keys.end();
        order.prefixes.clear();
        if (decides) order.prefixes = prefixes_;
    }
    std::vector<Member> sorted;
    sorted.reserve(members.size());
    const SortKey* last = nullptr;
    for (const SortKey& key : order.keys) {
        Member& member = members[key.position];
        if (last != nullptr && last->prefix == key.prefix && sorted.back().first == member.first) continue;
        last = &key;
        sorted.push_back(std::move(member));
    }
    return sorted;
}

// Decoding. A coder that knows the kinds of its values tells the whole tree; with another one each kind is tried, and
// an attempt tells by its result whether it succeeded: an error thrown and caught at each level of a tree would cost a
// thousand times as much.

namespace {

template <class Container>
struct Attempt {
    Container& out;
    bool hasSucceeded = false;
};

/// Builds a value of what a coder tells.
class Builder final : public platform::ValueEvents {
public:
    explicit Builder(OpenAPIValueContainer& root)
        : root_(root) {
        root = nullptr;
    }

    void null() override { slot(); }

    void boolean(bool value) override { detail::FreeFormAccess::fill<bool>(slot(), value); }

    void integer(std::int64_t value) override { detail::FreeFormAccess::fill<std::int64_t>(slot(), value); }

    void number(double value) override { detail::FreeFormAccess::fill<double>(slot(), value); }

    void string(std::string_view value) override { detail::FreeFormAccess::fill<std::string>(slot(), value); }

    void beginList(std::size_t count) override { open_.emplace_back(members_.size(), true).elements.reserve(count); }

    void endList() override {
        std::vector<OpenAPIValueContainer> elements = std::move(open_.back().elements);
        open_.pop_back();
        detail::FreeFormAccess::fill<OpenAPIArrayContainer>(slot(), std::move(elements));
    }

    void beginObject(std::size_t /*count*/) override { open_.emplace_back(members_.size(), false); }

    void key(std::string_view key) override {
        members_.emplace_back(std::piecewise_construct, std::forward_as_tuple(key), std::tuple<>());
    }

    void endObject() override {
        const std::size_t first = open_.back().firstMember;
        std::vector<Member> members = sorter_.sorted(std::span(members_).subspan(first));
        members_.resize(first);
        open_.pop_back();
        detail::FreeFormAccess::contents(detail::FreeFormAccess::fill<OpenAPIObjectContainer>(slot())) =
            std::move(members);
    }

private:
    struct Container {
        std::vector<OpenAPIValueContainer> elements{};
        std::size_t firstMember;
        bool isList;

        Container(std::size_t firstMember_, bool isList_)
            : firstMember(firstMember_)
            , isList(isList_) {}
    };

    /// Where the next value goes: absent so far.
    OpenAPIValueContainer& slot() {
        if (open_.empty()) return root_;
        return open_.back().isList ? open_.back().elements.emplace_back() : members_.back().second;
    }

    OpenAPIValueContainer& root_;
    std::vector<Container> open_{};
    detail::MemberSorter sorter_{};
    std::vector<Member> members_{}; ///< of all open objects, one behind the other
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
    Builder builder(out);
    const Read told = reader.events(place, builder);
    if (told != Read::mismatch) return told == Read::ok;
    return reader.nil(place) || tryReadScalar<bool>(reader, place, out) ||
           tryReadScalar<std::int64_t>(reader, place, out) || tryReadScalar<double>(reader, place, out) ||
           tryReadScalar<std::string>(reader, place, out) ||
           probeContainer<OpenAPIArrayContainer>(reader, place, out) ||
           probeContainer<OpenAPIObjectContainer>(reader, place, out);
}

// Encoding.

namespace {

void tell(platform::ValueEvents& events, const OpenAPIValueContainer& value) {
    value.visit([&events]<class T>(const T& content) {
        if constexpr (std::same_as<T, std::nullptr_t>) {
            events.null();
        } else if constexpr (std::same_as<T, bool>) {
            events.boolean(content);
        } else if constexpr (std::same_as<T, std::int64_t>) {
            events.integer(content);
        } else if constexpr (std::same_as<T, double>) {
            events.number(content);
        } else if constexpr (std::same_as<T, std::string>) {
            events.string(content);
        } else if constexpr (std::same_as<T, OpenAPIArrayContainer>) {
            events.beginList(content.size());
            for (const OpenAPIValueContainer& element : content)
                tell(events, element);
            events.endList();
        } else {
            events.beginObject(content.size());
            for (const auto& [key, element] : content) {
                events.key(key);
                tell(events, element);
            }
            events.endObject();
        }
    });
}

} // namespace

template <class Place>
void detail::writeFreeForm(platform::ValueWriter<Place>& writer, Place place, const OpenAPIValueContainer& value) {
    if (value.kind() >= OpenAPIValueContainer::Kind::list) {
        const auto tellAll = [](platform::ValueEvents& events, const void* told) {
            tell(events, *static_cast<const OpenAPIValueContainer*>(told));
        };
        if (writer.events(place, tellAll, &value)) return;
    }
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
