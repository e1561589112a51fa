#include "benchmarks/json/Links.hpp"

namespace links {

using platform::field;
using platform::RecordFields;
using platform::RecordTable;

const RecordFields& Domain::recordFields() {
    static const RecordTable table("Domain", field("id", &Domain::id), field("name", &Domain::name));
    return table;
}

const RecordFields& Tag::recordFields() {
    static const RecordTable table("Tag", field("id", &Tag::id), field("name", &Tag::name));
    return table;
}

const RecordFields& RegionRedirect::recordFields() {
    static const RecordTable table(
        "RegionRedirect", field("countryCode", &RegionRedirect::countryCode), field("url", &RegionRedirect::url)
    );
    return table;
}

const RecordFields& Link::recordFields() {
    static const RecordTable table(
        "Link",
        field("id", &Link::id),
        field("createdAt", &Link::createdAt),
        field("destinationUrl", &Link::destinationUrl),
        field("title", &Link::title),
        field("description", &Link::description),
        field("imageUrl", &Link::imageUrl),
        field("slug", &Link::slug),
        field("domain", &Link::domain),
        field("shortUrl", &Link::shortUrl),
        field("clickCount", &Link::clickCount),
        field("tags", &Link::tags),
        field("utmSource", &Link::utmSource),
        field("utmMedium", &Link::utmMedium),
        field("utmCampaign", &Link::utmCampaign),
        field("utmTerm", &Link::utmTerm),
        field("utmContent", &Link::utmContent),
        field("iosRedirectUrl", &Link::iosRedirectUrl),
        field("androidRedirectUrl", &Link::androidRedirectUrl),
        field("regionRedirects", &Link::regionRedirects),
        field("expireAt", &Link::expireAt),
        field("expirationRedirect", &Link::expirationRedirect)
    );
    return table;
}

const RecordFields& History::recordFields() {
    static const RecordTable table("History", field("links", &History::links), field("tags", &History::tags));
    return table;
}

const RecordFields& ErrorBody::recordFields() {
    static const RecordTable table(
        "ErrorBody", field("code", &ErrorBody::code), field("errorDescription", &ErrorBody::errorDescription)
    );
    return table;
}

History sample(std::size_t count) {
    History history;
    for (std::size_t i = 0; i < count; ++i) {
        const std::string n = std::to_string(i);
        Link link;
        link.id = "lnk_0123456789abcdef" + n;
        link.createdAt = platform::Date(std::chrono::seconds(1'700'000'000 + i * 97));
        link.destinationUrl = "https://www.example.com/campaigns/spring/landing-page-" + n + "?ref=newsletter";
        link.title = "Spring campaign, page " + n;
        if (i % 2 == 0) link.description = "A page about \"everything\" \u2013 and more";
        if (i % 3 == 0) link.imageUrl = "https://img.example.com/preview/" + n + ".png";
        link.slug = "s" + n;
        link.domain.id = "dom_" + std::to_string(i % 7);
        link.domain.name = "go.example.com";
        link.shortUrl = "https://go.example.com/s" + n;
        link.clickCount = static_cast<double>(i * 13 % 5000);
        for (std::size_t t = 0; t < i % 4; ++t)
            link.tags.push_back({"tag_" + std::to_string(t), "marketing"});
        link.utmSource = "newsletter";
        link.utmMedium = "email";
        link.utmCampaign = "spring-2024";
        if (i % 5 == 0) link.utmTerm = "shoes";
        if (i % 5 == 1) link.utmContent = "header";
        if (i % 4 == 0) {
            link.iosRedirectUrl = "https://apps.example.com/ios/" + n;
            link.androidRedirectUrl = "https://apps.example.com/android/" + n;
            link.regionRedirects = {{"DE", "https://www.example.de/"}, {"FR", "https://www.example.fr/"}};
        }
        if (i % 10 == 0) {
            link.expireAt = link.createdAt + std::chrono::hours(24 * 365);
            link.expirationRedirect = "https://www.example.com/expired";
        }
        history.links.push_back(std::move(link));
    }
    history.tags = {{"tag_0", "marketing"}, {"tag_1", "marketing"}};
    return history;
}

} // namespace links
