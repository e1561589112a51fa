#include "sandbox/Analytics.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/DateTime.hpp"
#include "sandbox/Links.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string_view>

namespace sandbox {

namespace {

// A little more than a year of hours.
constexpr std::size_t mostEntries = 10'000;

// How a time becomes the beginning of its unit: SQLite's format and two modifiers. Weeks begin on Mondays (ISO 8601).
struct Unit {
    const char* name;
    const char* format;
    const char* first;
    const char* second;
    const char* step;
};

constexpr std::array units{
    Unit{"hour", "%Y-%m-%dT%H:00:00Z", "+0 days", "+0 days", "+1 hour"},
    Unit{"day", "%Y-%m-%dT00:00:00Z", "+0 days", "+0 days", "+1 day"},
    Unit{"week", "%Y-%m-%dT00:00:00Z", "weekday 0", "-6 days", "+7 days"},
    Unit{"month", "%Y-%m-01T00:00:00Z", "+0 days", "+0 days", "+1 month"},
};

struct Breakdown {
    const char* content;
    const char* key;
    const char* keyOfValue;
    const char* sql;
};

#define BREAKDOWN(column)                                                                                              \
    "SELECT " column ", count(*) FROM clicks WHERE link_id = ? AND at BETWEEN ? AND ? AND " column " IS NOT NULL "     \
    "GROUP BY 1 ORDER BY 2 DESC, 1"

constexpr const char* timelineContent = "timeline";
constexpr std::array breakdowns{
    Breakdown{"countries", "countries", "countryCode", BREAKDOWN("country")},
    Breakdown{"regions", "regions", "region", BREAKDOWN("region")},
    Breakdown{"devices", "devices", "device", BREAKDOWN("device")},
    Breakdown{"referrers", "referrers", "referrer", BREAKDOWN("referrer")},
    Breakdown{"browsers", "browsers", "browser", BREAKDOWN("browser")},
    Breakdown{"operating_systems", "operatingSystems", "os", BREAKDOWN("os")},
};

// Both ends belong to it.
struct Range {
    std::string start;
    std::string end;
};

const Unit& unitOf(const Request& request) {
    const std::string name = request.queryText("unit").value_or("");
    for (const Unit& unit : units) {
        if (name == unit.name) return unit;
    }
    throw Problem::badRequest("\"unit\" takes hour, day, week or month.");
}

Range rangeOf(Session& database, const Request& request) {
    const auto date = [&](const char* name) {
        return checkedDateTime(database, name, request.queryText(name).value_or(""));
    };
    Range range{date("startDate"), date("endDate")};
    if (range.end < range.start) throw Problem::badRequest("\"endDate\" lies before \"startDate\".");
    return range;
}

// The sections asked for; all where none is named.
class Content {
public:
    explicit Content(const Request& request)
        : names_(request.queryTexts("content")) {
        for (const std::string& name : names_) {
            if (name != timelineContent && std::none_of(breakdowns.begin(), breakdowns.end(), [&](const auto& known) {
                    return name == known.content;
                })) {
                throw Problem::badRequest("There is no section \"" + name + "\".");
            }
        }
    }

    bool holds(const char* name) const {
        return names_.empty() || std::find(names_.begin(), names_.end(), name) != names_.end();
    }

private:
    std::vector<std::string> names_;
};

// An entry for each unit of the range, with or without clicks.
Json entries(Session& database, const std::string& link, const Unit& unit, const Range& range) {
    const auto rows = database.rows(
        "WITH RECURSIVE units(date) AS ("
        "SELECT strftime(?1, ?5, ?2, ?3) UNION ALL "
        "SELECT strftime(" DATE_TIME_FORMAT ", date, ?4) FROM units "
        "WHERE strftime(" DATE_TIME_FORMAT ", date, ?4) <= ?6 LIMIT ?8), "
        "counts(date, clicks) AS (SELECT strftime(?1, at, ?2, ?3), count(*) FROM clicks "
        "WHERE link_id = ?7 AND at BETWEEN ?5 AND ?6 GROUP BY 1) "
        "SELECT units.date, coalesce(clicks, 0) FROM units LEFT JOIN counts USING (date) ORDER BY 1",
        {unit.format,
         unit.first,
         unit.second,
         unit.step,
         range.start,
         range.end,
         link,
         static_cast<std::int64_t>(mostEntries + 1)}
    );
    if (rows.size() > mostEntries) throw Problem::badRequest("The range holds too many units.");
    Json list = Json::array();
    for (const Row& row : rows) {
        list.push_back({{"date", row.text(0)}, {"clickCount", row.integer(1)}});
    }
    return list;
}

Response getLinkAnalytics(Session& database, const Request& request, const Account& account) {
    const std::string& link = requireLink(database, request, account);
    const Unit& unit = unitOf(request);
    const Range range = rangeOf(database, request);
    const Content content(request);
    const auto total = database.first(
        "SELECT count(*) FROM clicks WHERE link_id = ? AND at BETWEEN ? AND ?", {link, range.start, range.end}
    );
    Json body{{"linkId", link}, {"clickCount", total->integer(0)}};
    body["timeline"] = {
        {"unit", unit.name},
        {"entries", content.holds(timelineContent) ? entries(database, link, unit, range) : Json::array()}
    };
    for (const Breakdown& breakdown : breakdowns) {
        Json& list = body[breakdown.key] = Json::array();
        if (!content.holds(breakdown.content)) continue;
        for (const Row& row : database.rows(breakdown.sql, {link, range.start, range.end})) {
            list.push_back({{breakdown.keyOfValue, row.text(0)}, {"clickCount", row.integer(1)}});
        }
    }
    return Response::json(200, body);
}

} // namespace

void addAnalyticsRoutes(Router& router) {
    router.add("GET", "/analytics/link/{}", withAccount(getLinkAnalytics));
}

} // namespace sandbox
