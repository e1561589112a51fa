#include "sandbox/Clicks.hpp"

#include "sandbox/CountryCode.hpp"
#include "sandbox/DateTime.hpp"
#include "sandbox/Domains.hpp"
#include "sandbox/Plan.hpp"
#include "sandbox/Problem.hpp"
#include "sandbox/UserAgent.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace sandbox {

namespace {

// Who follows a link, from where and when. Fields stand in for what the service knows of the caller's place.
struct Visit {
    std::string time;
    std::optional<std::string> country;
    std::optional<std::string> region;
    std::string referrer;
    UserAgent agent;
};

std::string referrerOf(const Request& request) {
    const std::string address = request.header("referer").value_or("");
    const std::size_t slashes = address.find("://");
    if (slashes == std::string::npos) return "Direct";
    const std::size_t host = slashes + 3;
    const std::size_t end = address.find_first_of("/?#", host);
    return end == host ? "Direct" : address.substr(host, end - host);
}

Visit visitOf(Session& database, const Request& request) {
    Visit visit;
    const auto time = request.header("x-sandbox-time");
    visit.time = time ? checkedDateTime(database, "X-Sandbox-Time", *time)
                      : database.first("SELECT strftime(" DATE_TIME_FORMAT ")")->text(0);
    visit.country = request.header("x-sandbox-country");
    if (visit.country && !isCountryCode(*visit.country)) {
        throw Problem::badRequest("\"X-Sandbox-Country\" takes two capital letters.");
    }
    visit.region = request.header("x-sandbox-region");
    visit.referrer = referrerOf(request);
    visit.agent = UserAgent::read(request.header("user-agent").value_or(""));
    return visit;
}

// RFC 3986, section 2.3: everything but the unreserved characters is escaped.
std::string percentEncoded(const std::string& text) {
    constexpr std::string_view digits = "0123456789ABCDEF";
    constexpr std::string_view marks = "-._~";
    std::string result;
    for (const char c : text) {
        const auto byte = static_cast<unsigned char>(c);
        if ((c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
            marks.find(c) != std::string_view::npos) {
            result += c;
        } else {
            result += {'%', digits[byte >> 4], digits[byte & 15]};
        }
    }
    return result;
}

// Appends a parameter to the query, before the fragment, unless the address has one of that name.
void addParameter(std::string& address, const std::string& name, const std::string& value) {
    const std::size_t end = std::min(address.find('#'), address.size());
    const std::size_t query = std::min(address.find('?'), end);
    const std::string_view parameters = std::string_view(address).substr(query, end - query);
    for (const char separator : {'?', '&'}) {
        if (parameters.find(separator + name + "=") != std::string_view::npos) return;
    }
    const char* const joint = query == end ? "?" : parameters.size() == 1 || parameters.ends_with('&') ? "" : "&";
    address.insert(end, joint + name + "=" + percentEncoded(value));
}

#define CLICK_COLUMNS                                                                                                  \
    "id, account_id, expire_at, expiration_redirect_url, ios_redirect_url, android_redirect_url, region_redirects, "   \
    "destination_url, utm_source, utm_medium, utm_campaign, utm_term, utm_content"
constexpr std::array utmParameters{"utm_source", "utm_medium", "utm_campaign", "utm_term", "utm_content"};
constexpr std::size_t firstUTMColumn = 8;

// An application's page in a store knows no countries: the platform comes first.
std::string targetOf(const Row& link, const Visit& visit) {
    if (visit.agent.operatingSystem == "iOS" && link.optionalText(4)) return link.text(4);
    if (visit.agent.operatingSystem == "Android" && link.optionalText(5)) return link.text(5);
    std::string target = link.text(7);
    for (const Json& redirect : Json::parse(link.optionalText(6).value_or("[]"))) {
        if (redirect["countryCode"] == visit.country.value_or("")) target = redirect["url"];
    }
    for (std::size_t i = 0; i < utmParameters.size(); ++i) {
        if (const auto value = link.optionalText(firstUTMColumn + i)) addParameter(target, utmParameters[i], *value);
    }
    return target;
}

Response redirection(const std::string& target) {
    Response response = Response::empty(302);
    response.headers.emplace_back("Location", target);
    // A kept answer would hide clicks.
    response.headers.emplace_back("Cache-Control", "no-store");
    return response;
}

Response follow(Session& database, const Request& request) {
    const auto link = database.first(
        "SELECT " CLICK_COLUMNS " FROM links WHERE slug = ? AND domain_id = (SELECT id FROM domains WHERE name = ?)",
        {request.parameters.at(0), request.queryText("domain").value_or(builtInDomainName)}
    );
    if (!link) throw Problem::notFound("There is no link at this address.");
    const Visit visit = visitOf(database, request);
    if (const auto expireAt = link->optionalText(2); expireAt && *expireAt <= visit.time) {
        if (const auto target = link->optionalText(3)) return redirection(*target);
        throw Problem(410, "The link expired.");
    }
    const auto account = link->optionalText(1);
    const bool isClick = !request.isHead; // which is how previews look where a link leads
    if (isClick && (!account || takeRoomForClick(database, *account))) {
        database.execute(
            "INSERT INTO clicks (link_id, at, country, region, device, referrer, browser, os) "
            "VALUES (?, ?, ?, ?, ?, ?, ?, ?)",
            {link->text(0),
             visit.time,
             valueOf(visit.country),
             valueOf(visit.region),
             std::string(visit.agent.device),
             visit.referrer,
             std::string(visit.agent.browser),
             std::string(visit.agent.operatingSystem)}
        );
    }
    return redirection(targetOf(*link, visit));
}

} // namespace

void addClickRoutes(Router& router) {
    router.add("GET", "/s/{}", follow);
}

} // namespace sandbox
