#include "tests/sandbox/SandboxProcess.hpp"
#include "tests/sandbox/Steps.hpp"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <httplib.h>
#include <nlohmann/json.hpp>

#include <csignal>
#include <filesystem>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

namespace {

using Json = nlohmann::json;

// The metadata of go.links.example.com in each state.
const std::string records = R"([{"name":{"name":"example.com","subdomain":"go.links"},"type":"CNAME","value":"*"},)"
                            R"({"name":{"name":"example.com","subdomain":"_quillbeam.go.links"},"type":"TXT",)"
                            R"("value":"*"}])";
const std::string pending = R"({"status":"PENDING","verificationErrors":["*","*"],"dnsRecords":)" + records + "}";
const std::string active = R"({"status":"ACTIVE","verificationErrors":[],"dnsRecords":)" + records + "}";
const std::string blocked = R"({"status":"BLOCKED","verificationErrors":["*"],"dnsRecords":)" + records + "}";
const std::string redirected =
    R"({"redirectUrl":"https://e.com/?a=b","status":"ACTIVE","verificationErrors":[],"dnsRecords":)" + records + "}";

std::string domain(const std::string& metadata) {
    return R"({"id":"{go}","name":"go.links.example.com","customDomainMetadata":)" + metadata + "}";
}

const std::string error = R"({"errorDescription":"*"})";
constexpr std::size_t deeperThanStacks = 200'000;

int create(Caller& caller, const std::string& name) {
    return caller.call("POST", "/domains", Json{{"name", name}}.dump()).status;
}

TEST(Sandbox, FollowsTheRulesOfDomains) {
    // "{builtIn}" and "{go}" stand for the ids of the two domains.
    const std::vector<Step> steps = {
        {"the built-in domain has no metadata",
         "GET",
         "/domains/{builtIn}",
         "",
         200,
         R"({"ready":true,"domain":{"id":"{builtIn}","name":"go.quillbeam.example"}})"},
        {"a new domain is pending",
         "POST",
         "/domains",
         R"({"name":"Go.Links.Example.com"})",
         201,
         R"({"ready":false,"domain":)" + domain(pending) + "}",
         {},
         {{"{go}", "/domain/id"}}},
        {"listing verifies nothing",
         "GET",
         "/domains",
         "",
         200,
         R"({"domains":[{"id":"{builtIn}","name":"go.quillbeam.example"},)" + domain(pending) + "]}"},
        {"the first look finds no records",
         "GET",
         "/domains/{go}",
         "",
         200,
         R"({"ready":false,"domain":)" + domain(pending) + "}"},
        {"the second look finds them",
         "GET",
         "/domains/{go}",
         "",
         200,
         R"({"ready":true,"domain":)" + domain(active) + "}"},
        {"a name is taken once, in any case", "POST", "/domains", R"({"name":"go.LINKS.example.com"})", 409, error},
        {"the built-in name is taken", "POST", "/domains", R"({"name":"go.quillbeam.example"})", 409, error},
        {"settings", "PUT", "/domains/{go}", R"({"redirectUrl":"https://e.com/?a=b"})", 200, domain(redirected)},
        {"absent settings stay", "PUT", "/domains/{go}", "{}", 200, domain(redirected)},
        {"bad settings", "PUT", "/domains/{go}", R"({"redirectUrl":"e.com"})", 400, error},
        {"settings of another type", "PUT", "/domains/{go}", R"({"redirectUrl":1})", 400, error},
        {"refused changes leave no trace",
         "GET",
         "/domains/{go}",
         "",
         200,
         R"({"ready":true,"domain":)" + domain(redirected) + "}"},
        {"the built-in domain has no settings",
         "PUT",
         "/domains/{builtIn}",
         "{}",
         400,
         R"({"code":"DOMAIN_SETTINGS_NOT_AVAILABLE","errorDescription":"*"})"},
        {"the built-in domain stays", "DELETE", "/domains/{builtIn}", "", 400, error},
        {"no body", "POST", "/domains", "", 400, error},
        {"a body that is not JSON", "POST", "/domains", R"({"name":)", 400, error},
        {"a body that is no object", "POST", "/domains", "[]", 400, error},
        {"a body nested deeper than a stack",
         "POST",
         "/links",
         R"({"tags":[{"deep":)" + std::string(deeperThanStacks, '[') + std::string(deeperThanStacks, ']') + "}]}",
         400,
         error},
        {"a body without the name", "POST", "/domains", "{}", 400, error},
        {"a name of another type", "POST", "/domains", R"({"name":["a.example"]})", 400, error},
        {"a second domain",
         "POST",
         "/domains",
         R"({"name":"b.example"})",
         201,
         R"({"ready":false,"domain":{"id":"*","name":"b.example","customDomainMetadata":{"status":"PENDING",)"
         R"("dnsRecords":[{"name":{"name":"b.example"},"type":"A","value":"*"},)"
         R"({"name":{"name":"b.example","subdomain":"_quillbeam"},"type":"TXT","value":"*"}],)"
         R"("verificationErrors":["*","*"]}}})"},
        {"unknown ids", "GET", "/domains/no-such-id", "", 404, error},
        {"unknown ids", "PUT", "/domains/no-such-id", "{}", 404, error},
        {"unknown ids", "DELETE", "/domains/no-such-id", "", 404, error},
        {"escapes stay in their segment",
         "GET",
         "/domains/a%2Fb%20%C3%A9",
         "",
         404,
         R"({"errorDescription":"There is no domain with the id \"a/b é\"."})"},
        {"a broken escape", "GET", "/domains/%zz", "", 400, error},
        {"an unknown path", "GET", "/domains/", "", 404, error},
        {"an unknown path", "GET", "/nothing", "", 404, error},
        {"another method", "PATCH", "/domains", "", 405, error},
        {"a dictated status", "DELETE", "/domains/{go}", "", 418, error, {{"X-Sandbox-Status", "418"}}},
        {"a dictated status out of range", "GET", "/domains", "", 400, error, {{"X-Sandbox-Status", "99"}}},
        {"a dictated state",
         "GET",
         "/domains/{go}",
         "",
         200,
         R"({"ready":true,"domain":)" + domain(redirected) + "}",
         {{"X-Sandbox-Domain-Status", "ACTIVE"}}},
        {"deleting", "DELETE", "/domains/{go}", "", 200, ""},
        {"deleted", "GET", "/domains/{go}", "", 404, error},
        {"the name is free again",
         "POST",
         "/domains",
         R"({"name":"go.links.example.com"})",
         201,
         R"({"ready":false,"domain":)" + domain(pending) + "}",
         {},
         {{"{go}", "/domain/id"}}},
        {"a dictated state",
         "GET",
         "/domains/{go}",
         "",
         200,
         R"({"ready":false,"domain":)" + domain(blocked) + "}",
         {{"X-Sandbox-Domain-Status", "BLOCKED"}}},
        {"a third domain", "POST", "/domains", R"({"name":"c.example"})", 201, "*"},
        {"a fourth domain",
         "POST",
         "/domains",
         R"({"name":"d.example"})",
         400,
         R"({"code":"CUSTOM_DOMAIN_LIMIT_REACHED","errorDescription":"*"})"},
    };

    const SandboxProcess sandbox;
    Caller caller(sandbox);
    Names names;
    names["{builtIn}"] = Json::parse(caller.call("GET", "/domains").body)["domains"][0]["id"];
    runSteps(caller, steps, names);
}

TEST(Sandbox, TakesHostNamesByRFC1123) {
    const std::string label63(63, 'a');
    const std::string name253 = label63 + "." + label63 + "." + label63 + "." + std::string(61, 'b');
    const std::vector<std::pair<std::string, bool>> names = {
        {"a.b", true},
        {"1.2.example", true},
        {"a--b.example", true},
        {"xn--bcher-kva.example", true},
        {label63 + ".b", true},
        {name253, true},
        {"", false},
        {"localhost", false},
        {".a.b", false},
        {"a..b", false},
        {"a.b.", false},
        {"-a.b", false},
        {"a-.b", false},
        {"a.b-", false},
        {"a_b.c", false},
        {"a b.c", false},
        {"a.b/c", false},
        {"a.b:80", false},
        {"bücher.example", false},
        {"192.0.2.1", false},
        {"a." + label63 + "a", false},
        {name253 + "b", false},
        {std::string("a\0.b", 4), false},
    };
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    for (const auto& [name, isGood] : names) {
        const httplib::Response response = caller.call("POST", "/domains", Json{{"name", name}}.dump());
        EXPECT_EQ(response.status, isGood ? 201 : 400) << name << ": " << response.body;
        if (!isGood) continue;
        const std::string id = Json::parse(response.body)["domain"]["id"];
        EXPECT_EQ(caller.call("DELETE", "/domains/" + id).status, 200);
    }
}

TEST(Sandbox, AsksForAKeyAndKeepsAccountsApart) {
    const SandboxProcess sandbox;
    Caller caller(sandbox);
    ASSERT_EQ(create(caller, "mine.example"), 201);
    const std::string id = Json::parse(caller.call("GET", "/domains").body)["domains"][1]["id"];

    httplib::Client bare(sandbox.address());
    const std::vector<std::string> badHeaders = {
        "", "Bearer", "Bearer ", "Bearer x", "Basic " + sandbox.key(), sandbox.key()
    };
    for (const std::string& header : badHeaders) {
        const auto response = bare.Get("/domains", {{"Authorization", header}});
        ASSERT_TRUE(response);
        EXPECT_EQ(response->status, 401) << header;
        EXPECT_EQ(response->get_header_value("WWW-Authenticate"), "Bearer");
        EXPECT_TRUE(matches(Json::parse(error), Json::parse(response->body)));
    }
    EXPECT_EQ(bare.Get("/domains")->status, 401);
    EXPECT_EQ(bare.Get("/domains", {{"Authorization", "bearer  " + sandbox.key()}})->status, 200);

    const std::string otherKey = Json::parse(bare.Post("/sandbox/accounts")->body)["key"];
    Caller other(sandbox, otherKey);
    EXPECT_EQ(Json::parse(other.call("GET", "/domains").body)["domains"].size(), 1u);
    EXPECT_EQ(other.call("GET", "/domains/" + id).status, 404);
    EXPECT_EQ(other.call("PUT", "/domains/" + id, "{}").status, 404);
    EXPECT_EQ(other.call("DELETE", "/domains/" + id).status, 404);
    EXPECT_EQ(create(other, "mine.example"), 409);
    EXPECT_EQ(caller.call("GET", "/domains/" + id).status, 200);
}

TEST(Sandbox, HoldsItsRulesUnderParallelRequests) {
    SandboxProcess sandbox;
    std::vector<int> statuses(24);
    std::vector<std::thread> threads;
    for (std::size_t i = 0; i < statuses.size(); ++i) {
        threads.emplace_back([&, i] {
            Caller caller(sandbox);
            statuses[i] = create(caller, "d" + std::to_string(i % 8) + ".example");
            for (int request = 0; request < 10; ++request) {
                EXPECT_EQ(caller.call("GET", "/domains").status, 200);
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(std::count(statuses.begin(), statuses.end(), 201), 3);
    EXPECT_EQ(
        std::count(statuses.begin(), statuses.end(), 400) + std::count(statuses.begin(), statuses.end(), 409),
        static_cast<std::ptrdiff_t>(statuses.size()) - 3
    );
    Caller caller(sandbox);
    EXPECT_EQ(Json::parse(caller.call("GET", "/domains").body)["domains"].size(), 4u);
    // Under the thread sanitizer, a race in the sandbox shows in its exit status.
    EXPECT_EQ(sandbox.stop(SIGTERM), 0);
}

TEST(Sandbox, KeepsItsDataInAFileAndStopsCleanly) {
    const std::string file =
        std::filesystem::temp_directory_path() / ("quillbeam-sandbox-" + std::to_string(getpid()) + ".db");
    std::string key;
    for (const int signal : {SIGTERM, SIGINT}) {
        SandboxProcess sandbox({"--database=" + file});
        Caller caller(sandbox);
        EXPECT_EQ(create(caller, "kept.example"), key.empty() ? 201 : 409);
        EXPECT_TRUE(key.empty() || sandbox.key() == key);
        key = sandbox.key();
        // The caller's connection is still open and idle.
        EXPECT_EQ(sandbox.stop(signal), 0);
    }
    std::filesystem::remove(file);
}

TEST(Sandbox, RefusesBadOptions) {
    const std::vector<std::pair<std::vector<std::string>, int>> rows = {
        {{"--help"}, 0},
        {{"--bogus"}, 2},
        {{"extra"}, 2},
        {{"--port"}, 2},
        {{"--port", "x"}, 2},
        {{"--port", "65536"}, 2},
        {{"--port=-1"}, 2},
        {{"--host="}, 2},
        {{"--database", QUILLBEAM_SANDBOX}, 1},
        {{"--host", "256.0.0.1", "--port", "0"}, 1},
    };
    for (const auto& [arguments, status] : rows) {
        EXPECT_EQ(SandboxProcess::run(arguments), status) << testing::PrintToString(arguments);
    }
}

} // namespace
