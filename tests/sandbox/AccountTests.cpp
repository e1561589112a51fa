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
const httplib::Headers form = {{"Content-Type", "application/x-www-form-urlencoded"}};

TEST(SandboxAccount, AnswersNothingButPublicPathsWithoutAKey) {
    const SandboxProcess sandbox;
    httplib::Client bare(sandbox.address());
    for (const char* path :
         {"/tags",
          "/users/me",
          "/users/tier",
          "/users/account-portal",
          "/api-keys",
          "/subscriptions",
          "/subscriptions/manage"}) {
        EXPECT_EQ(bare.Get(path)->status, 401) << path;
    }
    EXPECT_EQ(bare.Post("/api-keys")->status, 401);
    EXPECT_EQ(bare.Post("/subscriptions/checkout")->status, 401);
    EXPECT_EQ(bare.Post("/images/social-card")->status, 401);
    EXPECT_EQ(bare.Delete("/api-keys/x")->status, 401);
    EXPECT_EQ(bare.Put("/tags/x")->status, 401);
    EXPECT_EQ(bare.Delete("/tags/x")->status, 401);
}

TEST(SandboxAccount, KeysWorkAtOnceUntilTheyAreDeleted) {
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    const auto hintOf = [](const std::string& key) { return key.substr(0, 7) + "..." + key.substr(key.size() - 4); };
    Names names{{"{firstHint}", hintOf(sandbox.key())}};
    runSteps(
        caller,
        {{"a key without a name",
          "POST",
          "/api-keys",
          "{}",
          201,
          R"({"id":"*","key":"*","createdAt":"*"})",
          {},
          {{"{id}", "/id"}, {"{key}", "/key"}}},
         {"a key with a name",
          "POST",
          "/api-keys",
          R"({"name":"CI"})",
          201,
          R"({"id":"*","key":"*","name":"CI","createdAt":"*"})",
          {},
          {{"{named}", "/id"}}},
         {"a name of another type", "POST", "/api-keys", R"({"name":1})", 400, error}},
        names
    );
    const std::string key = names["{key}"];
    names["{hint}"] = hintOf(key);

    Caller other(sandbox, key);
    EXPECT_EQ(other.call("GET", "/users/me").status, 200);
    runSteps(
        caller,
        {{"the list tells keys by their ends, and whether they were used",
          "GET",
          "/api-keys",
          "",
          200,
          R"([{"id":"*","key":"{firstHint}","name":"first key","createdAt":"*","lastUsedAt":"*"},)"
          R"({"id":"{id}","key":"{hint}","createdAt":"*","lastUsedAt":"*"},)"
          R"({"id":"{named}","key":"*","name":"CI","createdAt":"*"}])"},
         {"an unknown key", "DELETE", "/api-keys/no-such-id", "", 404, error},
         {"deleting", "DELETE", "/api-keys/{id}", "", 200, ""},
         {"deleted", "DELETE", "/api-keys/{id}", "", 404, error}},
        names
    );
    EXPECT_EQ(other.call("GET", "/users/me").status, 401);

    const std::string stranger = Json::parse(other.call("POST", "/sandbox/accounts").body)["key"];
    EXPECT_EQ(Caller(sandbox, stranger).call("DELETE", "/api-keys/" + names["{named}"]).status, 404);
    EXPECT_EQ(Json::parse(caller.call("GET", "/api-keys").body).size(), 2u);
}

TEST(SandboxAccount, TheAccountPageChangesWhatTheUserIsCalled) {
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    const std::string page = Json::parse(caller.call("GET", "/users/account-portal").body)["url"];
    ASSERT_TRUE(page.starts_with(sandbox.address() + "/"));
    const httplib::Response shown = caller.call("GET", page);
    EXPECT_EQ(shown.get_header_value("Content-Type"), "text/html; charset=utf-8");
    EXPECT_NE(shown.body.find("<form method=\"post\">"), std::string::npos);

    const auto send = [&](const std::string& fields) { return caller.call("POST", page, fields, form).status; };
    EXPECT_EQ(send("email=ada%40example.com&firstName=%3CAda%3E+%26+%22Co%22&lastName="), 303);
    Names names;
    runSteps(
        caller,
        {{"changed", "GET", "/users/me", "", 200, R"({"email":"ada@example.com","firstName":"<Ada> & \"Co\""})"},
         {"another token", "GET", page + "x", "", 404, error}},
        names
    );
    EXPECT_NE(caller.call("GET", page).body.find("\"&lt;Ada&gt; &amp; &quot;Co&quot;\""), std::string::npos);
    EXPECT_EQ(send("firstName="), 303);
    EXPECT_EQ(send("email=nobody"), 400);
    EXPECT_EQ(caller.call("GET", "/users/me").body, R"({"email":"ada@example.com"})");
}

TEST(SandboxAccount, SellsPackagesByCountryAndApplicationVersion) {
    struct Row {
        const char* country;
        const char* version;
        std::size_t at;
        const char* package;
    };

    const std::vector<Row> rows = {
        {"US",
         "",
         0,
         R"({"id":"lite_monthly","interval":"month","priceId":"price_lite_monthly_USD","productId":"prod_lite",)"
         R"("currency":"USD","amount":900})"},
        {"DE",
         "2.0",
         3,
         R"({"id":"pro_annual","interval":"year","priceId":"price_pro_annual_EUR","productId":"prod_pro",)"
         R"("currency":"EUR","amount":29000})"},
        {"GB",
         "1.9.3",
         4,
         R"({"id":"growth_monthly_legacy","interval":"month","priceId":"price_growth_monthly_legacy_GBP",)"
         R"("productId":"prod_growth","currency":"GBP","amount":7900})"},
    };
    const SandboxProcess sandbox;
    httplib::Client bare(sandbox.address());
    for (const Row& row : rows) {
        const auto response = bare.Get(
            std::string("/subscriptions/packages?country_code=") + row.country, {{"X-App-Version", row.version}}
        );
        ASSERT_EQ(response->status, 200) << response->body;
        const Json packages = Json::parse(response->body)["packages"];
        EXPECT_EQ(packages.size(), 6u);
        EXPECT_EQ(packages.at(row.at), Json::parse(row.package));
    }
    for (const char* query : {"", "?country_code=de", "?country_code=DEU"}) {
        EXPECT_EQ(bare.Get(std::string("/subscriptions/packages") + query)->status, 400) << query;
    }
}

TEST(SandboxAccount, ACheckoutRaisesTheLimitsAndThePortalLowersThem) {
    const auto usage = [](int links, int clicks) {
        return R"({"linksCreated":0,"clicksTracked":0,"linkLimit":)" + std::to_string(links) + R"(,"clickLimit":)" +
               std::to_string(clicks) + "}";
    };
    const auto subscription = [](const std::string& store, const std::string& status, const std::string& plan) {
        return R"({"subscription":{"store":")" + store + R"(","status":")" + status + R"(","plan":")" + plan +
               R"(","id":"*","expirationDate":"*"}})";
    };
    const std::string page = R"({"subscriptionUpdated":false,"checkoutPageURL":"*"})";
    const auto order = [](const std::string& priceID) { return R"({"redirect":"app","priceId":")" + priceID + "\"}"; };
    const std::string lite = order("price_lite_monthly_USD");
    const auto put = [](const std::string& store, const std::string& date) {
        return R"({"plan":"pro","store":")" + store + R"(","expirationDate":")" + date + "\"}";
    };
    const std::string free = usage(1'000, 10'000);

    const SandboxProcess sandbox;
    Caller caller(sandbox);
    Names names;
    const auto sees = [&](const std::string& name, const std::string& text) {
        const httplib::Response response = caller.call("GET", names[name]);
        EXPECT_EQ(response.status, 200);
        EXPECT_NE(response.body.find(text), std::string::npos) << response.body;
    };
    runSteps(
        caller,
        {
            {"no subscription", "GET", "/subscriptions", "", 200, "{}"},
            {"the free plan", "GET", "/users/tier", "", 200, free},
            {"nothing to manage", "GET", "/subscriptions/manage?redirect=app", "", 404, error},
            {"an unknown price", "POST", "/subscriptions/checkout", order("price_lite_weekly_USD"), 404, error},
            {"no price", "POST", "/subscriptions/checkout", R"({"redirect":"app"})", 400, error},
            {"an unknown way back",
             "POST",
             "/subscriptions/checkout",
             R"({"redirect":"web","priceId":"price_lite_monthly_USD"})",
             400,
             error},
            {"a checkout", "POST", "/subscriptions/checkout", lite, 201, page, {}, {{"{page}", "/checkoutPageURL"}}},
            {"nothing is bought yet", "GET", "/users/tier", "", 200, free},
        },
        names
    );
    sees("{page}", "The lite plan, 9.00 USD a month.");
    EXPECT_EQ(caller.call("POST", names["{page}"], "", form).status, 303);
    sees("{page}", "<a href=\"quillbeam://subscription\">");
    runSteps(
        caller,
        {
            {"bought", "GET", "/subscriptions", "", 200, subscription("stripe", "active", "lite")},
            {"higher limits", "GET", "/users/tier", "", 200, usage(5'000, 100'000)},
            {"the same again", "POST", "/subscriptions/checkout", lite, 400, error},
            {"another package needs no page",
             "POST",
             "/subscriptions/checkout",
             order("price_growth_annual_legacy_EUR"),
             201,
             R"({"subscriptionUpdated":true})"},
            {"at once", "GET", "/users/tier", "", 200, usage(500'000, 10'000'000)},
            {"the old page buys nothing more", "POST", "{page}", "", 303, ""},
            {"still", "GET", "/subscriptions", "", 200, subscription("stripe", "active", "growth")},
            {"an unknown way back", "GET", "/subscriptions/manage?redirect=web", "", 400, error},
            {"managing", "GET", "/subscriptions/manage", "", 200, R"({"url":"*"})", {}, {{"{portal}", "/url"}}},
        },
        names
    );
    sees("{portal}", "The growth plan, active");
    EXPECT_EQ(caller.call("POST", names["{portal}"], "", form).status, 303);
    sees("{portal}", "The growth plan, canceled");
    runSteps(
        caller,
        {
            {"canceled", "GET", "/subscriptions", "", 200, subscription("stripe", "canceled", "growth")},
            {"the free limits again", "GET", "/users/tier", "", 200, free},
            {"and a checkout again", "POST", "/subscriptions/checkout", lite, 201, page},
            {"one of a store",
             "PUT",
             "/sandbox/subscription",
             put("appStore", "2999-01-01T00:00:00Z"),
             200,
             subscription("appStore", "active", "pro")},
            {"is managed there", "GET", "/subscriptions/manage", "", 404, error},
            {"and there only", "POST", "/subscriptions/checkout", lite, 400, error},
            {"one that ran out",
             "PUT",
             "/sandbox/subscription",
             put("stripe", "2020-01-01T00:00:00Z"),
             200,
             subscription("stripe", "expired", "pro")},
            {"canceling it changes nothing", "POST", "{portal}", "", 303, ""},
            {"the free limits", "GET", "/users/tier", "", 200, free},
            {"an unknown plan", "PUT", "/sandbox/subscription", R"({"plan":"free"})", 400, error},
            {"no date", "PUT", "/sandbox/subscription", put("stripe", "soon"), 400, error},
            {"limits of its own",
             "PUT",
             "/sandbox/limits",
             R"({"clickLimit":7,"customDomainLimit":0})",
             200,
             R"({"linkLimit":1000,"clickLimit":7,"customDomainLimit":0})"},
            {"are shown", "GET", "/users/tier", "", 200, usage(1'000, 7)},
            {"and hold",
             "POST",
             "/domains",
             R"({"name":"a.example"})",
             400,
             R"({"code":"CUSTOM_DOMAIN_LIMIT_REACHED","errorDescription":"*"})"},
            {"the plan's again",
             "PUT",
             "/sandbox/limits",
             "{}",
             200,
             R"({"linkLimit":1000,"clickLimit":10000,"customDomainLimit":3})"},
            {"a limit below nothing", "PUT", "/sandbox/limits", R"({"linkLimit":-1})", 400, error},
            {"a limit that is no integer", "PUT", "/sandbox/limits", R"({"linkLimit":1.5})", 400, error},
        },
        names
    );
}

TEST(SandboxAccount, ServesBackTheImageThatWasUploaded) {
    const std::string png = std::string("\x89PNG\r\n\x1a\n\0\0\0\rIHDR", 16) + std::string("\0\xff", 2);
    const std::string webP = std::string("RIFF\x1a\0\0\0WEBPVP8L", 16);

    struct Row {
        const char* what;
        std::string type, bytes;
        int status;
    };

    const std::vector<Row> rows = {
        {"another type", "image/svg+xml", "<svg/>", 415},
        {"no type", "", png, 415},
        {"bytes of another type", "image/png", webP, 400},
        {"half a signature", "image/webp", webP.substr(0, 10), 400},
        {"no bytes", "image/png", "", 400},
        {"too many bytes", "image/png", png + std::string(5 * 1024 * 1024, 'x'), 413},
        {"an image", "image/webp", webP, 200},
        {"an image whose type has a parameter", "image/png; q=1", png, 200},
        {"the largest image", "image/png", png + std::string(5 * 1024 * 1024 - png.size(), '\0'), 200},
    };
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    httplib::Client bare(sandbox.address());
    const auto pathOf = [&](const std::string& address) { return address.substr(sandbox.address().size()); };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        const httplib::Response made = caller.call("POST", "/images/social-card");
        EXPECT_EQ(made.status, 201);
        const Json addresses = Json::parse(made.body);
        const std::string upload = pathOf(addresses["uploadUrl"]);
        const std::string image = pathOf(addresses["publicUrl"]);
        EXPECT_EQ(bare.Get(image)->status, 404);
        EXPECT_EQ(bare.Put(upload, row.bytes, row.type)->status, row.status);
        const auto served = bare.Get(image);
        EXPECT_EQ(served->status, row.status == 200 ? 200 : 404);
        if (row.status != 200) continue;
        EXPECT_TRUE(served->body == row.bytes);
        EXPECT_EQ(served->get_header_value("Content-Type"), row.type.substr(0, row.type.find(';')));
        EXPECT_EQ(bare.Put(upload, row.bytes, row.type)->status, 409);
    }
    EXPECT_EQ(bare.Put("/uploads/no-such-token", png, "image/png")->status, 404);
}

} // namespace
