#include "benchmarks/client/ByHand.hpp"

#include "platform/date/DateFormat.hpp"

#include <nlohmann/json.hpp>

namespace byHand {

namespace {

using nlohmann::json;
using namespace Schemas;

constexpr auto dateFormat = platform::ISO8601Format::internetDateTime;

template <class T>
void take(const json& node, const char* key, T& out);

template <class T>
void take(const json& node, const char* key, std::optional<T>& out);

void read(const json& node, std::string& out) {
    out = node.get_ref<const std::string&>();
}

void read(const json& node, double& out) {
    out = node.get<double>();
}

void read(const json& node, platform::Date& out) {
    out = platform::parseDate(node.get_ref<const std::string&>(), dateFormat).value();
}

void read(const json& node, TimelineDTO::unitPayload& out) {
    const auto& name = node.get_ref<const std::string&>();
    out = name == "hour"   ? TimelineDTO::unitPayload::hour
          : name == "day"  ? TimelineDTO::unitPayload::day
          : name == "week" ? TimelineDTO::unitPayload::week
                           : TimelineDTO::unitPayload::month;
}

template <class T>
void read(const json& node, std::vector<T>& out);

void read(const json& node, TagDTO& out) {
    take(node, "id", out.id);
    take(node, "name", out.name);
}

void read(const json& node, RegionRedirect& out) {
    take(node, "countryCode", out.countryCode);
    take(node, "url", out.url);
}

void read(const json& node, DomainDTO& out) {
    take(node, "id", out.id);
    take(node, "name", out.name);
}

void read(const json& node, LinkDTO& out) {
    take(node, "id", out.id);
    take(node, "createdAt", out.createdAt);
    take(node, "destinationUrl", out.destinationUrl);
    take(node, "title", out.title);
    take(node, "description", out.description);
    take(node, "imageUrl", out.imageUrl);
    take(node, "slug", out.slug);
    take(node, "domain", out.domain);
    take(node, "shortUrl", out.shortUrl);
    take(node, "clickCount", out.clickCount);
    take(node, "tags", out.tags);
    take(node, "utmSource", out.utmSource);
    take(node, "utmMedium", out.utmMedium);
    take(node, "utmCampaign", out.utmCampaign);
    take(node, "utmTerm", out.utmTerm);
    take(node, "utmContent", out.utmContent);
    take(node, "iosRedirectUrl", out.iosRedirectUrl);
    take(node, "androidRedirectUrl", out.androidRedirectUrl);
    take(node, "regionRedirects", out.regionRedirects);
    take(node, "expireAt", out.expireAt);
    take(node, "expirationRedirect", out.expirationRedirect);
}

void read(const json& node, LinkHistoryDTO& out) {
    take(node, "links", out.links);
    take(node, "tags", out.tags);
}

void read(const json& node, TimelineEntryDTO& out) {
    take(node, "date", out.date);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, TimelineDTO& out) {
    take(node, "unit", out.unit);
    take(node, "entries", out.entries);
}

void read(const json& node, CountryAnalyticsDTO& out) {
    take(node, "countryCode", out.countryCode);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, RegionsAnalyticsDTO& out) {
    take(node, "region", out.region);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, DeviceAnalyticsDTO& out) {
    take(node, "device", out.device);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, ReferrerAnalyticsDTO& out) {
    take(node, "referrer", out.referrer);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, BrowserAnalyticsDTO& out) {
    take(node, "browser", out.browser);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, OperatingSystemAnalyticsDTO& out) {
    take(node, "os", out.os);
    take(node, "clickCount", out.clickCount);
}

void read(const json& node, LinkAnalyticsDTO& out) {
    take(node, "linkId", out.linkId);
    take(node, "clickCount", out.clickCount);
    take(node, "timeline", out.timeline);
    take(node, "countries", out.countries);
    take(node, "regions", out.regions);
    take(node, "devices", out.devices);
    take(node, "referrers", out.referrers);
    take(node, "browsers", out.browsers);
    take(node, "operatingSystems", out.operatingSystems);
}

template <class T>
void read(const json& node, std::vector<T>& out) {
    out.reserve(node.size());
    for (const json& element : node)
        read(element, out.emplace_back());
}

template <class T>
void take(const json& node, const char* key, std::optional<T>& out) {
    const auto at = node.find(key);
    if (at != node.end() && !at->is_null()) read(*at, out.emplace());
}

template <class T>
void take(const json& node, const char* key, T& out) {
    read(node.at(key), out);
}

template <class T>
T parsed(std::string_view text) {
    T out;
    read(json::parse(text), out);
    return out;
}

json tree(const std::string& text) {
    return text;
}

json tree(double number) {
    return number;
}

json tree(platform::Date date) {
    return platform::formatDate(date, dateFormat);
}

template <class T>
json tree(const std::vector<T>& values);

template <class T>
void put(json& out, const char* key, const std::optional<T>& value) {
    if (value) out[key] = tree(*value);
}

json tree(const TagDTO& tag) {
    json out = {{"name", tag.name}};
    put(out, "id", tag.id);
    return out;
}

json tree(const RegionRedirect& redirect) {
    return {{"countryCode", redirect.countryCode}, {"url", redirect.url}};
}

json tree(const CreateLinkDTO& link) {
    json out = {{"tags", tree(link.tags)}, {"destinationUrl", link.destinationUrl}, {"domain", link.domain}};
    put(out, "regionRedirects", link.regionRedirects);
    put(out, "expireAt", link.expireAt);
    put(out, "slug", link.slug);
    put(out, "utmSource", link.utmSource);
    put(out, "utmMedium", link.utmMedium);
    put(out, "utmCampaign", link.utmCampaign);
    put(out, "utmTerm", link.utmTerm);
    put(out, "utmContent", link.utmContent);
    put(out, "title", link.title);
    put(out, "description", link.description);
    put(out, "imageUrl", link.imageUrl);
    put(out, "iosRedirectUrl", link.iosRedirectUrl);
    put(out, "androidRedirectUrl", link.androidRedirectUrl);
    put(out, "expirationRedirectUrl", link.expirationRedirectUrl);
    return out;
}

json tree(const LinkDTO& link) {
    json out = {
        {"id", link.id},
        {"createdAt", tree(link.createdAt)},
        {"destinationUrl", link.destinationUrl},
        {"slug", link.slug},
        {"domain", {{"id", link.domain.id}, {"name", link.domain.name}}},
        {"shortUrl", link.shortUrl},
        {"tags", tree(link.tags)}
    };
    put(out, "title", link.title);
    put(out, "description", link.description);
    put(out, "imageUrl", link.imageUrl);
    put(out, "clickCount", link.clickCount);
    put(out, "utmSource", link.utmSource);
    put(out, "utmMedium", link.utmMedium);
    put(out, "utmCampaign", link.utmCampaign);
    put(out, "utmTerm", link.utmTerm);
    put(out, "utmContent", link.utmContent);
    put(out, "iosRedirectUrl", link.iosRedirectUrl);
    put(out, "androidRedirectUrl", link.androidRedirectUrl);
    put(out, "regionRedirects", link.regionRedirects);
    put(out, "expireAt", link.expireAt);
    put(out, "expirationRedirect", link.expirationRedirect);
    return out;
}

json tree(const TimelineEntryDTO& entry) {
    return {{"date", tree(entry.date)}, {"clickCount", entry.clickCount}};
}

template <class T>
json tree(const std::vector<T>& values) {
    json out = json::array();
    for (const T& value : values)
        out.push_back(tree(value));
    return out;
}

template <class T>
json breakdown(const char* key, const std::vector<T>& entries, std::string T::* name) {
    json out = json::array();
    for (const T& entry : entries)
        out.push_back({{key, entry.*name}, {"clickCount", entry.clickCount}});
    return out;
}

} // namespace

LinkDTO link(std::string_view text) {
    return parsed<LinkDTO>(text);
}

LinkHistoryDTO history(std::string_view text) {
    return parsed<LinkHistoryDTO>(text);
}

LinkAnalyticsDTO analytics(std::string_view text) {
    return parsed<LinkAnalyticsDTO>(text);
}

std::string text(const CreateLinkDTO& link) {
    return tree(link).dump();
}

std::string text(const BulkCreateLinksDTO& links) {
    return json{{"links", tree(links.links)}}.dump();
}

std::string text(const LinkHistoryDTO& history) {
    return json{{"links", tree(history.links)}, {"tags", tree(history.tags)}}.dump();
}

std::string text(const LinkAnalyticsDTO& analytics) {
    return json{
        {"linkId", analytics.linkId},
        {"clickCount", analytics.clickCount},
        {"timeline", {{"unit", "hour"}, {"entries", tree(analytics.timeline.entries)}}},
        {"countries", breakdown("countryCode", analytics.countries, &CountryAnalyticsDTO::countryCode)},
        {"regions", breakdown("region", analytics.regions, &RegionsAnalyticsDTO::region)},
        {"devices", breakdown("device", analytics.devices, &DeviceAnalyticsDTO::device)},
        {"referrers", breakdown("referrer", analytics.referrers, &ReferrerAnalyticsDTO::referrer)},
        {"browsers", breakdown("browser", analytics.browsers, &BrowserAnalyticsDTO::browser)},
        {"operatingSystems", breakdown("os", analytics.operatingSystems, &OperatingSystemAnalyticsDTO::os)}
    }.dump();
}

} // namespace byHand
