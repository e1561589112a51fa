#include "benchmarks/client/Samples.hpp"

#include <chrono>
#include <utility>

namespace samples {

using namespace Schemas;

namespace {

constexpr platform::Date start{std::chrono::seconds(1'704'067'200)}; // 2024-01-01T00:00:00Z

template <class Entry>
std::vector<Entry> breakdown(std::initializer_list<const char*> names) {
    std::vector<Entry> entries;
    for (const char* name : names)
        entries.emplace_back(name, 5000.0 / static_cast<double>(1U << entries.size()));
    return entries;
}

} // namespace

CreateLinkDTO newLink(std::size_t number, std::string domain) {
    const std::string n = std::to_string(number);
    CreateLinkDTO link;
    link.destinationUrl = "https://www.example.com/campaigns/spring/landing-page-" + n + "?ref=newsletter";
    link.domain = std::move(domain);
    link.title = "Spring campaign, page " + n;
    if (number % 2 == 0) link.description = "A page about \"everything\" – and more";
    link.tags.emplace_back(std::nullopt, "marketing");
    link.utmSource = "newsletter";
    link.utmMedium = "email";
    link.utmCampaign = "spring-2024";
    if (number % 4 == 0) {
        link.iosRedirectUrl = "https://apps.example.com/ios/" + n;
        link.androidRedirectUrl = "https://apps.example.com/android/" + n;
        link.regionRedirects = {
            RegionRedirect("DE", "https://www.example.de/"), RegionRedirect("FR", "https://www.example.fr/")
        };
    }
    return link;
}

LinkHistoryDTO history(std::size_t links) {
    LinkHistoryDTO history;
    history.tags.emplace_back("tag_0", "marketing");
    for (std::size_t i = 0; i < links; ++i) {
        const std::string n = std::to_string(i);
        CreateLinkDTO made = newLink(i, "dom_0");
        LinkDTO& link = history.links.emplace_back();
        link.id = "lnk_0123456789abcdef" + n;
        link.createdAt = start + std::chrono::minutes(i);
        link.destinationUrl = std::move(made.destinationUrl);
        link.title = std::move(made.title);
        link.description = std::move(made.description);
        link.slug = "s" + n;
        link.domain.id = std::move(made.domain);
        link.domain.name = "go.example.com";
        link.shortUrl = "https://go.example.com/s" + n;
        link.clickCount = static_cast<double>(i * 13 % 5000);
        link.tags = history.tags;
        link.utmSource = std::move(made.utmSource);
        link.utmMedium = std::move(made.utmMedium);
        link.utmCampaign = std::move(made.utmCampaign);
        link.iosRedirectUrl = std::move(made.iosRedirectUrl);
        link.androidRedirectUrl = std::move(made.androidRedirectUrl);
        link.regionRedirects = std::move(made.regionRedirects);
    }
    return history;
}

LinkAnalyticsDTO analytics(std::size_t hours) {
    LinkAnalyticsDTO analytics;
    analytics.linkId = "lnk_0123456789abcdef0";
    for (std::size_t i = 0; i < hours; ++i) {
        const double clicks = static_cast<double>(i * 7 % 100);
        analytics.clickCount += clicks;
        analytics.timeline.entries.emplace_back(start + std::chrono::hours(i), clicks);
    }
    analytics.countries = breakdown<CountryAnalyticsDTO>({"DE", "FR", "US", "GB", "JP", "BR", "IN", "SE"});
    analytics.regions = breakdown<RegionsAnalyticsDTO>({"Hessen", "Bretagne", "Texas", "Kent", "Kyoto", "Bahia"});
    analytics.devices = breakdown<DeviceAnalyticsDTO>({"mobile", "desktop", "tablet"});
    analytics.referrers = breakdown<ReferrerAnalyticsDTO>({"news.example", "search.example", "mail.example"});
    analytics.browsers = breakdown<BrowserAnalyticsDTO>({"Firefox", "Chrome", "Safari", "Edge"});
    analytics.operatingSystems = breakdown<OperatingSystemAnalyticsDTO>({"Android", "iOS", "Windows", "Linux"});
    return analytics;
}

} // namespace samples
