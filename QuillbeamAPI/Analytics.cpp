#include "QuillbeamAPI/Analytics.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& TimelineEntryDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "TimelineEntryDTO", field("date", &TimelineEntryDTO::date), field("clickCount", &TimelineEntryDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& TimelineDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "TimelineDTO", field("unit", &TimelineDTO::unit), field("entries", &TimelineDTO::entries)
    );
    return table;
}

const platform::RecordFields& CountryAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "CountryAnalyticsDTO",
        field("countryCode", &CountryAnalyticsDTO::countryCode),
        field("clickCount", &CountryAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& RegionsAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "RegionsAnalyticsDTO",
        field("region", &RegionsAnalyticsDTO::region),
        field("clickCount", &RegionsAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& DeviceAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "DeviceAnalyticsDTO",
        field("device", &DeviceAnalyticsDTO::device),
        field("clickCount", &DeviceAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& ReferrerAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "ReferrerAnalyticsDTO",
        field("referrer", &ReferrerAnalyticsDTO::referrer),
        field("clickCount", &ReferrerAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& BrowserAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "BrowserAnalyticsDTO",
        field("browser", &BrowserAnalyticsDTO::browser),
        field("clickCount", &BrowserAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& OperatingSystemAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "OperatingSystemAnalyticsDTO",
        field("os", &OperatingSystemAnalyticsDTO::os),
        field("clickCount", &OperatingSystemAnalyticsDTO::clickCount)
    );
    return table;
}

const platform::RecordFields& LinkAnalyticsDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "LinkAnalyticsDTO",
        field("linkId", &LinkAnalyticsDTO::linkId),
        field("clickCount", &LinkAnalyticsDTO::clickCount),
        field("timeline", &LinkAnalyticsDTO::timeline),
        field("countries", &LinkAnalyticsDTO::countries),
        field("regions", &LinkAnalyticsDTO::regions),
        field("devices", &LinkAnalyticsDTO::devices),
        field("referrers", &LinkAnalyticsDTO::referrers),
        field("browsers", &LinkAnalyticsDTO::browsers),
        field("operatingSystems", &LinkAnalyticsDTO::operatingSystems)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getLinkAnalytics::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("linkId", &getLinkAnalytics::Path::linkId));
    return table;
}

const platform::RecordFields& getLinkAnalytics::Query::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Query",
        field("unit", &getLinkAnalytics::Query::unit),
        field("startDate", &getLinkAnalytics::Query::startDate),
        field("endDate", &getLinkAnalytics::Query::endDate),
        field("content", &getLinkAnalytics::Query::content)
    );
    return table;
}

const platform::RecordFields& getLinkAnalytics::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getLinkAnalytics.Input",
        field("path", &getLinkAnalytics::Input::path),
        field("query", &getLinkAnalytics::Input::query),
        field("headers", &getLinkAnalytics::Input::headers)
    );
    return table;
}

} // namespace Operations

// --- getLinkAnalytics

platform::Task<Operations::getLinkAnalytics::Output> Client::getLinkAnalytics(Operations::getLinkAnalytics::Input input
) {
    return detail::call<Operations::getLinkAnalytics::Output>(
        *client_,
        {Operations::getLinkAnalytics::id, HTTPTypes::HTTPRequest::Method::get, "/analytics/link/{}"},
        std::move(input)
    );
}

platform::Task<Operations::getLinkAnalytics::Output>
APIProtocol::getLinkAnalytics(Operations::getLinkAnalytics::Path path, Operations::getLinkAnalytics::Query query) {
    return getLinkAnalytics(Operations::getLinkAnalytics::Input(std::move(path), std::move(query)));
}

platform::Task<Operations::getLinkAnalytics::Output> APIProtocol::getLinkAnalytics(
    Operations::getLinkAnalytics::Path path, Operations::getLinkAnalytics::Query query, AcceptHeaders headers
) {
    return getLinkAnalytics(Operations::getLinkAnalytics::Input(std::move(path), std::move(query), std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getLinkAnalytics::Output&);

} // namespace QuillbeamAPI::inline v1
