#pragma once

#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/coding/CodingError.hpp"

#include <cstddef>
#include <exception>
#include <initializer_list>
#include <new>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

/// For the coding of a schema that is one of several others (one-of) or at least one of them (any-of).
///
///     // with a discriminator
///     auto container = decoder.container();
///     const auto kind = container.decode<std::string>("kind");
///     if (kind == "circle") return Coding<Circle>::decode(decoder, out.emplace<Circle>());
///     throw unknownOneOfDiscriminator(CodingKey("kind"), kind, decoder.codingPath());
///
///     // without
///     out.shape = decodeOneOf<Circle, Square>(decoder, "Shape");
///
///     decodeAnyOf(decoder, "Owner", out.person, out.company);
namespace OpenAPIRuntime::inline v1 {

/// The error of a one-of none of whose schemas fits.
/// @param type the name of the one-of
/// @param errors why each did not fit; they become a `MultiError`, the underlying error
[[nodiscard]] QUILLBEAM_EXPORT platform::DecodingError
failedToDecodeOneOfSchema(std::string type, platform::CodingPath codingPath, std::vector<std::exception_ptr> errors);

/// The error of a one-of whose discriminator names no schema.
[[nodiscard]] QUILLBEAM_EXPORT platform::DecodingError unknownOneOfDiscriminator(
    platform::CodingKey discriminatorKey, const std::string& discriminatorValue, platform::CodingPath codingPath
);

/// Whether an optional has a value, whatever its type.
class IsPresent {
public:
    template <class T>
    IsPresent(const std::optional<T>& value) noexcept
        : isPresent_(value.has_value()) {}

    explicit operator bool() const noexcept { return isPresent_; }

private:
    bool isPresent_;
};

/// Refuses an any-of none of whose schemas fits.
///
///     verifyAtLeastOneSchemaIsNotNil({out.person, out.company}, "Owner", decoder.codingPath(), errors);
///
/// @throws platform::DecodingError of the value-not-found kind, with a `MultiError` of the errors underlying it
QUILLBEAM_EXPORT void verifyAtLeastOneSchemaIsNotNil(
    std::initializer_list<IsPresent> values,
    std::string type,
    platform::CodingPath codingPath,
    std::vector<std::exception_ptr> errors
);

namespace detail {

/// Whether the value here decodes as a `T`. An exception is thrown, and caught, only where neither the value's kind nor
/// a missing member tells that it does not.
template <class T>
[[nodiscard]] bool tryDecodeSchema(platform::Decoder& decoder, T& out) {
    if constexpr (requires { platform::Coding<T>::mayDecode(decoder); }) {
        if (!platform::Coding<T>::mayDecode(decoder)) return false;
    }
    auto container = decoder.singleValueContainer();
    try {
        return container.tryDecode(out);
    } catch (const std::bad_alloc&) {
        throw;
    } catch (const std::exception&) {
        return false;
    }
}

/// Why the value here does not decode as a `T`: found out again, since most often nobody asks.
template <class T>
void collectError(platform::Decoder& decoder, std::vector<std::exception_ptr>& errors) {
    try {
        auto container = decoder.singleValueContainer();
        T value = platform::detail::blankFor<T>();
        container.decode(value);
    } catch (...) {
        errors.push_back(std::current_exception());
    }
}

template <class... T>
[[nodiscard]] std::vector<std::exception_ptr> collectErrors(platform::Decoder& decoder) {
    std::vector<std::exception_ptr> errors;
    (collectError<T>(decoder, errors), ...);
    return errors;
}

} // namespace detail

/// The value as the first of several schemas that it decodes as.
/// @param type the name of the one-of, for the error
/// @throws platform::DecodingError as `failedToDecodeOneOfSchema` makes it
template <class... T>
[[nodiscard]] std::variant<T...> decodeOneOf(platform::Decoder& decoder, std::string type) {
    std::optional<std::variant<T...>> found;
    const auto attempt = [&]<std::size_t I>(std::integral_constant<std::size_t, I>) {
        using Schema = std::variant_alternative_t<I, std::variant<T...>>;
        Schema schema = platform::detail::blankFor<Schema>();
        if (!detail::tryDecodeSchema(decoder, schema)) return false;
        found.emplace(std::in_place_index<I>, std::move(schema));
        return true;
    };
    [&]<std::size_t... I>(std::index_sequence<I...>) {
        static_cast<void>((attempt(std::integral_constant<std::size_t, I>()) || ...));
    }(std::index_sequence_for<T...>());
    if (!found) {
        throw failedToDecodeOneOfSchema(std::move(type), decoder.codingPath(), detail::collectErrors<T...>(decoder));
    }
    return *std::move(found);
}

/// Fills each of several schemas that the value decodes as, and leaves the others without a value.
/// @param type the name of the any-of, for the error
/// @throws platform::DecodingError as `verifyAtLeastOneSchemaIsNotNil` does
template <class... T>
void decodeAnyOf(platform::Decoder& decoder, std::string type, std::optional<T>&... schemas) {
    const auto attempt = [&decoder](auto& schema) {
        if (!detail::tryDecodeSchema(decoder, platform::detail::emplaceBlank(schema))) schema.reset();
    };
    (attempt(schemas), ...);
    if ((schemas.has_value() || ...)) return;
    verifyAtLeastOneSchemaIsNotNil(
        {schemas...}, std::move(type), decoder.codingPath(), detail::collectErrors<T...>(decoder)
    );
}

} // namespace OpenAPIRuntime::inline v1
