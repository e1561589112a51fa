#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/RawValues.hpp"
#include "platform/coding/Record.hpp"
#include "platform/date/Date.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Analytics: the clicks of a link, over time and by where they came from.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// The clicks in one time slot.
struct QUILLBEAM_EXPORT TimelineEntryDTO {
    platform::Date date{}; ///< the start of the time slot
    double clickCount = 0;

    TimelineEntryDTO() = default;

    TimelineEntryDTO(platform::Date date_, double clickCount_)
        : date(date_)
        , clickCount(clickCount_) {}

    friend bool operator==(const TimelineEntryDTO&, const TimelineEntryDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks over time.
struct QUILLBEAM_EXPORT TimelineDTO {
    /// The width of a time slot.
    enum class unitPayload { hour, day, week, month };

    unitPayload unit = unitPayload::hour;
    std::vector<TimelineEntryDTO> entries{}; ///< in ascending order of date

    TimelineDTO() = default;

    TimelineDTO(unitPayload unit_, std::vector<TimelineEntryDTO> entries_)
        : unit(unit_)
        , entries(std::move(entries_)) {}

    friend bool operator==(const TimelineDTO&, const TimelineDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one country.
struct QUILLBEAM_EXPORT CountryAnalyticsDTO {
    std::string countryCode{}; ///< ISO 3166-1 alpha-2
    double clickCount = 0;

    CountryAnalyticsDTO() = default;

    CountryAnalyticsDTO(std::string countryCode_, double clickCount_)
        : countryCode(std::move(countryCode_))
        , clickCount(clickCount_) {}

    friend bool operator==(const CountryAnalyticsDTO&, const CountryAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one region.
struct QUILLBEAM_EXPORT RegionsAnalyticsDTO {
    std::string region{};
    double clickCount = 0;

    RegionsAnalyticsDTO() = default;

    RegionsAnalyticsDTO(std::string region_, double clickCount_)
        : region(std::move(region_))
        , clickCount(clickCount_) {}

    friend bool operator==(const RegionsAnalyticsDTO&, const RegionsAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one kind of device.
struct QUILLBEAM_EXPORT DeviceAnalyticsDTO {
    std::string device{};
    double clickCount = 0;

    DeviceAnalyticsDTO() = default;

    DeviceAnalyticsDTO(std::string device_, double clickCount_)
        : device(std::move(device_))
        , clickCount(clickCount_) {}

    friend bool operator==(const DeviceAnalyticsDTO&, const DeviceAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one referring site.
struct QUILLBEAM_EXPORT ReferrerAnalyticsDTO {
    std::string referrer{};
    double clickCount = 0;

    ReferrerAnalyticsDTO() = default;

    ReferrerAnalyticsDTO(std::string referrer_, double clickCount_)
        : referrer(std::move(referrer_))
        , clickCount(clickCount_) {}

    friend bool operator==(const ReferrerAnalyticsDTO&, const ReferrerAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one browser.
struct QUILLBEAM_EXPORT BrowserAnalyticsDTO {
    std::string browser{};
    double clickCount = 0;

    BrowserAnalyticsDTO() = default;

    BrowserAnalyticsDTO(std::string browser_, double clickCount_)
        : browser(std::move(browser_))
        , clickCount(clickCount_) {}

    friend bool operator==(const BrowserAnalyticsDTO&, const BrowserAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks from one operating system.
struct QUILLBEAM_EXPORT OperatingSystemAnalyticsDTO {
    std::string os{}; ///< the name of the operating system
    double clickCount = 0;

    OperatingSystemAnalyticsDTO() = default;

    OperatingSystemAnalyticsDTO(std::string os_, double clickCount_)
        : os(std::move(os_))
        , clickCount(clickCount_) {}

    friend bool operator==(const OperatingSystemAnalyticsDTO&, const OperatingSystemAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The clicks of a link in a range of time: in all, over time, and by where they came from. Every section is there;
/// one that was not asked for is empty.
struct QUILLBEAM_EXPORT LinkAnalyticsDTO {
    std::string linkId{};
    double clickCount = 0; ///< of the whole range
    TimelineDTO timeline{};
    std::vector<CountryAnalyticsDTO> countries{};
    std::vector<RegionsAnalyticsDTO> regions{};
    std::vector<DeviceAnalyticsDTO> devices{};
    std::vector<ReferrerAnalyticsDTO> referrers{};
    std::vector<BrowserAnalyticsDTO> browsers{};
    std::vector<OperatingSystemAnalyticsDTO> operatingSystems{};

    LinkAnalyticsDTO() = default;

    LinkAnalyticsDTO(
        std::string linkId_,
        double clickCount_,
        TimelineDTO timeline_,
        std::vector<CountryAnalyticsDTO> countries_,
        std::vector<RegionsAnalyticsDTO> regions_,
        std::vector<DeviceAnalyticsDTO> devices_,
        std::vector<ReferrerAnalyticsDTO> referrers_,
        std::vector<BrowserAnalyticsDTO> browsers_,
        std::vector<OperatingSystemAnalyticsDTO> operatingSystems_
    )
        : linkId(std::move(linkId_))
        , clickCount(clickCount_)
        , timeline(std::move(timeline_))
        , countries(std::move(countries_))
        , regions(std::move(regions_))
        , devices(std::move(devices_))
        , referrers(std::move(referrers_))
        , browsers(std::move(browsers_))
        , operatingSystems(std::move(operatingSystems_)) {}

    friend bool operator==(const LinkAnalyticsDTO&, const LinkAnalyticsDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /analytics/link/{linkId}`: reads a link's clicks in a range of time.
///
/// 200 `ok` with the analytics; 401 `unauthorized` without a valid key; 404 `notFound` for an unknown link.
namespace getLinkAnalytics {

inline constexpr std::string_view id = "getLinkAnalytics";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Path {
    std::string linkId{};

    Path() = default;

    explicit Path(std::string linkId_)
        : linkId(std::move(linkId_)) {}

    friend bool operator==(const Path&, const Path&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Query {
    /// The width of a time slot.
    enum class unitPayload { hour, day, week, month };
    /// A section of the analytics.
    enum class contentPayloadPayload { timeline, countries, regions, devices, referrers, browsers, operating_systems };

    unitPayload unit = unitPayload::hour;
    platform::Date startDate{};                                  ///< the start of the range
    platform::Date endDate{};                                    ///< its end
    std::optional<std::vector<contentPayloadPayload>> content{}; ///< the sections to fill; absent for all of them

    Query() = default;

    Query(
        unitPayload unit_,
        platform::Date startDate_,
        platform::Date endDate_,
        std::optional<std::vector<contentPayloadPayload>> content_ = std::nullopt
    )
        : unit(unit_)
        , startDate(startDate_)
        , endDate(endDate_)
        , content(std::move(content_)) {}

    friend bool operator==(const Query&, const Query&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Input {
    using Path = getLinkAnalytics::Path;
    using Query = getLinkAnalytics::Query;
    using Headers = AcceptHeaders;

    Path path{};
    Query query{};
    Headers headers{};

    Input() = default;

    Input(Path path_, Query query_, Headers headers_ = Headers())
        : path(std::move(path_))
        , query(std::move(query_))
        , headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::LinkAnalyticsDTO>, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace getLinkAnalytics

} // namespace QuillbeamAPI::inline v1::Operations

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::TimelineDTO::unitPayload> {
    static constexpr std::string_view values[] = {"hour", "day", "week", "month"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Operations::getLinkAnalytics::Query::unitPayload> {
    static constexpr std::string_view values[] = {"hour", "day", "week", "month"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Operations::getLinkAnalytics::Query::contentPayloadPayload> {
    static constexpr std::string_view values[] = {
        "timeline", "countries", "regions", "devices", "referrers", "browsers", "operating_systems"
    };
};
