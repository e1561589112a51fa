#include "QuillbeamAPI/Analytics.hpp"

#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "examples/tour/Chapters.hpp"
#include "platform/date/DateFormat.hpp"

#include <algorithm>
#include <numeric>

namespace examples {

namespace {

using Operations::getLinkAnalytics::Query;
using Bars = std::vector<std::pair<std::string, double>>;

template <class Entry>
Bars barsOf(const std::vector<Entry>& entries, std::string Entry::* name) {
    Bars bars;
    for (const Entry& entry : entries) {
        bars.emplace_back(entry.*name, entry.clickCount);
    }
    return bars;
}

/// @param from the first character of the date to show, as in 2026-05-01T12:00:00Z
Bars barsOf(const TimelineDTO& timeline, std::size_t from, std::size_t length) {
    Bars bars;
    for (const TimelineEntryDTO& entry : timeline.entries) {
        const std::string date = formatDate(entry.date, platform::ISO8601Format::internetDateTime);
        bars.emplace_back(date.substr(from, length), entry.clickCount);
    }
    return bars;
}

double sumOf(const Bars& bars) {
    return std::accumulate(bars.begin(), bars.end(), 0.0, [](double sum, const auto& bar) { return sum + bar.second; });
}

} // namespace

Task<void> readTheAnalytics(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    const Story& story = guide->story;
    const Operations::getLinkAnalytics::Path path(story.campaign.id);
    report.chapter("Analytics");

    report.step("Who followed the link in the last week?");
    const Query week(Query::unitPayload::day, story.now - std::chrono::days(7), story.now);
    auto output = co_await guide->client.getLinkAnalytics(path, week);
    guide->show(Operations::getLinkAnalytics::id, output, 200);
    const LinkAnalyticsDTO analytics = output.ok().body.json();
    report.detail("clicks", std::to_string(static_cast<int>(analytics.clickCount)));
    const std::pair<const char*, Bars> sections[] = {
        {"By day", barsOf(analytics.timeline, 0, 10)},
        {"Countries", barsOf(analytics.countries, &CountryAnalyticsDTO::countryCode)},
        {"Regions", barsOf(analytics.regions, &RegionsAnalyticsDTO::region)},
        {"Devices", barsOf(analytics.devices, &DeviceAnalyticsDTO::device)},
        {"Referrers", barsOf(analytics.referrers, &ReferrerAnalyticsDTO::referrer)},
        {"Browsers", barsOf(analytics.browsers, &BrowserAnalyticsDTO::browser)},
        {"Operating systems", barsOf(analytics.operatingSystems, &OperatingSystemAnalyticsDTO::os)},
    };
    for (const auto& [title, bars] : sections) {
        report.bars(title, bars);
        report.expect(sumOf(bars) == story.clicks, "expected all the clicks");
    }

    report.step("And in the last hours? Only the timeline is asked for");
    const std::vector<Query::contentPayloadPayload> content{Query::contentPayloadPayload::timeline};
    const Query hours(Query::unitPayload::hour, story.now - std::chrono::hours(12), story.now, content);
    auto recent = co_await guide->client.getLinkAnalytics(path, hours);
    guide->show(Operations::getLinkAnalytics::id, recent, 200);
    const LinkAnalyticsDTO latest = recent.ok().body.json();
    report.bars("By hour", barsOf(latest.timeline, 11, 5));
    report.expect(latest.countries.empty() && latest.operatingSystems.empty(), "sections that were not asked for");

    report.step("Ask for a link that is not there");
    auto unknown = co_await guide->client.getLinkAnalytics(Operations::getLinkAnalytics::Path("nothing"), week);
    guide->show(Operations::getLinkAnalytics::id, unknown, 404);
    guide->showError(unknown.notFound().body.json());
}

} // namespace examples
