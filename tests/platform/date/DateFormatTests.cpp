#include "platform/date/DateFormat.hpp"

#include <gtest/gtest.h>

#include <cstdio>
#include <cstdlib>

namespace {

using namespace std::chrono_literals;
using enum platform::ISO8601Format;
using platform::Date;

constexpr Date sample{1704164645s + 678901us}; // 2024-01-02T03:04:05.678901Z

TEST(DateFormat, writesUTCAndCutsOffTowardsThePast) {
    EXPECT_EQ(platform::formatDate(sample, internetDateTime), "2024-01-02T03:04:05Z");
    EXPECT_EQ(platform::formatDate(sample, internetDateTimeWithFractionalSeconds), "2024-01-02T03:04:05.678Z");
    EXPECT_EQ(platform::formatDate(Date(-1us), internetDateTime), "1969-12-31T23:59:59Z");
    EXPECT_EQ(platform::formatDate(Date(-1us), internetDateTimeWithFractionalSeconds), "1969-12-31T23:59:59.999Z");
    EXPECT_EQ(
        platform::formatDate(std::chrono::sys_days(std::chrono::year(10000) / 1 / 1), internetDateTime),
        "10000-01-01T00:00:00Z"
    );
    EXPECT_EQ(platform::formatDate(Date::min(), internetDateTime), "-290308-12-21T19:59:05Z");
    EXPECT_EQ(platform::formatDate(Date::max(), internetDateTime), "294247-01-10T04:00:54Z");
}

TEST(DateFormat, agreesWithTheStandardLibrarysCalendar) {
    for (auto day = std::chrono::sys_days(std::chrono::year(-401) / 1 / 1); day < Date(253402300800s);
         day += std::chrono::days(61)) {
        const std::chrono::year_month_day calendar(day);
        const std::string text = platform::formatDate(day, internetDateTime);
        char expected[32];
        std::snprintf(
            expected,
            sizeof expected,
            "%s%04d-%02u-%02uT00:00:00Z",
            calendar.year() < std::chrono::year(0) ? "-" : "",
            std::abs(static_cast<int>(calendar.year())),
            static_cast<unsigned>(calendar.month()),
            static_cast<unsigned>(calendar.day())
        );
        ASSERT_EQ(text, expected);
    }
}

TEST(DateFormat, readsWhatRFC3339Allows) {
    struct Case {
        std::string_view text;
        Date date;
    };

    const Case whole[] = {
        {"1970-01-01T00:00:00Z", Date(0s)},
        {"2024-01-02T03:04:05Z", Date(1704164645s)},
        {"2024-01-02T05:34:05+02:30", Date(1704164645s)},
        {"2024-01-01T21:04:05-0600", Date(1704164645s)},
        {"2024-01-02T03:04:05-00:00", Date(1704164645s)},
        {"2024-02-29T23:59:59Z", Date(1709251199s)},
        {"2000-02-29T00:00:00Z", Date(951782400s)},
        {"1969-12-31T23:59:59Z", Date(-1s)},
        {"2016-12-31T23:59:60Z", Date(1483228800s)},      // a leap second
        {"2017-01-01T00:59:60+01:00", Date(1483228800s)}, // the same one seen from the east
        {"0001-01-01T00:00:00Z", Date(-62135596800s)},
        {"9999-12-31T23:59:59Z", Date(253402300799s)},
    };
    for (const auto& [text, date] : whole) {
        EXPECT_EQ(platform::parseDate(text, internetDateTime), date) << text;
        EXPECT_EQ(platform::parseDate(text, internetDateTimeWithFractionalSeconds), std::nullopt) << text;
    }
    const Case fractional[] = {
        {"2024-01-02T03:04:05.678901Z", sample},
        {"2024-01-02T03:04:05.6789019999999999999999Z", sample},
        {"2024-01-02T04:04:05.678901+01:00", sample},
        {"1969-12-31T23:59:59.5Z", Date(-500ms)},
        {"2024-01-02T03:04:05.0Z", Date(1704164645s)},
    };
    for (const auto& [text, date] : fractional) {
        EXPECT_EQ(platform::parseDate(text, internetDateTimeWithFractionalSeconds), date) << text;
        EXPECT_EQ(platform::parseDate(text, internetDateTime), std::nullopt) << text;
    }
}

TEST(DateFormat, refusesEverythingElse) {
    const std::string_view texts[] = {
        "",
        "2024-01-02",
        "2024-01-02T03:04:05",
        "2024-01-02T03:04Z",
        "2024-01-02 03:04:05Z",
        "2024-01-02t03:04:05z",
        " 2024-01-02T03:04:05Z",
        "2024-01-02T03:04:05Z ",
        "20240102T030405Z",
        "+2024-01-02T03:04:05Z",
        "2023-02-29T00:00:00Z",
        "1900-02-29T00:00:00Z",
        "2024-04-31T00:00:00Z",
        "2024-00-01T00:00:00Z",
        "2024-13-01T00:00:00Z",
        "2024-01-00T00:00:00Z",
        "2024-01-02T24:00:00Z",
        "2024-01-02T03:60:00Z",
        "2024-01-02T03:04:61Z",
        "2024-01-02T03:04:60Z",
        "2024-01-30T23:59:60Z",
        "2024-01-02T03:04:05+24:00",
        "2024-01-02T03:04:05+01:60",
        "2024-01-02T03:04:05+1:00",
        "2024-01-02T03:04:05+01",
        "2024-01-02T03:04:05+01:0",
        "0000-01-01T00:00:00Z",
        "0001-01-01T00:00:00+00:01",
        "9999-12-31T23:59:59-00:01",
        "9999-12-31T23:59:60Z",
    };
    for (const std::string_view text : texts) {
        EXPECT_EQ(platform::parseDate(text, internetDateTime), std::nullopt) << text;
    }
    for (const std::string_view text : {"2024-01-02T03:04:05.Z", "2024-01-02T03:04:05,5Z", "2024-01-02T03:04:05.5"}) {
        EXPECT_EQ(platform::parseDate(text, internetDateTimeWithFractionalSeconds), std::nullopt) << text;
    }
}

} // namespace
