#pragma once

#include "platform/coding/CodingError.hpp"
#include "platform/coding/Decoder.hpp"
#include "platform/coding/Encoder.hpp"
#include "platform/coding/RawValues.hpp"
#include "platform/coding/Record.hpp"

#include <concepts>
#include <cstdint>
#include <functional>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <unordered_map>
#include <utility>
#include <vector>

/// How values become coded and read themselves: the trait `Coding<T>`.
///
/// There is a coding for bool, the integers of 8 to 64 bits, float, double, std::string, Date, std::optional,
/// std::vector, std::map and std::unordered_map with string keys, records (platform/coding/Record.hpp), enumerations
/// with raw values (platform/coding/RawValues.hpp) and classes with `rawValue()` and `static fromRawValue(text)`. For
/// another type write
///
///     template <>
///     struct platform::Coding<Shape> {
///         static constexpr std::string_view typeName = "Shape";                  // optional: for errors
///         static constexpr CodedShape shape = CodedShape::keyed;                 // optional: refuse other forms early
///         static Shape blank();                                                  // without a default constructor
///         static bool mayDecode(Decoder& decoder);                               // optional: refuse without an error
///         static void decode(Decoder& decoder, Shape& out);
///         static void encode(Encoder& encoder, const Shape& value);
///     };
///
/// A tagged union reads its discriminator from `decoder.container()` and then decodes the case from the same decoder:
/// `Coding<Circle>::decode(decoder, circle)`. Types are decoded into a default-constructed value, or into `blank()`.
namespace platform::inline v1 {

namespace detail {

template <class T>
concept CodedInteger =
    std::integral<T> && !std::same_as<T, bool> && !std::same_as<T, char> && !std::same_as<T, wchar_t> &&
    !std::same_as<T, char8_t> && !std::same_as<T, char16_t> && !std::same_as<T, char32_t>;

/// What containers read and write by themselves.
template <class T>
concept CodedScalar = std::same_as<T, bool> || CodedInteger<T> || std::same_as<T, double> || std::same_as<T, float> ||
                      std::same_as<T, std::string> || std::same_as<T, Date>;

template <class T>
inline constexpr DecodeOperations decodeOperations{&typeNameOf<T>, codedShapeOf<T>(), [](Decoder& decoder, void* out) {
                                                       Coding<T>::decode(decoder, *static_cast<T*>(out));
                                                   }};

template <class T>
inline constexpr EncodeOperations encodeOperations{[](Encoder& encoder, const void* value) {
    Coding<T>::encode(encoder, *static_cast<const T*>(value));
}};

template <class Place, class T>
Read readValue(ValueReader<Place>& reader, Place place, T& out) {
    if constexpr (std::same_as<T, bool>) {
        return reader.boolean(place, out);
    } else if constexpr (CodedInteger<T>) {
        std::uint64_t bits = 0;
        const Read read = reader.integer(place, IntegerKind{sizeof(T) * 8, std::is_signed_v<T>}, bits);
        if (read == Read::ok) out = static_cast<T>(bits);
        return read;
    } else if constexpr (std::floating_point<T>) {
        return reader.number(place, out);
    } else if constexpr (std::same_as<T, std::string>) {
        return reader.string(place, out);
    } else if constexpr (std::same_as<T, Date>) {
        return reader.date(place, out);
    } else {
        return reader.value(place, decodeOperations<T>, &out);
    }
}

template <class T>
bool tryRead(SingleValueReader& reader, T& out) {
    if constexpr (CodedScalar<T> && !std::same_as<T, Date>) {
        return readValue(reader, Here{}, out) == Read::ok;
    } else {
        try {
            return readValue(reader, Here{}, out) == Read::ok;
        } catch (const DecodingError&) {
            return false;
        }
    }
}

template <class Place, class T>
void writeValue(ValueWriter<Place>& writer, Place place, const T& value) {
    if constexpr (std::same_as<T, bool>) {
        writer.boolean(place, value);
    } else if constexpr (CodedInteger<T> && std::is_signed_v<T>) {
        writer.integer(place, value);
    } else if constexpr (CodedInteger<T>) {
        writer.unsignedInteger(place, value);
    } else if constexpr (std::floating_point<T>) {
        writer.number(place, value);
    } else if constexpr (std::convertible_to<const T&, std::string_view>) {
        writer.string(place, value);
    } else if constexpr (std::same_as<T, Date>) {
        writer.date(place, value);
    } else {
        writer.value(place, encodeOperations<T>, &value);
    }
}

template <class T>
constexpr std::string_view scalarName() {
    if constexpr (std::same_as<T, bool>) {
        return "Bool";
    } else if constexpr (CodedInteger<T>) {
        constexpr std::string_view signedNames[] = {"Int8", "Int16", "Int32", "Int64"};
        constexpr std::string_view unsignedNames[] = {"UInt8", "UInt16", "UInt32", "UInt64"};
        constexpr std::size_t index = sizeof(T) == 1 ? 0 : sizeof(T) == 2 ? 1 : sizeof(T) == 4 ? 2 : 3;
        return std::is_signed_v<T> ? signedNames[index] : unsignedNames[index];
    } else if constexpr (std::same_as<T, double>) {
        return "Double";
    } else if constexpr (std::same_as<T, float>) {
        return "Float";
    } else if constexpr (std::same_as<T, Date>) {
        return "Date";
    } else {
        return "String";
    }
}

/// The coding of a map from text: an object whose members are its entries.
template <class Map>
struct MapCoding {
    using Value = typename Map::mapped_type;
    static constexpr CodedShape shape = CodedShape::keyed;

    [[nodiscard]] static std::string typeName() { return "Dictionary<String, " + typeNameOf<Value>() + ">"; }

    static void decode(Decoder& decoder, Map& out) {
        out.clear();
        auto container = decoder.container();
        std::size_t cursor = 0;
        std::string key;
        while (container.implementation().nextKey(cursor, key)) {
            Value value = blankFor<Value>();
            container.decode(key, value);
            out.emplace(std::move(key), std::move(value));
            key.clear();
        }
    }

    static void encode(Encoder& encoder, const Map& value) {
        auto container = encoder.container();
        for (const auto& [key, element] : value)
            container.encode(key, element);
    }
};

/// Reads text and lets `parse` turn it into a value; text that gives none is corrupted data.
QUILLBEAM_EXPORT void failOnUnknownRawValue(
    const SingleValueDecodingContainer& container, const std::string& typeName, std::string_view text
);

template <class T, class Parse>
void decodeRawValue(Decoder& decoder, T& out, Parse parse) {
    auto container = decoder.singleValueContainer();
    std::string text;
    container.decode(text);
    std::optional<T> value = parse(std::string_view(text));
    if (!value) return failOnUnknownRawValue(container, typeNameOf<T>(), text);
    out = *std::move(value);
}

template <class T>
concept RawValueClass = requires(const T& value, std::string_view text) {
    { value.rawValue() } -> std::convertible_to<std::string_view>;
    { T::fromRawValue(text) } -> std::same_as<std::optional<T>>;
};

} // namespace detail

template <detail::CodedScalar T>
struct Coding<T> {
    static constexpr std::string_view typeName = detail::scalarName<T>();
    static constexpr CodedShape shape = CodedShape::single;

    static void decode(Decoder& decoder, T& out) {
        auto container = decoder.singleValueContainer();
        container.decode(out);
    }

    static void encode(Encoder& encoder, const T& value) {
        auto container = encoder.singleValueContainer();
        container.encode(value);
    }
};

/// Text that is only lent can be encoded, not decoded.
template <>
struct Coding<std::string_view> {
    static constexpr std::string_view typeName = "String";

    static void encode(Encoder& encoder, std::string_view value) {
        auto container = encoder.singleValueContainer();
        container.encode(value);
    }
};

/// No value is null.
template <class T>
struct Coding<std::optional<T>> {
    [[nodiscard]] static std::string typeName() { return "Optional<" + typeNameOf<T>() + ">"; }

    static void decode(Decoder& decoder, std::optional<T>& out) {
        auto container = decoder.singleValueContainer();
        out.reset();
        if (!container.decodeNil()) container.decode(detail::emplaceBlank(out));
    }

    static void encode(Encoder& encoder, const std::optional<T>& value) {
        auto container = encoder.singleValueContainer();
        if (value) {
            container.encode(*value);
        } else {
            container.encodeNil();
        }
    }
};

template <class T>
struct Coding<std::vector<T>> {
    static constexpr CodedShape shape = CodedShape::unkeyed;

    [[nodiscard]] static std::string typeName() { return "Array<" + typeNameOf<T>() + ">"; }

    static void decode(Decoder& decoder, std::vector<T>& out) {
        out.clear();
        auto container = decoder.unkeyedContainer();
        out.reserve(container.count().value_or(0));
        while (!container.isAtEnd()) {
            if constexpr (std::same_as<T, bool> || !std::default_initializable<T>) {
                out.push_back(container.template decode<T>());
            } else {
                container.decode(out.emplace_back());
            }
        }
    }

    static void encode(Encoder& encoder, const std::vector<T>& value) {
        auto container = encoder.unkeyedContainer();
        for (const auto& element : value)
            container.encode(static_cast<const T&>(element));
    }
};

template <class T, class Compare, class Allocator>
struct Coding<std::map<std::string, T, Compare, Allocator>>
    : detail::MapCoding<std::map<std::string, T, Compare, Allocator>> {};

template <class T, class Hash, class Equal, class Allocator>
struct Coding<std::unordered_map<std::string, T, Hash, Equal, Allocator>>
    : detail::MapCoding<std::unordered_map<std::string, T, Hash, Equal, Allocator>> {};

/// An enumeration is its text; unknown text fails as corrupted data.
template <RawRepresentable E>
struct Coding<E> {
    static constexpr CodedShape shape = CodedShape::single;

    static void decode(Decoder& decoder, E& out) {
        detail::decodeRawValue(decoder, out, [](std::string_view text) { return fromRawValue<E>(text); });
    }

    static void encode(Encoder& encoder, const E& value) {
        auto container = encoder.singleValueContainer();
        container.encode(rawValue(value));
    }
};

/// A class with a raw value is its text; text that gives no value fails as corrupted data.
template <detail::RawValueClass T>
struct Coding<T> {
    static constexpr CodedShape shape = CodedShape::single;

    static void decode(Decoder& decoder, T& out) {
        detail::decodeRawValue(decoder, out, [](std::string_view text) { return T::fromRawValue(text); });
    }

    static void encode(Encoder& encoder, const T& value) {
        const auto& text = value.rawValue();
        auto container = encoder.singleValueContainer();
        container.encode(std::string_view(text));
    }
};

namespace detail {
QUILLBEAM_EXPORT void decodeRecord(const RecordFields& fields, Decoder& decoder, void* out);
/// False where the value is no object, or a field is missing or of the wrong kind, as far as the coder can tell kinds.
[[nodiscard]] QUILLBEAM_EXPORT bool mayDecodeRecord(const RecordFields& fields, Decoder& decoder);
QUILLBEAM_EXPORT void encodeRecord(const RecordFields& fields, Encoder& encoder, const void* record);
[[nodiscard]] QUILLBEAM_EXPORT std::string recordTypeName(const RecordFields& fields);
} // namespace detail

template <Record T>
struct Coding<T> {
    static constexpr CodedShape shape = CodedShape::keyed;

    [[nodiscard]] static std::string typeName() { return detail::recordTypeName(T::recordFields()); }

    [[nodiscard]] static bool mayDecode(Decoder& decoder) {
        return detail::mayDecodeRecord(T::recordFields(), decoder);
    }

    static void decode(Decoder& decoder, T& out) { detail::decodeRecord(T::recordFields(), decoder, &out); }

    static void encode(Encoder& encoder, const T& value) { detail::encodeRecord(T::recordFields(), encoder, &value); }
};

} // namespace platform::inline v1
