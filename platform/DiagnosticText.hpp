#pragma once

#include "platform/Export.hpp"
#include "platform/Ranges.hpp"
#include "platform/TypeName.hpp"

#include <concepts>
#include <cstddef>
#include <iterator>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <typeinfo>
#include <utility>
#include <variant>

/// The default text of any value, made for diagnostic texts such as those of errors: it names the value's contents, on
/// one line, for people. It is no format to be read back.
namespace platform::inline v1 {

template <class T>
void appendDiagnosticText(std::string& out, const T& value);

class RecordFields;
QUILLBEAM_EXPORT void describeRecord(std::string& out, const RecordFields& fields, const void* record);
template <class E>
struct RawValues;

namespace detail {

/// `text` in quotes, with quotes, backslashes and control characters escaped.
QUILLBEAM_EXPORT void appendQuoted(std::string& out, std::string_view text);
QUILLBEAM_EXPORT void appendNumber(std::string& out, double value);
/// A moment as 2024-01-02T03:04:05.678Z.
QUILLBEAM_EXPORT void appendMoment(std::string& out, long long microseconds);

template <class T>
concept DescribedByFunction = requires(std::string& out, const T& value) { describe(out, value); };

template <class T>
concept PrettilyDescribed = requires(const T& value) {
    { value.prettyDescription() } -> std::convertible_to<std::string>;
};

template <class T>
concept Described = requires(const T& value) {
    { value.description() } -> std::convertible_to<std::string>;
};

template <class T>
concept RawValued = requires(const T& value) {
    { value.rawValue() } -> std::convertible_to<std::string_view>;
};

template <class T>
concept RawValuedByFunction = std::is_enum_v<T> && requires(const T& value) {
    { rawValue(value) } -> std::convertible_to<std::string_view>;
};

template <class T>
concept DescribedByFields =
    requires(std::string& out, const T& value) { describeRecord(out, T::recordFields(), &value); };

template <class T>
concept DescribedByRawValues = std::is_enum_v<T> && requires { std::size(RawValues<T>::values); };

/// A `Date`, told without including its header: that one is heavy, and few texts hold dates.
template <class T>
concept Moment = requires(const T& value) {
    typename T::clock;
    requires T::period::num == 1 && T::period::den == 1'000'000;
    value.time_since_epoch().count();
};

template <class T>
concept PairLike = requires(const T& value) {
    value.first;
    value.second;
};

template <class T>
inline constexpr bool isOptional = false;
template <class T>
inline constexpr bool isOptional<std::optional<T>> = true;
template <class T>
inline constexpr bool isVariant = false;
template <class... T>
inline constexpr bool isVariant<std::variant<T...>> = true;

} // namespace detail

/// Appends the text of `value`, in the form it has within a larger text: a string stands in quotes.
///
/// The text comes from the first of these that there is:
/// - `describe(std::string& out, const T& value)`, found by argument-dependent lookup: the way for a type to say its
/// text;
/// - the value's `prettyDescription()`, `description()` or `rawValue()`, or the enumeration's `rawValue(value)`;
/// - the fields that a record declares, as TagDTO(id: "1", name: "x"), and the raw values of an enumeration
///   (platform/coding/Record.hpp, RawValues.hpp);
/// - for the language's own types: true or false, decimal digits, the quoted string, the elements as [a, b], the
/// entries
///   of a map as [key: value], the contained value or "nil", the alternative that a variant holds;
/// - the name of the type.
template <class T>
void appendDiagnosticText(std::string& out, const T& value) {
    using namespace detail;
    if constexpr (DescribedByFunction<T>) {
        describe(out, value);
    } else if constexpr (PrettilyDescribed<T>) {
        out += value.prettyDescription();
    } else if constexpr (Described<T>) {
        out += value.description();
    } else if constexpr (RawValued<T>) {
        out += value.rawValue();
    } else if constexpr (RawValuedByFunction<T>) {
        out += rawValue(value);
    } else if constexpr (DescribedByFields<T>) {
        describeRecord(out, T::recordFields(), &value);
    } else if constexpr (Moment<T>) {
        appendMoment(out, value.time_since_epoch().count());
    } else if constexpr (DescribedByRawValues<T>) {
        const auto index = static_cast<std::size_t>(value);
        if (index < std::size(RawValues<T>::values)) out += RawValues<T>::values[index];
    } else if constexpr (std::same_as<T, bool>) {
        out += value ? "true" : "false";
    } else if constexpr (std::same_as<T, char>) {
        appendQuoted(out, std::string_view(&value, 1));
    } else if constexpr (std::integral<T>) {
        out += std::to_string(value);
    } else if constexpr (std::floating_point<T>) {
        appendNumber(out, static_cast<double>(value));
    } else if constexpr (std::convertible_to<const T&, std::string_view>) {
        appendQuoted(out, value);
    } else if constexpr (isOptional<T>) {
        if (value) {
            appendDiagnosticText(out, *value);
        } else {
            out += "nil";
        }
    } else if constexpr (isVariant<T>) {
        std::visit([&out](const auto& alternative) { appendDiagnosticText(out, alternative); }, value);
    } else if constexpr (InputRange<const T>) {
        out += '[';
        bool first = true;
        for (const auto& element : value) {
            if (!first) out += ", ";
            first = false;
            if constexpr (requires { typename T::mapped_type; } && PairLike<RangeValue<const T>>) {
                appendDiagnosticText(out, element.first);
                out += ": ";
                appendDiagnosticText(out, element.second);
            } else {
                appendDiagnosticText(out, element);
            }
        }
        out += ']';
    } else if constexpr (PairLike<T>) {
        out += '(';
        appendDiagnosticText(out, value.first);
        out += ", ";
        appendDiagnosticText(out, value.second);
        out += ')';
    } else {
        out += unqualifiedTypeName(typeid(T));
    }
}

/// The text of `value` standing alone: the text of a string is the string itself, that of any other value is what
/// `appendDiagnosticText` gives.
template <class T>
[[nodiscard]] std::string diagnosticText(const T& value) {
    if constexpr (!detail::DescribedByFunction<T> && std::convertible_to<const T&, std::string_view>) {
        return std::string(std::string_view(value));
    } else {
        std::string text;
        appendDiagnosticText(text, value);
        return text;
    }
}

} // namespace platform::inline v1
