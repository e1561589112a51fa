#pragma once

#include "sandbox/Database.hpp"

#include <string>

namespace sandbox {

/// How statements have SQLite write dates and times, as the defaults of the schema do: in UTC without fractional
/// seconds, so that texts sort as times.
#define DATE_TIME_FORMAT "'%Y-%m-%dT%H:%M:%SZ'"

/// A date and time of ISO 8601, such as "2026-11-23T09:30:00Z" or with an offset, in the form in which it is stored and
/// written.
/// @param key of the member or parameter, for the message.
/// @throws Problem with status 400 if the text is none.
std::string checkedDateTime(Session& database, const std::string& key, const std::string& text);

} // namespace sandbox
