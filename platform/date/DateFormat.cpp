#include "platform/date/DateFormat.hpp"

#include <cstdlib>

namespace platform::inline v1 {

namespace {

using namespace std::chrono;

constexpr Date firstInstant = sys_days(year(1) / January / 1);
constexpr Date endOfTime = sys_days(year(10000) / January / 1);

/// A day of the proleptic Gregorian calendar, with a year of any size: the standard library's ends at 32767.
struct CalendarDay {
    std::int64_t year;
    std::int64_t month;
    std::int64_t day;
};

/// Counts from the first of March of the year 0 in cycles of 400 years, so that the leap day is a cycle's last.
CalendarDay calendarDay(sys_days date) noexcept {
    constexpr std::int64_t daysPerCycle = 146097;
    const std::int64_t days = date.time_since_epoch().count() + std::int64_t{719468};
    const std::int64_t cycle = (days >= 0 ? days : days - (daysPerCycle - 1)) / daysPerCycle;
    const std::int64_t dayOfCycle = days - cycle * daysPerCycle;
    const std::int64_t yearOfCycle =
        (dayOfCycle - dayOfCycle / 1460 + dayOfCycle / 36524 - dayOfCycle / (daysPerCycle - 1)) / 365;
    const std::int64_t dayOfYear = dayOfCycle - (365 * yearOfCycle + yearOfCycle / 4 - yearOfCycle / 100);
    const std::int64_t monthFromMarch = (5 * dayOfYear + 2) / 153;
    const std::int64_t month = monthFromMarch < 10 ? monthFromMarch + 3 : monthFromMarch - 9;
    const std::int64_t day = dayOfYear - (153 * monthFromMarch + 2) / 5 + 1;
    return {cycle * 400 + yearOfCycle + (month <= 2 ? 1 : 0), month, day};
}

/// The time since midnight. Not the difference to the start of the day, which the first instants of all have no room
/// for.
microseconds timeOfDay(Date date) noexcept {
    const microseconds remainder = date.time_since_epoch() % days(1);
    return remainder < microseconds(0) ? remainder + days(1) : remainder;
}

/// Writes `value` with at least `digits` digits.
void appendPadded(std::string& text, std::int64_t value, std::size_t digits) {
    const std::string plain = std::to_string(value);
    if (plain.size() < digits) text.append(digits - plain.size(), '0');
    text += plain;
}

/// Reads a text from the left, piece by piece; after the first piece that is missing every further one is missing too.
class Scanner {
public:
    explicit Scanner(std::string_view text) noexcept
        : rest_(text) {}

    bool isAtEnd() const noexcept { return rest_.empty(); }

    bool take(char expected) noexcept {
        if (rest_.empty() || rest_.front() != expected) return false;
        rest_.remove_prefix(1);
        return true;
    }

    std::optional<int> takeDigit() noexcept {
        if (rest_.empty() || rest_.front() < '0' || rest_.front() > '9') return std::nullopt;
        const int digit = rest_.front() - '0';
        rest_.remove_prefix(1);
        return digit;
    }

    /// Exactly `count` digits, as a number of at most `limit`.
    bool takeNumber(int count, int limit, int& number) noexcept {
        number = 0;
        for (int i = 0; i < count; ++i) {
            const std::optional<int> digit = takeDigit();
            if (!digit) return false;
            number = number * 10 + *digit;
        }
        return number <= limit;
    }

private:
    std::string_view rest_;
};

/// "Z" or a numeric offset; what local time is ahead of UTC.
std::optional<minutes> takeOffset(Scanner& scanner) noexcept {
    if (scanner.take('Z')) return minutes(0);
    const bool isAhead = scanner.take('+');
    if (!isAhead && !scanner.take('-')) return std::nullopt;
    int hour = 0;
    int minute = 0;
    if (!scanner.takeNumber(2, 23, hour)) return std::nullopt;
    scanner.take(':');
    if (!scanner.takeNumber(2, 59, minute)) return std::nullopt;
    const minutes offset = hours(hour) + minutes(minute);
    return isAhead ? offset : -offset;
}

/// The fraction after its point, cut off at the microsecond.
std::optional<microseconds> takeFraction(Scanner& scanner) noexcept {
    std::optional<int> digit = scanner.takeDigit();
    if (!digit) return std::nullopt;
    microseconds fraction(0);
    for (microseconds unit(100'000); digit; digit = scanner.takeDigit(), unit /= 10) {
        fraction += *digit * unit;
    }
    return fraction;
}

/// True for the instants behind which a leap second can stand: the ends of months.
bool isStartOfMonth(Date date) noexcept {
    const sys_days day = floor<days>(date);
    return date == day && year_month_day(day).day() == std::chrono::day(1);
}

} // namespace

std::string formatDate(Date date, ISO8601Format format) {
    const CalendarDay calendar = calendarDay(floor<days>(date));
    const hh_mm_ss<microseconds> time(timeOfDay(date));
    std::string text;
    if (calendar.year < 0) text += '-';
    appendPadded(text, std::abs(calendar.year), 4);
    text += '-';
    appendPadded(text, calendar.month, 2);
    text += '-';
    appendPadded(text, calendar.day, 2);
    text += 'T';
    appendPadded(text, time.hours().count(), 2);
    text += ':';
    appendPadded(text, time.minutes().count(), 2);
    text += ':';
    appendPadded(text, time.seconds().count(), 2);
    if (format == ISO8601Format::internetDateTimeWithFractionalSeconds) {
        text += '.';
        appendPadded(text, duration_cast<milliseconds>(time.subseconds()).count(), 3);
    }
    text += 'Z';
    return text;
}

std::optional<Date> parseDate(std::string_view text, ISO8601Format format) noexcept {
    Scanner scanner(text);
    int year = 0;
    int month = 0;
    int day = 0;
    int hour = 0;
    int minute = 0;
    int second = 0;
    const bool hasDateAndTime =
        scanner.takeNumber(4, 9999, year) && scanner.take('-') && scanner.takeNumber(2, 12, month) &&
        scanner.take('-') && scanner.takeNumber(2, 31, day) && scanner.take('T') && scanner.takeNumber(2, 23, hour) &&
        scanner.take(':') && scanner.takeNumber(2, 59, minute) && scanner.take(':') &&
        scanner.takeNumber(2, 60, second);
    if (!hasDateAndTime) return std::nullopt;

    microseconds fraction(0);
    if (format == ISO8601Format::internetDateTimeWithFractionalSeconds) {
        if (!scanner.take('.')) return std::nullopt;
        const std::optional<microseconds> taken = takeFraction(scanner);
        if (!taken) return std::nullopt;
        fraction = *taken;
    }
    const std::optional<minutes> offset = takeOffset(scanner);
    if (!offset || !scanner.isAtEnd()) return std::nullopt;

    const year_month_day calendar(
        std::chrono::year(year),
        std::chrono::month(static_cast<unsigned>(month)),
        std::chrono::day(static_cast<unsigned>(day))
    );
    if (!calendar.ok()) return std::nullopt;
    const Date whole = sys_days(calendar) + hours(hour) + minutes(minute) + seconds(second) - *offset;
    if (second == 60 && !isStartOfMonth(whole)) return std::nullopt;
    const Date date = whole + fraction;
    if (date < firstInstant || date >= endOfTime) return std::nullopt;
    return date;
}

} // namespace platform::inline v1
