#include "sandbox/DateTime.hpp"

#include "sandbox/Problem.hpp"

namespace sandbox {

std::string checkedDateTime(Session& database, const std::string& key, const std::string& text) {
    // The database also reads dates without times, day numbers and words, and days that their month does not have.
    // It stops at a NUL, and a week that begins in the year 0 has no date.
    constexpr std::size_t shortest = 20;
    if (text.size() >= shortest && text[10] == 'T' && text.find('\0') == std::string::npos &&
        !text.starts_with("0000")) {
        const auto row = database.first(
            "SELECT strftime(" DATE_TIME_FORMAT ", ?1) "
            "WHERE date(substr(?1, 1, 10), '+0 days') = substr(?1, 1, 10)",
            {text}
        );
        const auto date = row ? row->optionalText(0) : std::nullopt;
        if (date) return *date;
    }
    throw Problem::badRequest("\"" + key + "\" must be a date and time such as 2026-11-23T09:30:00Z.");
}

} // namespace sandbox
