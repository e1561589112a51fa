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
    for (const char* path : {"/tags", "/users/me", "/users/tier", "/users/account-portal", "/api-keys"}) {
        EXPECT_EQ(bare.Get(path)->status, 401) << path;
    }
    EXPECT_EQ(bare.Post("/api-keys")->status, 401);
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

} // namespace
