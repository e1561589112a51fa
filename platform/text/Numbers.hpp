#pragma once

#include "platform/Export.hpp"

#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// The shortest decimal text that reads back as the same double, always recognisable as a fraction or an exponent form:
/// 1.5, 1.0, -0.0, 0.0001, 1e-05, 1e+20, 5e-324. Plain digits serve from 0.0001 up to a magnitude of 2^54; beyond, one
/// digit before the point and an exponent of at least two digits with its sign. Others are "inf", "-inf" and "nan".
///
/// Never depends on the locale.
[[nodiscard]] QUILLBEAM_EXPORT std::string shortestText(double number);

/// The text of a finite number in JSON (RFC 8259, section 6): the digits of `shortestText`, without the fraction where
/// it is zero, so that integral values up to 2^54 have neither fraction nor exponent. `Float` numbers get the shortest
/// digits that read back as the same float.
///
/// A number that is not finite has no text in JSON: the caller refuses it first.
[[nodiscard]] QUILLBEAM_EXPORT std::string jsonNumberText(double number);

/// `jsonNumberText`, written at the end of `output`.
QUILLBEAM_EXPORT void appendJSONNumber(std::string& output, double number);
QUILLBEAM_EXPORT void appendJSONNumber(std::string& output, float number);

/// The double nearest to the number that `text` is as a whole: a sign or none, decimal digits with or without a point,
/// an exponent or none; also "inf", "infinity" and "nan" in any case. Nothing for any other text, one with whitespace
/// around it among them, and for a magnitude too great for a double; a magnitude too small for one gives zero.
///
/// Never depends on the locale.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<double> parseDouble(std::string_view text);

} // namespace platform::inline v1
