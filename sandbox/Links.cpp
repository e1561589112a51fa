#include "sandbox/Links.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Body.hpp"
#include "sandbox/CountryCode.hpp"
#include "sandbox/DateTime.hpp"
#include "sandbox/Domains.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Plan.hpp"
#include "sandbox/Problem.hpp"
#include "sandbox/Tags.hpp"
#include "sandbox/WebAddress.hpp"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <string_view>
#include <utility>

namespace sandbox {

namespace {

constexpr std::size_t longestSlug = 64;
constexpr std::size_t longestText = 1'000;
constexpr std::size_t mostInBulk = 1'000;
constexpr std::string_view importedHost = "goo.gl/";

// A text of a link that may be missing. An edit with an empty text takes it away.
struct TextField {
    const char* keyOfRequest;
    const char* keyOfLink;
    bool isAddress = false;
};

constexpr std::array textFields{
    TextField{"title", "title"},
    TextField{"description", "description"},
    TextField{"imageUrl", "imageUrl", true},
    TextField{"utmSource", "utmSource"},
    TextField{"utmMedium", "utmMedium"},
    TextField{"utmCampaign", "utmCampaign"},
    TextField{"utmTerm", "utmTerm"},
    TextField{"utmContent", "utmContent"},
    TextField{"iosRedirectUrl", "iosRedirectUrl", true},
    TextField{"androidRedirectUrl", "androidRedirectUrl", true},
    TextField{"expirationRedirectUrl", "expirationRedirect", true},
};

// The columns of `textFields`, in their order.
#define TEXT_COLUMNS                                                                                                   \
    "title, description, image_url, utm_source, utm_medium, utm_campaign, utm_term, utm_content, ios_redirect_url, "   \
    "android_redirect_url, expiration_redirect_url"

// What a request says of a link. What it leaves out has no value.
struct LinkContent {
    std::optional<std::string> destinationURL;
    std::array<std::optional<std::string>, textFields.size()> texts;
    std::optional<std::string> regionRedirects;
    std::optional<std::string> expireAt;
    std::optional<std::vector<TagReference>> tags;
};

struct NewLink {
    LinkContent content;
    std::string domain;
    std::optional<std::string> slug;
};

std::string regionRedirectsOf(const std::vector<Body>& records) {
    Json redirects = Json::array();
    for (const Body& record : records) {
        const std::string country = record.text("countryCode");
        const std::string url = record.text("url");
        if (!isCountryCode(country)) throw Problem::badRequest("\"countryCode\" must be two capital letters.");
        requireWebAddress("url", url);
        redirects.push_back({{"countryCode", country}, {"url", url}});
    }
    return redirects.dump();
}

LinkContent contentOf(Session& database, const Body& body) {
    LinkContent content;
    content.destinationURL = body.optionalText("destinationUrl");
    if (content.destinationURL) requireWebAddress("destinationUrl", *content.destinationURL);
    for (std::size_t i = 0; i < textFields.size(); ++i) {
        const TextField& field = textFields[i];
        content.texts[i] = body.optionalText(field.keyOfRequest);
        if (!content.texts[i] || content.texts[i]->empty()) continue;
        if (field.isAddress) {
            requireWebAddress(field.keyOfRequest, *content.texts[i]);
        } else if (content.texts[i]->size() > longestText) {
            throw Problem::badRequest(
                "\"" + std::string(field.keyOfRequest) + "\" takes at most " + std::to_string(longestText) + " bytes."
            );
        }
    }
    if (const auto redirects = body.optionalObjects("regionRedirects")) {
        content.regionRedirects = regionRedirectsOf(*redirects);
    }
    if (const auto date = body.optionalText("expireAt")) {
        content.expireAt = checkedDateTime(database, "expireAt", *date);
    }
    if (const auto records = body.optionalObjects("tags")) {
        std::vector<TagReference>& tags = content.tags.emplace();
        for (const Body& record : *records) {
            tags.push_back(tagReferenceOf(record));
        }
    }
    return content;
}

bool isSlug(const std::string& text) {
    return !text.empty() && text.size() <= longestSlug && std::all_of(text.begin(), text.end(), [](char c) {
        return (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '-' || c == '_';
    });
}

NewLink newLinkOf(Session& database, const Body& body) {
    NewLink link{contentOf(database, body), body.text("domain"), body.optionalText("slug")};
    if (!link.content.destinationURL) throw Problem::badRequest("\"destinationUrl\" is required.");
    if (!link.content.tags) throw Problem::badRequest("\"tags\" is required.");
    if (link.slug && !isSlug(*link.slug)) {
        throw Problem::badRequest("\"slug\" takes 1 to 64 letters, digits, hyphens and underscores.");
    }
    return link;
}

bool isFree(Session& database, const std::string& domain, const std::string& slug) {
    return !database.first("SELECT 1 FROM links WHERE domain_id = ? AND slug = ?", {domain, slug});
}

std::string freeSlug(Session& database, const std::string& domain) {
    while (true) {
        std::string slug = makeSlug();
        if (isFree(database, domain, slug)) return slug;
    }
}

// Writes what has a value, and leaves the rest as it is.
void write(Session& database, const std::string& id, const std::string& account, const LinkContent& content) {
    const auto& texts = content.texts;
    database.execute(
        "UPDATE links SET destination_url = coalesce(?, destination_url), "
        "region_redirects = coalesce(?, region_redirects), expire_at = coalesce(?, expire_at), "
        "(" TEXT_COLUMNS ") = (SELECT "
        "nullif(coalesce(?, title), ''), nullif(coalesce(?, description), ''), nullif(coalesce(?, image_url), ''), "
        "nullif(coalesce(?, utm_source), ''), nullif(coalesce(?, utm_medium), ''), "
        "nullif(coalesce(?, utm_campaign), ''), nullif(coalesce(?, utm_term), ''), "
        "nullif(coalesce(?, utm_content), ''), nullif(coalesce(?, ios_redirect_url), ''), "
        "nullif(coalesce(?, android_redirect_url), ''), nullif(coalesce(?, expiration_redirect_url), '')) "
        "WHERE id = ?",
        {valueOf(content.destinationURL),
         valueOf(content.regionRedirects),
         valueOf(content.expireAt),
         valueOf(texts[0]),
         valueOf(texts[1]),
         valueOf(texts[2]),
         valueOf(texts[3]),
         valueOf(texts[4]),
         valueOf(texts[5]),
         valueOf(texts[6]),
         valueOf(texts[7]),
         valueOf(texts[8]),
         valueOf(texts[9]),
         valueOf(texts[10]),
         id}
    );
    if (content.tags) setTagsOfLink(database, account, id, *content.tags);
}

// `account` is empty for a link without one.
std::string add(Session& database, const std::string& account, const NewLink& link) {
    const std::string domain = requireReadyDomain(database, account, link.domain);
    if (link.slug && !isFree(database, domain, *link.slug)) {
        throw Problem::badRequest("The slug \"" + *link.slug + "\" is in use on " + link.domain + ".");
    }
    if (account.empty()) {
        if (!link.content.tags->empty()) throw Problem::badRequest("Tags belong to an account: this link has none.");
    } else {
        takeRoomForLinks(database, account, 1);
    }
    std::string id = makeIdentifier("lnk");
    database.execute(
        "INSERT INTO links (id, account_id, domain_id, slug, destination_url) VALUES (?, ?, ?, ?, ?)",
        {id,
         account.empty() ? Value(nullptr) : Value(account),
         domain,
         link.slug ? *link.slug : freeSlug(database, domain),
         valueOf(link.content.destinationURL)}
    );
    write(database, id, account, link.content);
    return id;
}

#define LINK_COLUMNS                                                                                                   \
    "links.id, created_at, destination_url, slug, domain_id, region_redirects, expire_at, "                            \
    "(SELECT count(*) FROM clicks WHERE link_id = links.id), " TEXT_COLUMNS
constexpr std::size_t firstTextColumn = 8;

Json linkBody(Session& database, const Request& request, const Row& row) {
    const std::string& slug = row.text(3);
    Json domain = domainBodyOf(database, row.text(4));
    Json body{{"id", row.text(0)}, {"createdAt", row.text(1)}, {"destinationUrl", row.text(2)}, {"slug", slug}};
    // A slug is taken on its domain only: for another than the built-in one, the short address names it.
    body["shortUrl"] = request.origin() + "/s/" + slug;
    if (domain.contains("customDomainMetadata")) {
        body["shortUrl"] = body["shortUrl"].get<std::string>() + "?domain=" + domain["name"].get<std::string>();
    }
    body["domain"] = std::move(domain);
    body["clickCount"] = row.integer(7);
    body["tags"] = tagBodies(tagsOfLink(database, row.text(0)));
    if (const auto redirects = row.optionalText(5)) body["regionRedirects"] = Json::parse(*redirects);
    if (const auto expireAt = row.optionalText(6)) body["expireAt"] = *expireAt;
    for (std::size_t i = 0; i < textFields.size(); ++i) {
        if (const auto text = row.optionalText(firstTextColumn + i)) body[textFields[i].keyOfLink] = *text;
    }
    return body;
}

Json linkBody(Session& database, const Request& request, const std::string& id) {
    return linkBody(database, request, *database.first("SELECT " LINK_COLUMNS " FROM links WHERE id = ?", {id}));
}

std::string containing(const std::string& text) {
    std::string pattern = "%";
    for (const char c : text) {
        if (c == '%' || c == '_' || c == '\\') pattern += '\\';
        pattern += c;
    }
    return pattern + "%";
}

// A list for `json_each`, so that one statement takes any number of values.
std::string listOf(const Request& request, const char* name) {
    const Json list = request.queryTexts(name);
    return list.dump(-1, ' ', false, Json::error_handler_t::replace);
}

Response getHistory(Session& database, const Request& request, const Account& account) {
    const std::string names = listOf(request, "tags");
    const std::string ids = listOf(request, "tagIds");
    Json links = Json::array();
    for (const Row& row : database.rows(
             "SELECT " LINK_COLUMNS " FROM links WHERE account_id = ?1 "
             "AND (slug LIKE ?2 ESCAPE '\\' OR destination_url LIKE ?2 ESCAPE '\\' OR title LIKE ?2 ESCAPE '\\' "
             "OR description LIKE ?2 ESCAPE '\\') "
             "AND (?3 = '[]' AND ?4 = '[]' OR EXISTS (SELECT 1 FROM link_tags JOIN tags ON tags.id = tag_id "
             "WHERE link_id = links.id AND (tags.name IN (SELECT value FROM json_each(?3)) "
             "OR tags.id IN (SELECT value FROM json_each(?4))))) "
             "ORDER BY sequence DESC",
             {account.id, containing(request.queryText("query").value_or("")), names, ids}
         )) {
        links.push_back(linkBody(database, request, row));
    }
    return Response::json(200, {{"links", std::move(links)}, {"tags", tagBodies(tagsOfAccount(database, account.id))}});
}

Response createLink(Session& database, const Request& request, const Account& account) {
    const std::string id = add(database, account.id, newLinkOf(database, Body(request)));
    return Response::json(201, linkBody(database, request, id));
}

Response createAnonymousLink(Session& database, const Request& request) {
    const std::string id = add(database, "", newLinkOf(database, Body(request)));
    const std::string token = makeIdentifier("claim", 20);
    database.execute("UPDATE links SET claim_token = ? WHERE id = ?", {token, id});
    return Response::json(201, {{"link", linkBody(database, request, id)}, {"claimToken", token}});
}

Response createBulkLinks(Session& database, const Request& request, const Account& account) {
    const auto records = Body(request).optionalObjects("links");
    if (!records || records->empty() || records->size() > mostInBulk) {
        throw Problem::badRequest("\"links\" must be a list of 1 to " + std::to_string(mostInBulk) + " links.");
    }
    Json links = Json::array();
    for (const Body& record : *records) {
        links.push_back(linkBody(database, request, add(database, account.id, newLinkOf(database, record))));
    }
    return Response::json(201, {{"links", std::move(links)}});
}

// The links keep their slugs where those are free.
Response importLinks(Session& database, const Request& request, const Account& account) {
    const std::string domain = requireReadyDomain(database, account.id, builtInDomainName);
    Json imported = Json::array();
    for (const std::string& original : Body(request).texts("links")) {
        requireWebAddress("links", original);
        const std::string rest = original.substr(original.find("//") + 2);
        if (!rest.starts_with(importedHost)) {
            throw Problem::badRequest("\"" + original + "\" is not an address of goo.gl.");
        }
        const std::string slug = rest.substr(importedHost.size());
        if (slug.empty()) throw Problem::notFound("There is no link at \"" + original + "\".");
        NewLink link{{}, builtInDomainName, std::nullopt};
        if (isSlug(slug) && isFree(database, domain, slug)) link.slug = slug;
        link.content.destinationURL = original;
        const Json body = linkBody(database, request, add(database, account.id, link));
        imported.push_back({{"originalUrl", original}, {"newUrl", body["shortUrl"]}});
    }
    return Response::json(201, {{"importedLinks", std::move(imported)}});
}

Response claimLinks(Session& database, const Request& request, const Account& account) {
    for (const std::string& token : Body(request).texts("links")) {
        takeRoomForLinks(database, account.id, 1);
        if (database.execute(
                "UPDATE links SET account_id = ?, claim_token = NULL WHERE claim_token = ?", {account.id, token}
            ) == 0) {
            throw Problem::badRequest("No link waits to be claimed with \"" + token + "\".");
        }
    }
    return Response::empty(201);
}

Response updateLink(Session& database, const Request& request, const Account& account) {
    const std::string& id = requireLink(database, request, account);
    write(database, id, account.id, contentOf(database, Body(request)));
    return Response::json(200, linkBody(database, request, id));
}

Response deleteLink(Session& database, const Request& request, const Account& account) {
    database.execute("DELETE FROM links WHERE id = ?", {requireLink(database, request, account)});
    return Response::empty(200);
}

} // namespace

void addLinkRoutes(Router& router) {
    router.add("GET", "/links", withAccount(getHistory));
    router.add("POST", "/links", withAccount(createLink));
    router.add("POST", "/links/public", createAnonymousLink);
    router.add("POST", "/links/bulk", withAccount(createBulkLinks));
    router.add("POST", "/links/google-import", withAccount(importLinks));
    router.add("POST", "/links/claim", withAccount(claimLinks));
    router.add("PUT", "/links/{}", withAccount(updateLink));
    router.add("DELETE", "/links/{}", withAccount(deleteLink));
}

const std::string& requireLink(Session& database, const Request& request, const Account& account) {
    const std::string& id = request.parameters.at(0);
    if (!database.first("SELECT 1 FROM links WHERE id = ? AND account_id = ?", {id, account.id})) {
        throw Problem::notFound("There is no link with the id \"" + id + "\".");
    }
    return id;
}

} // namespace sandbox
