#pragma once

#include "OpenAPIRuntime/Values/AdditionalProperties.hpp"
#include "OpenAPIRuntime/Values/OpenAPIValueContainer.hpp"
#include "platform/coding/Decoder.hpp"
#include "platform/coding/Encoder.hpp"

#include <cstdint>
#include <iterator>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1::detail {

/// Reaches into the containers for what may rely on their order.
struct FreeFormAccess {
    static std::vector<OpenAPIValueContainer>& contents(OpenAPIArrayContainer& list) noexcept { return list.elements_; }

    static std::vector<OpenAPIObjectContainer::Member>& contents(OpenAPIObjectContainer& object) noexcept {
        return object.members_;
    }

    /// Fills a value that is absent.
    template <class T, class... Arguments>
    static T& fill(OpenAPIValueContainer& absent, Arguments&&... arguments) {
        return absent.construct<T>(std::forward<Arguments>(arguments)...);
    }

    static void makeAbsent(OpenAPIValueContainer& value) noexcept { value.destroy(); }
};

/// A key to be sorted: mostly its first bytes tell.
struct SortKey {
    std::uint64_t prefix; ///< the first eight bytes, the first one most significant
    std::uint32_t position;
};

/// Puts the members of objects in order. Most objects look like one before, so the last orders are remembered.
class MemberSorter {
public:
    /// Takes members over in ascending order of their keys; of equal keys only the first.
    [[nodiscard]] std::vector<OpenAPIObjectContainer::Member> sorted(std::span<OpenAPIObjectContainer::Member> members);

private:
    /// The order of members that their prefixes alone decide: it holds for all members with the same prefixes.
    struct Order {
        std::vector<std::uint64_t> prefixes{}; ///< as the members came
        std::vector<SortKey> keys{};           ///< in order
    };

    Order& remembered(std::size_t count) noexcept { return orders_[count % std::size(orders_)]; }

    Order orders_[8]{}; ///< by the number of members
    std::vector<std::uint64_t> prefixes_{};
};

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
