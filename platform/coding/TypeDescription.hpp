#pragma once

#include "platform/TypeName.hpp"

#include <concepts>
#include <cstdint>
#include <optional>
#include <string>
#include <typeinfo>

namespace platform::inline v1 {

/// What a coded form of a type can be, as far as the type says: coders refuse another form without asking the type.
enum class CodedShape : std::uint8_t {
    any,     ///< unknown: the type decides, null included
    single,  ///< neither object nor list nor null
    unkeyed, ///< a list
    keyed,   ///< an object
};

class Decoder;
class Encoder;

/// How values of `T` are coded. Specialise it for your own types; see platform/coding/Coding.hpp. A header that only
/// declares codings, and leaves their definitions to a source file, needs no more than this one.
template <class T>
struct Coding;

/// The name of a type as errors tell it: `Coding<T>::typeName` (a constant or a static function) where there is one,
/// else the type's unqualified name.
template <class T>
[[nodiscard]] std::string typeNameOf() {
    if constexpr (requires { std::string(Coding<T>::typeName()); }) {
        return std::string(Coding<T>::typeName());
    } else if constexpr (requires { std::string(Coding<T>::typeName); }) {
        return std::string(Coding<T>::typeName);
    } else {
        return unqualifiedTypeName(typeid(T));
    }
}

/// `Coding<T>::shape` where there is one, else `CodedShape::any`.
template <class T>
[[nodiscard]] consteval CodedShape codedShapeOf() {
    if constexpr (requires {
                      { Coding<T>::shape } -> std::convertible_to<CodedShape>;
                  }) {
        return Coding<T>::shape;
    } else {
        return CodedShape::any;
    }
}

namespace detail {

/// What decoding overwrites: a default-constructed value, or `Coding<T>::blank()` for a type that has none.
template <class T>
[[nodiscard]] T blankFor() {
    if constexpr (requires { Coding<T>::blank(); }) {
        return Coding<T>::blank();
    } else {
        return T{};
    }
}

template <class T>
T& emplaceBlank(std::optional<T>& out) {
    if constexpr (std::default_initializable<T>) {
        return out.emplace();
    } else {
        return out.emplace(blankFor<T>());
    }
}

} // namespace detail

} // namespace platform::inline v1
