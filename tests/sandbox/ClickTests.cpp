#include "tests/sandbox/SandboxProcess.hpp"
#include "tests/sandbox/Steps.hpp"

#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <string>
#include <vector>

namespace {

using Json = nlohmann::json;

const std::string error = R"({"errorDescription":"*"})";
const char* const iPhone = "Mozilla/5.0 (iPhone; CPU iPhone OS 17_0 like Mac OS X) AppleWebKit/605.1.15 (KHTML, like "
                           "Gecko) Version/17.0 Mobile/15E148 Safari/604.1";
const char* const pixel = "Mozilla/5.0 (Linux; Android 14; Pixel 8) AppleWebKit/537.36 (KHTML, like Gecko) "
                          "Chrome/120.0.0.0 Mobile Safari/537.36";
const char* const edge = "Mozilla/5.0 (Windows NT 10.0; Win64; x64) AppleWebKit/537.36 (KHTML, like Gecko) "
                         "Chrome/120.0.0.0 Safari/537.36 Edg/120.0.0.0";

std::string create(Caller& caller, const std::string& more) {
    const std::string body = R"({"domain":"go.quillbeam.example","tags":[],)" + more + "}";
    return Json::parse(caller.call("POST", "/links", body).body)["id"];
}

TEST(SandboxClicks, LeadWhereTheLinkSaysForTheVisitor) {
    struct Row {
        const char* what;
        std::string path;
        httplib::Headers headers;
        int status;
        std::string location;
    };

    const std::vector<Row> rows = {
        // The client of these tests percent-decodes fields: an escape that was not escaped itself would be gone.
        {"values join the query", "/s/utm", {}, 302, "https://e.com/?a=b&utm_term=c&utm_source=x &é%41#top"},
        {"and make one", "/s/full", {}, 302, "https://e.com/a?utm_medium=m"},
        {"a platform", "/s/full", {{"User-Agent", iPhone}, {"X-Sandbox-Country", "DE"}}, 302, "https://e.com/ios"},
        {"another", "/s/full", {{"User-Agent", pixel}}, 302, "https://e.com/android"},
        {"a country", "/s/full", {{"X-Sandbox-Country", "DE"}}, 302, "https://e.de/?utm_medium=m"},
        {"no known country", "/s/full", {{"X-Sandbox-Country", "FR"}}, 302, "https://e.com/a?utm_medium=m"},
        {"a bad country", "/s/full", {{"X-Sandbox-Country", "de"}}, 400, ""},
        {"a bad time", "/s/full", {{"X-Sandbox-Time", "now"}}, 400, ""},
        {"the year 0", "/s/full", {{"X-Sandbox-Time", "0000-01-02T00:00:00Z"}}, 400, ""},
        {"before it expires", "/s/brief", {{"X-Sandbox-Time", "2020-01-01T00:00:00Z"}}, 302, "https://e.com/"},
        {"as it expires", "/s/brief", {{"X-Sandbox-Time", "2020-01-02T00:00:00Z"}}, 302, "https://e.com/late"},
        {"expired", "/s/gone", {}, 410, ""},
        {"unknown", "/s/no", {}, 404, ""},
        {"on another domain", "/s/utm?domain=no.example", {}, 404, ""},
        {"a domain by name", "/s/utm?domain=go.example", {}, 302, "https://e.com/own"},
    };
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    create(
        caller,
        R"("slug":"utm","destinationUrl":"https://e.com/?a=b&utm_term=c#top","utmSource":"x &é%41","utmTerm":"t")"
    );
    create(
        caller,
        R"("slug":"full","destinationUrl":"https://e.com/a","iosRedirectUrl":"https://e.com/ios","utmMedium":"m",)"
        R"("androidRedirectUrl":"https://e.com/android","regionRedirects":[{"countryCode":"DE","url":"https://e.de/"}])"
    );
    create(
        caller,
        R"("slug":"brief","destinationUrl":"https://e.com/","expireAt":"2020-01-02T00:00:00Z",)"
        R"("expirationRedirectUrl":"https://e.com/late")"
    );
    create(caller, R"("slug":"gone","destinationUrl":"https://e.com/","expireAt":"2020-01-02T00:00:00Z")");
    const std::string own = R"({"domain":"go.example","slug":"utm","destinationUrl":"https://e.com/own","tags":[]})";
    const Json domain = Json::parse(caller.call("POST", "/domains", R"({"name":"go.example"})").body)["domain"];
    EXPECT_EQ(caller.call("POST", "/links", own).status, 400) << "not active yet";
    const std::string path = "/domains/" + domain["id"].get<std::string>();
    caller.call("GET", path, "", {{"X-Sandbox-Domain-Status", "ACTIVE"}});
    EXPECT_EQ(
        Json::parse(caller.call("POST", "/links", own).body)["shortUrl"], sandbox.address() + "/s/utm?domain=go.example"
    );

    httplib::Client bare(sandbox.address());
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const auto response = bare.Get(row.path, row.headers);
        EXPECT_EQ(response->status, row.status) << response->body;
        EXPECT_EQ(response->get_header_value("Location"), row.location);
    }
}

TEST(SandboxClicks, ShowInTheAnalyticsOfTheirRange) {
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    const std::string id = create(caller, R"("slug":"a","destinationUrl":"https://e.com")");
    httplib::Client bare(sandbox.address());
    const auto follow = [&](const char* time, httplib::Headers headers) {
        headers.emplace("X-Sandbox-Time", time);
        EXPECT_EQ(bare.Get("/s/a", headers)->status, 302);
    };
    // A Sunday, the Monday after it, and a day of the next month.
    follow(
        "2026-03-01T23:59:59Z", {{"User-Agent", iPhone}, {"X-Sandbox-Country", "DE"}, {"X-Sandbox-Region", "Berlin"}}
    );
    follow(
        "2026-03-02T00:00:00Z",
        {{"User-Agent", edge}, {"X-Sandbox-Country", "FR"}, {"Referer", "https://news.example:8080/x?y"}}
    );
    follow("2026-03-02T00:59:59Z", {{"User-Agent", edge}, {"X-Sandbox-Country", "FR"}});
    follow("2026-04-10T12:00:00Z", {{"User-Agent", "curl/8.0"}});
    EXPECT_EQ(bare.Head("/s/a", {{"X-Sandbox-Time", "2026-03-02T00:00:00Z"}})->status, 302); // no click

    const auto analytics = [&](const std::string& query) {
        return Json::parse(caller.call("GET", "/analytics/link/" + id + "?" + query).body);
    };
    const std::string march = "startDate=2026-03-01T23:59:59Z&endDate=2026-03-02T01:00:00Z";
    EXPECT_EQ(
        analytics("unit=hour&" + march),
        Json::parse(
            R"({"linkId":")" + id +
            R"(","clickCount":3,"timeline":{"unit":"hour","entries":[)"
            R"({"date":"2026-03-01T23:00:00Z","clickCount":1},{"date":"2026-03-02T00:00:00Z","clickCount":2},)"
            R"({"date":"2026-03-02T01:00:00Z","clickCount":0}]},)"
            R"("countries":[{"countryCode":"FR","clickCount":2},{"countryCode":"DE","clickCount":1}],)"
            R"("regions":[{"region":"Berlin","clickCount":1}],)"
            R"("devices":[{"device":"Desktop","clickCount":2},{"device":"Mobile","clickCount":1}],)"
            R"("referrers":[{"referrer":"Direct","clickCount":2},{"referrer":"news.example:8080","clickCount":1}],)"
            R"("browsers":[{"browser":"Edge","clickCount":2},{"browser":"Safari","clickCount":1}],)"
            R"("operatingSystems":[{"os":"Windows","clickCount":2},{"os":"iOS","clickCount":1}]})"
        )
    );
    const auto timeline = [&](const std::string& query) {
        std::string text;
        const Json answer = analytics(query);
        for (const Json& entry : answer["timeline"]["entries"]) {
            text += entry["date"].get<std::string>().substr(0, 10) + "=" + entry["clickCount"].dump() + " ";
        }
        return text;
    };
    EXPECT_EQ(timeline("unit=day&" + march), "2026-03-01=1 2026-03-02=2 ");
    EXPECT_EQ(timeline("unit=week&" + march), "2026-02-23=1 2026-03-02=2 ");
    EXPECT_EQ(
        timeline("unit=month&startDate=2026-01-31T00:00:00Z&endDate=2026-04-30T00:00:00Z"),
        "2026-01-01=0 2026-02-01=0 2026-03-01=3 2026-04-01=1 "
    );

    const Json some = analytics("unit=day&" + march + "&content=browsers&content=operating_systems");
    EXPECT_EQ(some["timeline"], Json::parse(R"({"unit":"day","entries":[]})"));
    EXPECT_EQ(some["countries"], Json::array());
    EXPECT_EQ(some["browsers"].size(), 2u);
    EXPECT_EQ(some["operatingSystems"].size(), 2u);
    EXPECT_EQ(some["clickCount"], 3);

    Names names{{"{id}", id}, {"{march}", march}};
    const std::string counted = R"({"linksCreated":1,"clicksTracked":4,"linkLimit":1000,"clickLimit":4})";
    runSteps(
        caller,
        {
            {"no unit", "GET", "/analytics/link/{id}?{march}", "", 400, error},
            {"no range", "GET", "/analytics/link/{id}?unit=day", "", 400, error},
            {"an unknown section", "GET", "/analytics/link/{id}?unit=day&{march}&content=x", "", 400, error},
            {"an unknown link", "GET", "/analytics/link/no?unit=day&{march}", "", 404, error},
            {"a range that is too long",
             "GET",
             "/analytics/link/{id}?unit=hour&startDate=2020-01-01T00:00:00Z&endDate=2026-01-01T00:00:00Z",
             "",
             400,
             error},
            {"a range from its end to its start",
             "GET",
             "/analytics/link/{id}?unit=day&startDate=2026-01-02T00:00:00Z&endDate=2026-01-01T00:00:00Z",
             "",
             400,
             error},
            {"a limit that is reached", "PUT", "/sandbox/limits", R"({"clickLimit":4})", 200, "*"},
            {"the link still works", "GET", "/s/a", "", 302, ""},
            {"but the click is not tracked", "GET", "/users/tier", "", 200, counted},
        },
        names
    );
    EXPECT_EQ(Json::parse(caller.call("GET", "/links").body)["links"][0]["clickCount"], 4);
    EXPECT_EQ(httplib::Client(sandbox.address()).Get("/analytics/link/" + id)->status, 401);
}

} // namespace
