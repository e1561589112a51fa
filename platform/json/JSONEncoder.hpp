#pragma once

#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/coding/UserInfo.hpp"
#include "platform/date/Date.hpp"

#include <concepts>
#include <cstdint>
#include <functional>
#include <string>

namespace platform::inline v1 {

/// Writes values as JSON (RFC 8259).
///
///     JSONEncoder encoder(JSONEncoder::prettyPrinted | JSONEncoder::sortedKeys);
///     std::string text = encoder.encode(tag);
///
/// Pretty text is indented by two spaces a level, with `"key": value`, and `[]` and `{}` for what is empty; else there
/// is no white space at all. Doubles have the fewest digits that read back as the same value. Strings must be UTF-8;
/// bytes that are not are written as U+FFFD. A value that encodes nothing inside another one becomes `{}`.
///
/// Thread safety: encoding changes nothing in the encoder, so one encoder serves any number of threads, given that its
/// date strategy may be called by them.
class QUILLBEAM_EXPORT JSONEncoder {
public:
    /// A set of these, joined by `|`, is a layout.
    enum OutputFormatting : std::uint8_t {
        plain = 0,
        prettyPrinted = 1,
        sortedKeys = 2,             ///< members in ascending order of their keys' UTF-8 bytes; else as encoded
        withoutEscapingSlashes = 4, ///< `/` stands as it is; else as `\/`
    };

    friend constexpr OutputFormatting operator|(OutputFormatting a, OutputFormatting b) noexcept {
        return static_cast<OutputFormatting>(static_cast<std::uint8_t>(a) | static_cast<std::uint8_t>(b));
    }

    using DateStrategy = std::function<std::string(Date)>;

    OutputFormatting outputFormatting = plain;

    /// Makes the string that stands for a date; what it throws passes out of `encode`. Without one a date is the number
    /// of seconds since 1970-01-01T00:00:00Z.
    DateStrategy dateStrategy{};

    /// Handed to the values that encode themselves.
    UserInfo userInfo{};

    JSONEncoder() = default;

    explicit JSONEncoder(OutputFormatting outputFormatting_, DateStrategy dateStrategy_ = nullptr)
        : outputFormatting(outputFormatting_)
        , dateStrategy(std::move(dateStrategy_)) {}

    /// The JSON text of a value.
    ///
    /// @throws EncodingError where there is none: a number that is not finite, a value that encodes nothing, two values
    /// in one place, more than 512 containers inside one another; whatever a value's own coding or the date strategy
    /// throws
    template <class T>
    [[nodiscard]] std::string encode(const T& value) const {
        std::string text;
        if (!encode(detail::encodeOperations<T>, &value, text))
            failOnNothingEncoded(keptForDiagnosis(value), typeNameOf<T>());
        return text;
    }

private:
    template <class T>
    static AnyValue keptForDiagnosis(const T& value) {
        if constexpr (std::copy_constructible<T>) {
            return AnyValue(value);
        } else {
            return AnyValue(typeNameOf<T>());
        }
    }

    [[nodiscard]] bool encode(const EncodeOperations& operations, const void* value, std::string& text) const;
    [[noreturn]] static void failOnNothingEncoded(AnyValue value, const std::string& typeName);
};

} // namespace platform::inline v1
