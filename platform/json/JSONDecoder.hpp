#pragma once

#include "platform/Export.hpp"
#include "platform/coding/Coding.hpp"
#include "platform/coding/UserInfo.hpp"
#include "platform/date/Date.hpp"

#include <functional>
#include <string_view>
#include <utility>

namespace platform::inline v1 {

/// Reads values from JSON (RFC 8259).
///
/// Strict: no comments, trailing commas, leading zeros, bare control characters, byte order mark or ill-formed UTF-8;
/// nothing but white space behind the value; at most 512 containers inside one another; text below 4 GiB. The whole
/// text is checked before the first value is read. Numbers are read when a value asks for them, exactly: a double is
/// the nearest one, an integer must be integral (1.0 and 1e2 are) and in range. Of a key that comes twice the first
/// counts. Errors tell the byte of the text that they are about.
///
/// Thread safety: decoding changes nothing in the decoder, so one decoder serves any number of threads, given that its
/// date strategy may be called by them.
class QUILLBEAM_EXPORT JSONDecoder {
public:
    using DateStrategy = std::function<Date(std::string_view)>;

    /// Makes a date of the string that stands for it; what it throws passes out of `decode`. Without one a date is the
    /// number of seconds since 1970-01-01T00:00:00Z.
    DateStrategy dateStrategy{};

    /// Handed to the values that decode themselves.
    UserInfo userInfo{};

    JSONDecoder() = default;

    explicit JSONDecoder(DateStrategy dateStrategy_)
        : dateStrategy(std::move(dateStrategy_)) {}

    /// The value that the text stands for.
    ///
    /// @param text lent for the call
    /// @throws DecodingError where the text is malformed or stands for no `T`; whatever a value's own coding or the
    /// date strategy throws
    template <class T>
    [[nodiscard]] T decode(std::string_view text) const {
        T value = detail::blankFor<T>();
        decode(text, value);
        return value;
    }

    /// Decodes into `out`, which is left partly decoded by a failure.
    template <class T>
    void decode(std::string_view text, T& out) const {
        decode(text, detail::decodeOperations<T>, &out);
    }

private:
    void decode(std::string_view text, const DecodeOperations& operations, void* out) const;
};

} // namespace platform::inline v1
