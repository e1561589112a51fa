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
const std::string limitReached = R"({"code":"LINK_LIMIT_REACHED","errorDescription":"*"})";

// A request for a link on the built-in domain, with further members.
std::string wanted(const std::string& more = R"("tags":[])") {
    return R"({"domain":"go.quillbeam.example","destinationUrl":"https://e.com/a",)" + more + "}";
}

// The record of such a link, with further members.
std::string link(const std::string& slug, const std::string& tags, const std::string& more = "") {
    return R"({"id":"*","createdAt":"*","destinationUrl":"https://e.com/a","slug":")" + slug +
           R"(","domain":{"id":"*","name":"go.quillbeam.example"},"shortUrl":"*","clickCount":0,"tags":)" + tags +
           more + "}";
}

TEST(SandboxLinks, AreMadeEditedAndFoundWithTheirTags) {
    const std::string texts =
        R"(,"title":"T","description":"D","imageUrl":"https://e.com/i","utmSource":"s","utmMedium":"m",)"
        R"("utmCampaign":"c","utmTerm":"t","utmContent":"o","iosRedirectUrl":"https://e.com/ios",)"
        R"("androidRedirectUrl":"https://e.com/android","regionRedirects":[{"countryCode":"DE",)"
        R"("url":"https://e.de"}],)";
    const std::string news = R"({"id":"{news}","name":"news"})";
    const std::string full = texts + R"("expireAt":"2030-01-02T01:04:05Z","expirationRedirect":"https://e.com/gone")";
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    Names names;
    runSteps(
        caller,
        {
            {"nothing yet", "GET", "/links", "", 200, R"({"links":[],"tags":[]})"},
            {"everything",
             "POST",
             "/links",
             wanted(
                 R"("slug":"full","tags":[{"name":"news"},{"name":"news"}])" + texts +
                 R"("expireAt":"2030-01-02T03:04:05.6+02:00","expirationRedirectUrl":"https://e.com/gone")"
             ),
             201,
             link("full", R"([{"id":"*","name":"news"}])", full),
             {},
             {{"{full}", "/id"}, {"{news}", "/tags/0/id"}}},
            {"a made slug, and a tag by its id",
             "POST",
             "/links",
             wanted(R"("title":"50%_","tags":[{"id":"{news}","name":"x"},{"name":"sale"}])"),
             201,
             link("*", "[" + news + R"(,{"id":"*","name":"sale"}])", R"(,"title":"50%_")"),
             {},
             {{"{sale}", "/tags/1/id"}, {"{made}", "/slug"}, {"{second}", "/id"}}},
            {"a taken slug", "POST", "/links", wanted(R"("slug":"full","tags":[])"), 400, error},
            {"a bad slug", "POST", "/links", wanted(R"("slug":"a/b","tags":[])"), 400, error},
            {"no tags", "POST", "/links", wanted(R"("slug":"x")"), 400, error},
            {"an unnamed tag", "POST", "/links", wanted(R"("tags":[{"id":"{news}"}])"), 400, error},
            {"a blank tag", "POST", "/links", wanted(R"("tags":[{"name":" "}])"), 400, error},
            {"tags that are texts", "POST", "/links", wanted(R"("tags":["news"])"), 400, error},
            {"an unknown tag", "POST", "/links", wanted(R"("tags":[{"id":"no","name":"n"}])"), 404, error},
            {"a bad date", "POST", "/links", wanted(R"("tags":[],"expireAt":"2030-01-02")"), 400, error},
            {"no such day", "POST", "/links", wanted(R"("tags":[],"expireAt":"2030-02-30T00:00:00Z")"), 400, error},
            {"a bad country",
             "POST",
             "/links",
             wanted(R"("tags":[],"regionRedirects":[{"countryCode":"de","url":"https://e.de"}])"),
             400,
             error},
            {"a bad address", "POST", "/links", wanted(R"("tags":[],"imageUrl":"e.com")"), 400, error},
            {"no address", "POST", "/links", R"({"domain":"go.quillbeam.example","tags":[]})", 400, error},
            {"an unknown domain",
             "POST",
             "/links",
             R"({"domain":"no.example","destinationUrl":"https://e.com","tags":[]})",
             404,
             error},
            {"refused links leave no tags", "GET", "/tags", "", 200, "[" + news + R"(,{"id":"{sale}","name":"sale"}])"},
            {"an edit of nothing", "PUT", "/links/{full}", "{}", 200, link("full", "[" + news + "]", full)},
            {"an empty text takes it away, absent ones stay",
             "PUT",
             "/links/{second}",
             R"({"title":"","utmTerm":"u","tags":[{"name":"sale"}]})",
             200,
             link("{made}", R"([{"id":"{sale}","name":"sale"}])", R"(,"utmTerm":"u")")},
            {"a bad edit", "PUT", "/links/{full}", R"({"destinationUrl":"e.com"})", 400, error},
            {"an unknown link", "PUT", "/links/no", "{}", 404, error},
            {"renaming a tag", "PUT", "/tags/{news}", R"({"name":"press"})", 200, R"({"id":"{news}","name":"press"})"},
            {"to a taken name", "PUT", "/tags/{news}", R"({"name":"sale"})", 400, error},
            {"to none", "PUT", "/tags/{news}", "{}", 400, error},
            {"an unknown tag", "PUT", "/tags/no", R"({"name":"n"})", 404, error},
            {"the whole history, newest first",
             "GET",
             "/links",
             "",
             200,
             R"({"links":[)" + link("{made}", R"([{"id":"{sale}","name":"sale"}])", R"(,"utmTerm":"u")") + "," +
                 link("full", R"([{"id":"{news}","name":"press"}])", full) +
                 R"(],"tags":[{"id":"{news}","name":"press"},{"id":"{sale}","name":"sale"}]})"},
        },
        names
    );
    const auto slugs = [&](const std::string& query) {
        std::vector<std::string> found;
        const Json history = Json::parse(caller.call("GET", "/links" + query).body);
        for (const Json& entry : history["links"]) {
            found.push_back(entry["slug"]);
        }
        return found;
    };
    using Slugs = std::vector<std::string>;
    EXPECT_EQ(slugs("?query=FUL"), Slugs{"full"});
    EXPECT_EQ(slugs("?query=%25"), Slugs{});
    EXPECT_EQ(slugs("?tags=press"), Slugs{"full"});
    EXPECT_EQ(slugs("?tags=no&tagIds=" + names["{sale}"]), Slugs{names["{made}"]});
    EXPECT_EQ(slugs("?tags=press&tags=sale").size(), 2u);
    EXPECT_EQ(slugs("?query=full&tags=sale"), Slugs{});
    runSteps(
        caller,
        {
            {"removing a tag", "DELETE", "/tags/{sale}", "", 200, ""},
            {"removed", "DELETE", "/tags/{sale}", "", 404, error},
            {"from its links too", "PUT", "/links/{second}", "{}", 200, link("{made}", "[]", R"(,"utmTerm":"u")")},
            {"deleting", "DELETE", "/links/{full}", "", 200, ""},
            {"deleted", "DELETE", "/links/{full}", "", 404, error},
            {"the slug is free again", "POST", "/links", wanted(R"("slug":"full","tags":[])"), 201, link("full", "[]")},
        },
        names
    );
    Caller other(sandbox, Json::parse(caller.call("POST", "/sandbox/accounts").body)["key"]);
    EXPECT_EQ(other.call("PUT", "/links/" + names["{second}"], "{}").status, 404);
    EXPECT_EQ(other.call("DELETE", "/tags/" + names["{news}"]).status, 404);
    EXPECT_EQ(other.call("GET", "/links").body, R"({"links":[],"tags":[]})");
}

TEST(SandboxLinks, CountAgainstTheLimitHoweverTheyAreMade) {
    const auto used = [](int links) {
        return R"({"linksCreated":)" + std::to_string(links) +
               R"(,"clicksTracked":0,"linkLimit":4,"clickLimit":10000})";
    };
    const auto bulk = [](const std::string& links) { return R"({"links":[)" + links + "]}"; };
    const std::string claim = R"({"links":["{token}"]})";
    const std::string plain = link("*", "[]");
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    Names names;
    runSteps(
        caller,
        {
            {"a small limit", "PUT", "/sandbox/limits", R"({"linkLimit":4})", 200, "*"},
            {"one", "POST", "/links", wanted(), 201, plain, {}, {{"{id}", "/id"}}},
            {"what is deleted stays counted", "DELETE", "/links/{id}", "", 200, ""},
            {"counted", "GET", "/users/tier", "", 200, used(1)},
            {"an anonymous one",
             "POST",
             "/links/public",
             wanted(),
             201,
             R"({"link":)" + plain + R"(,"claimToken":"*"})",
             {},
             {{"{token}", "/claimToken"}}},
            {"an anonymous one with tags", "POST", "/links/public", wanted(R"("tags":[{"name":"n"}])"), 400, error},
            {"counts when it is claimed", "GET", "/users/tier", "", 200, used(1)},
            {"claiming", "POST", "/links/claim", claim, 201, ""},
            {"claimed", "POST", "/links/claim", claim, 400, error},
            {"in bulk", "POST", "/links/bulk", bulk(wanted()), 201, bulk(plain)},
            {"three", "GET", "/users/tier", "", 200, used(3)},
            {"all or nothing", "POST", "/links/bulk", bulk(wanted() + "," + wanted()), 400, limitReached},
            {"no more than they need", "POST", "/links/bulk", bulk(""), 400, error},
            {"of unknown domains",
             "POST",
             "/links/bulk",
             bulk(
                 wanted() + R"(,{"domain":"no.example",)"
                            R"("destinationUrl":"https://e.com","tags":[]})"
             ),
             404,
             error},
            {"still three", "GET", "/users/tier", "", 200, used(3)},
            {"of elsewhere", "POST", "/links/google-import", R"({"links":["https://e.com/x"]})", 400, error},
            {"of nothing", "POST", "/links/google-import", R"({"links":["https://goo.gl/"]})", 404, error},
            {"imported",
             "POST",
             "/links/google-import",
             R"({"links":["https://goo.gl/aBc"]})",
             201,
             R"({"importedLinks":[{"originalUrl":"https://goo.gl/aBc","newUrl":")" + sandbox.address() + R"(/s/aBc"}]})"
            },
            {"no fifth", "POST", "/links", wanted(), 400, limitReached},
            {"no fifth", "POST", "/links/google-import", R"({"links":["https://goo.gl/d"]})", 400, limitReached},
            {"another plan", "PUT", "/sandbox/limits", "{}", 200, "*"},
            {"a fifth", "POST", "/links", wanted(), 201, plain},
        },
        names
    );
}

} // namespace
