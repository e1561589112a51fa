#include "platform/date/DateFormat.hpp"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string_view>

using platform::Date;
using platform::ISO8601Format;

namespace {

void require(bool condition) {
    if (!condition) std::abort();
}

/// What is read is written as the same instant, cut to what the form shows, and that text reads and writes the same.
template <class Unit>
void checkReading(std::string_view text, ISO8601Format format) {
    const std::optional<Date> date = platform::parseDate(text, format);
    if (!date) return;
    const std::string written = platform::formatDate(*date, format);
    const std::optional<Date> again = platform::parseDate(written, format);
    require(again == std::chrono::floor<Unit>(*date));
    require(platform::formatDate(*again, format) == written);
    require(written.size() == (format == ISO8601Format::internetDateTime ? 20 : 24));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    checkReading<std::chrono::seconds>(text, ISO8601Format::internetDateTime);
    checkReading<std::chrono::milliseconds>(text, ISO8601Format::internetDateTimeWithFractionalSeconds);

    // Every instant has a text, those beyond the calendar's four digits too.
    std::int64_t count = 0;
    std::memcpy(&count, data, size < sizeof count ? size : sizeof count);
    const Date date{std::chrono::microseconds(count)};
    checkReading<std::chrono::seconds>(
        platform::formatDate(date, ISO8601Format::internetDateTime), ISO8601Format::internetDateTime
    );
    return 0;
}
