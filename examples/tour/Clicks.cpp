#include "QuillbeamAPI/Links.hpp"
#include "examples/tour/Chapters.hpp"
#include "platform/date/DateFormat.hpp"

namespace examples {

namespace {

using HTTPTypes::HTTPFields;
using platform::Date;

/// Somebody who follows the link, some times in the last days.
struct Visitor {
    const char* name;
    const char* userAgent;
    const char* country;
    const char* region;
    const char* referrer; ///< or "" where the address was typed
    int clicks;
    std::string target;
};

constexpr const char* utm = "?utm_source=newsletter&utm_medium=email&utm_campaign=spring";

std::vector<Visitor> visitors() {
    return {
        {"iPhone",
         "Mozilla/5.0 (iPhone; CPU iPhone OS 17_5 like Mac OS X) AppleWebKit/605.1.15 Version/17.5 Mobile Safari/604.1",
         "DE",
         "Berlin",
         "https://mail.example/inbox",
         9,
         Campaign::forIOS},
        {"Android phone",
         "Mozilla/5.0 (Linux; Android 14) AppleWebKit/537.36 Chrome/126.0 Mobile Safari/537.36",
         "DE",
         "Bavaria",
         "",
         6,
         Campaign::forAndroid},
        {"Windows, Firefox",
         "Mozilla/5.0 (Windows NT 10.0; rv:127.0) Gecko/20100101 Firefox/127.0",
         "FR",
         "Brittany",
         "https://news.example/garden",
         7,
         std::string(Campaign::forFrance) + utm},
        {"Mac, Safari",
         "Mozilla/5.0 (Macintosh; Intel Mac OS X 14_5) AppleWebKit/605.1.15 Version/17.5 Safari/605.1.15",
         "US",
         "California",
         "https://social.example/",
         12,
         std::string(Campaign::destination) + utm},
        {"Linux, Chrome",
         "Mozilla/5.0 (X11; Linux x86_64) AppleWebKit/537.36 Chrome/126.0 Safari/537.36",
         "JP",
         "Tokyo",
         "https://social.example/",
         3,
         std::string(Campaign::destination) + utm},
    };
}

HTTPField::Name name(std::string_view text) {
    return HTTPField::Name::make(text).value();
}

std::string textOf(Date date) {
    return formatDate(date, platform::ISO8601Format::internetDateTime);
}

std::string locationOf(const Page& page) {
    return page.fields.value(HTTPField::Name::location).value_or("nowhere");
}

} // namespace

Task<void> followTheLink(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    Story& story = guide->story;
    report.chapter("Clicks");

    report.step("People follow the link, each to where it leads for them");
    const std::vector<Visitor> everybody = visitors();
    for (const Visitor& visitor : everybody) {
        HTTPFields fields;
        fields[HTTPField::Name::userAgent] = visitor.userAgent;
        if (*visitor.referrer != '\0') fields[HTTPField::Name::referer] = visitor.referrer;
        // What the service knows of a visitor's place, and here of the time too, is told to the sandbox.
        fields[name("X-Sandbox-Country")] = visitor.country;
        fields[name("X-Sandbox-Region")] = visitor.region;
        bool isRight = true;
        int status = 0;
        for (int i = 0; i < visitor.clicks; ++i) {
            const int number = story.clicks++;
            // All within a week, every third one within the last half day.
            const std::chrono::hours hoursAgo(number % 3 == 0 ? number * number / 9 % 12 : number * number * 3 % 160);
            fields[name("X-Sandbox-Time")] = textOf(story.now - hoursAgo);
            auto page = co_await guide->browser.visit(HTTPRequest::Method::get, story.campaign.shortUrl, fields);
            status = page.status;
            isRight = isRight && status == 302 && locationOf(page) == visitor.target;
        }
        const std::string times = ", " + std::to_string(visitor.clicks) + " times";
        report.visit(
            "GET /s/spring: " + std::string(visitor.name) + ", " + visitor.country + times, status, 302, visitor.clicks
        );
        report.detail("leads to", visitor.target);
        report.expect(isRight, "some were led elsewhere");
    }

    report.step("Let another link expire: it then leads elsewhere");
    EditLinkDTO expiry;
    expiry.expireAt = story.now + std::chrono::hours(1);
    expiry.expirationRedirectUrl = "https://www.tour.example/too-late";
    const std::string other = story.linkIds.at(1);
    auto updated = co_await guide->client.updateLink(Operations::updateLink::Path(other), expiry);
    guide->show(Operations::updateLink::id, updated, 200);
    const LinkDTO link = updated.ok().body.json();
    report.detail("expires", link.expireAt ? textOf(*link.expireAt) : "never");
    HTTPFields later;
    later[name("X-Sandbox-Time")] = textOf(story.now + std::chrono::hours(2));
    auto page = co_await guide->browser.visit(HTTPRequest::Method::get, link.shortUrl, later);
    report.visit("GET /s/" + link.slug + ", an hour after that", page.status, 302);
    report.detail("leads to", locationOf(page));
    report.expect(locationOf(page) == *expiry.expirationRedirectUrl, "expected another address");
}

} // namespace examples
