#pragma once

#include "platform/Export.hpp"
#include "platform/date/Date.hpp"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace platform::inline v1 {

/// The two exact forms of the internet profile of ISO 8601 (RFC 3339, section 5.6).
enum class ISO8601Format : std::uint8_t {
    internetDateTime,                      ///< 2024-01-02T03:04:05Z
    internetDateTimeWithFractionalSeconds, ///< 2024-01-02T03:04:05.678Z
};

/// The text of `date` in UTC, in the proleptic Gregorian calendar. What is finer than the form shows (a whole second,
/// or a millisecond) is cut off towards the past. A year outside 0001 to 9999 is written with its sign or its further
/// digits; `parseDate` does not read such a text.
///
/// Never depends on the locale or on the process's time zone.
/// Thread safety: safe from any thread.
[[nodiscard]] QUILLBEAM_EXPORT std::string formatDate(Date date, ISO8601Format format);

/// The instant that `text` tells; nothing where it is not, as a whole, a date in this form.
///
/// Accepted: years 0001 to 9999, the upper-case letters "T" and "Z", existing days only, hours to 23. An offset may
/// stand for the "Z", as +hh:mm or +hhmm to 23:59 either way; -00:00 counts as UTC. The fraction is refused without
/// fractional seconds, required with them, of any length; digits beyond the microsecond are cut off. Second 60 is read
/// only where a leap second can stand, in the last minute of a month in UTC, and means the second that follows. An
/// instant that an offset moves out of the years 0001 to 9999 is refused.
///
/// Never depends on the locale or on the process's time zone.
/// Thread safety: safe from any thread.
[[nodiscard]] QUILLBEAM_EXPORT std::optional<Date> parseDate(std::string_view text, ISO8601Format format) noexcept;

} // namespace platform::inline v1
