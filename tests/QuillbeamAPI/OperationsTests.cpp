#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "QuillbeamAPI/APIKeys.hpp"
#include "QuillbeamAPI/Analytics.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Images.hpp"
#include "QuillbeamAPI/Links.hpp"
#include "QuillbeamAPI/Servers.hpp"
#include "QuillbeamAPI/Subscriptions.hpp"
#include "QuillbeamAPI/Tags.hpp"
#include "QuillbeamAPI/Users.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "tests/QuillbeamAPI/RecordingTransport.hpp"

#include <gtest/gtest.h>

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace {

using namespace QuillbeamAPI;
using namespace QuillbeamAPI::Components::Schemas;
using platform::syncWait;
using testing_support::RecordingTransport;

/// One operation as the service documents it, written out by hand, and a way to call it that gives the name of the case
/// that came out.
struct Expectation {
    std::string id;
    std::string method;
    std::string path;
    std::string extraFields; ///< header fields beside Accept and those of the body
    std::string body;        ///< empty: none
    std::string success;     ///< a body for the success status
    std::vector<std::pair<int, std::string>> statuses;
    std::function<std::string(Client&)> call;
};

template <class Output>
std::string caseName(platform::Task<Output> task) {
    const Output output = syncWait(std::move(task));
    return output.visit([](const auto& response) -> std::string {
        using Case = std::decay_t<decltype(response)>;
        if constexpr (std::is_same_v<Case, Undocumented>) {
            return "undocumented " + std::to_string(response.statusCode);
        } else {
            return std::string(QuillbeamAPI::detail::statusName<Case::statusCode>);
        }
    });
}

const std::string domain = R"({"id": "d1", "name": "links.example"})";
const std::string link = R"({"id": "l1", "createdAt": "2024-02-29T23:59:59Z", "destinationUrl": "https://a.example",)"
                         R"( "slug": "s", "domain": {"id": "d1", "name": "links.example"}, "shortUrl": "https://l/s",)"
                         R"( "clickCount": 3, "tags": [{"name": "t"}]})";
const std::string apiKey = R"({"id": "k1", "key": "secret", "createdAt": "2024-01-01T00:00:00Z"})";
const std::string noBody = "not JSON, and never read";

platform::Date date(int year, unsigned month, unsigned day) {
    using namespace std::chrono;
    return platform::Date(
        sys_days(year_month_day(std::chrono::year(year), std::chrono::month(month), std::chrono::day(day)))
    );
}

const std::vector<Expectation>& expectations() {
    using Analytics = Operations::getLinkAnalytics::Query;
    using Portal = Operations::getSubscriptionPortal::Query;
    static const CreateLinkDTO newLink = [] {
        CreateLinkDTO value;
        value.destinationUrl = "https://a.example/?q=1";
        value.domain = "d1";
        return value;
    }();
    static const std::string newLinkJSON = R"({
  "destinationUrl": "https:\/\/a.example\/?q=1",
  "domain": "d1",
  "tags": []
})";
    static const std::vector<Expectation> table = {
        {"getDomains",
         "GET",
         "/domains",
         "",
         "",
         R"({"domains": []})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getDomains()); }},
        {"createDomain",
         "POST",
         "/domains",
         "",
         "{\n  \"name\": \"go.example\"\n}",
         R"({"ready": false, "domain": )" + domain + "}",
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}, {409, "conflict"}},
         [](Client& client) { return caseName(client.createDomain(CreateDomainDTO("go.example"))); }},
        {"getDomain",
         "GET",
         "/domains/a%2Fb%20%7B%7D",
         "",
         "",
         R"({"ready": true, "domain": )" + domain + "}",
         {{200, "ok"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.getDomain(Operations::getDomain::Path("a/b {}"))); }},
        {"updateDomain",
         "PUT",
         "/domains/d1",
         "",
         "{}",
         domain,
         {{200, "ok"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             return caseName(client.updateDomain(Operations::updateDomain::Path("d1"), UpdateDomainDTO()));
         }},
        {"deleteDomain",
         "DELETE",
         "/domains/d1",
         "",
         "",
         noBody,
         {{200, "ok"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.deleteDomain(Operations::deleteDomain::Path("d1"))); }},
        {"getSubscriptionPackages",
         "GET",
         "/subscriptions/packages?country_code=DE",
         "; x-app-version: 1.2%20b",
         "",
         R"({"packages": [{"id": "pro_annual_legacy", "interval": "year", "priceId": "p", "productId": "q",)"
         R"( "currency": "EUR", "amount": 1.5}]})",
         {{200, "ok"}},
         [](Client& client) {
             return caseName(client.getSubscriptionPackages(
                 Operations::getSubscriptionPackages::Query("DE"), Operations::getSubscriptionPackages::Headers("1.2 b")
             ));
         }},
        {"getSubscription",
         "GET",
         "/subscriptions",
         "",
         "",
         R"({"subscription": null})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getSubscription()); }},
        {"getSubscriptionPortal",
         "GET",
         "/subscriptions/manage?redirect=webManage",
         "",
         "",
         R"({"url": "https://p.example"})",
         {{200, "ok"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             return caseName(client.getSubscriptionPortal(Portal(Portal::redirectPayload::webManage)));
         }},
        {"beginCheckout",
         "POST",
         "/subscriptions/checkout",
         "",
         "{\n  \"priceId\": \"p1\",\n  \"redirect\": \"webOnboarding\"\n}",
         R"({"subscriptionUpdated": true})",
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             return caseName(
                 client.beginCheckout(CreateCheckoutDTO(CreateCheckoutDTO::redirectPayload::webOnboarding, "p1"))
             );
         }},
        {"getLinkHistory",
         "GET",
         "/links?query=a%26b&tags=x&tags=y%20z&tagIds=1",
         "",
         "",
         R"({"links": [)" + link + R"(], "tags": []})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) {
             using Query = Operations::getLinkHistory::Query;
             const std::vector<std::string> tags = {"x", "y z"};
             const std::vector<std::string> ids = {"1"};
             return caseName(client.getLinkHistory(Query("a&b", tags, ids)));
         }},
        {"createLink",
         "POST",
         "/links",
         "",
         newLinkJSON,
         link,
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.createLink(newLink)); }},
        {"createAnonymousLink",
         "POST",
         "/links/public",
         "",
         newLinkJSON,
         R"({"claimToken": "c", "link": )" + link + "}",
         {{201, "created"}, {400, "badRequest"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.createAnonymousLink(newLink)); }},
        {"createBulkLinks",
         "POST",
         "/links/bulk",
         "",
         "{\n  \"links\": []\n}",
         R"({"links": [)" + link + "]}",
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.createBulkLinks(BulkCreateLinksDTO())); }},
        {"importGoogleLinks",
         "POST",
         "/links/google-import",
         "",
         "{\n  \"links\": [\n    \"a\",\n    \"b\"\n  ]\n}",
         R"({"importedLinks": [{"originalUrl": "a", "newUrl": "b"}]})",
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             const std::vector<std::string> links = {"a", "b"};
             return caseName(client.importGoogleLinks(ClaimLinksDTO(links)));
         }},
        {"updateLink",
         "PUT",
         "/links/l%3F1",
         "",
         "{\n  \"expireAt\": \"2024-12-31T00:00:00Z\",\n  \"tags\": [\n    {\n      \"name\": \"t\"\n    }\n  ]\n}",
         link,
         {{200, "ok"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             EditLinkDTO edit;
             edit.tags.emplace().emplace_back(std::nullopt, "t");
             edit.expireAt = date(2024, 12, 31);
             return caseName(client.updateLink(Operations::updateLink::Path("l?1"), edit));
         }},
        {"deleteLink",
         "DELETE",
         "/links/l1",
         "",
         "",
         noBody,
         {{200, "ok"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.deleteLink(Operations::deleteLink::Path("l1"))); }},
        {"claimLegacyLinks",
         "POST",
         "/links/claim",
         "",
         "{\n  \"links\": []\n}",
         noBody,
         {{201, "created"}, {400, "badRequest"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.claimLegacyLinks(ClaimLinksDTO())); }},
        {"getLinkAnalytics",
         "GET",
         "/analytics/link/l1?unit=day&startDate=2024-01-01T00%3A00%3A00Z&endDate=2024-02-01T00%3A00%3A00Z"
         "&content=timeline&content=operating_systems",
         "",
         "",
         R"({"linkId": "l1", "clickCount": 2, "timeline": {"unit": "day", "entries": [{"date": "2024-01-01T00:00:00Z",)"
         R"( "clickCount": 2.0}]}, "countries": [{"countryCode": "DE", "clickCount": 2}], "regions": [], "devices": [],)"
         R"( "referrers": [], "browsers": [], "operatingSystems": []})",
         {{200, "ok"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             using Content = Analytics::contentPayloadPayload;
             const std::vector<Content> content = {Content::timeline, Content::operating_systems};
             return caseName(client.getLinkAnalytics(
                 Operations::getLinkAnalytics::Path("l1"),
                 Analytics(Analytics::unitPayload::day, date(2024, 1, 1), date(2024, 2, 1), content)
             ));
         }},
        {"getTags",
         "GET",
         "/tags",
         "",
         "",
         R"([{"name": "t"}])",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getTags()); }},
        {"updateTag",
         "PUT",
         "/tags/t1",
         "",
         "{\n  \"name\": \"new\"\n}",
         R"({"id": "t1", "name": "new"})",
         {{200, "ok"}, {400, "badRequest"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) {
             return caseName(client.updateTag(Operations::updateTag::Path("t1"), TagDTO(std::nullopt, "new")));
         }},
        {"removeTag",
         "DELETE",
         "/tags/t1",
         "",
         "",
         noBody,
         {{200, "ok"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.removeTag(Operations::removeTag::Path("t1"))); }},
        {"getAccountPortal",
         "GET",
         "/users/account-portal",
         "",
         "",
         R"({"url": "https://p.example"})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getAccountPortal()); }},
        {"getTierUsage",
         "GET",
         "/users/tier",
         "",
         "",
         R"({"linksCreated": 1, "clicksTracked": 2, "linkLimit": 3, "clickLimit": 4})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getTierUsage()); }},
        {"getUserInfo",
         "GET",
         "/users/me",
         "",
         "",
         R"({"email": "a@b.example"})",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getUserInfo()); }},
        {"getApiKeys",
         "GET",
         "/api-keys",
         "",
         "",
         "[" + apiKey + "]",
         {{200, "ok"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getApiKeys()); }},
        {"createApiKey",
         "POST",
         "/api-keys",
         "",
         "{}",
         apiKey,
         {{201, "created"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.createApiKey(CreateApiKeyDTO())); }},
        {"deleteApiKey",
         "DELETE",
         "/api-keys/k1",
         "",
         "",
         noBody,
         {{200, "ok"}, {401, "unauthorized"}, {404, "notFound"}},
         [](Client& client) { return caseName(client.deleteApiKey(Operations::deleteApiKey::Path("k1"))); }},
        {"getSocialCardUploadUrl",
         "POST",
         "/images/social-card",
         "",
         "",
         R"({"uploadUrl": "u", "publicUrl": "p"})",
         {{201, "created"}, {401, "unauthorized"}},
         [](Client& client) { return caseName(client.getSocialCardUploadUrl()); }},
    };
    return table;
}

TEST(Operations, RequestsAndResponsesAreThoseOfTheService) {
    const auto transport = std::make_shared<RecordingTransport>();
    Client client(Servers::Server1::url(), transport);
    ASSERT_EQ(expectations().size(), 28u);
    for (const auto& expected : expectations()) {
        SCOPED_TRACE(expected.id);
        for (const auto& [status, name] : expected.statuses) {
            transport->status = status;
            transport->answer = status < 400 ? expected.success : R"({"errorDescription": "x"})";
            EXPECT_EQ(expected.call(client), name);
        }
        for (const int status : {204, 403, 418, 500}) {
            transport->status = status;
            EXPECT_EQ(expected.call(client), "undocumented " + std::to_string(status));
        }

        EXPECT_EQ(transport->operationID, expected.id);
        EXPECT_EQ(transport->baseURL, "https://api.quillbeam.example");
        const auto& request = *transport->request;
        EXPECT_EQ(request.method().rawValue(), expected.method);
        EXPECT_EQ(request.path(), expected.path);
        EXPECT_EQ(request.scheme(), std::nullopt);
        EXPECT_EQ(request.authority(), std::nullopt);
        std::string fields = "accept: application/json";
        ASSERT_EQ(transport->requestBody.has_value(), !expected.body.empty());
        if (!expected.body.empty()) {
            EXPECT_EQ(syncWait(OpenAPIRuntime::collect<std::string>(*transport->requestBody, 1000)), expected.body);
            fields += "; content-length: " + std::to_string(expected.body.size());
            fields += "; content-type: application/json; charset=utf-8";
        }
        EXPECT_EQ(request.headerFields.prettyDescription(), fields + expected.extraFields);
    }
}

TEST(Operations, AbsentParametersAddNothing) {
    const auto transport = std::make_shared<RecordingTransport>();
    Client client(Servers::Server1::url(), transport);
    transport->status = 500;
    const std::vector<std::pair<std::string, std::function<void()>>> cases = {
        {"/links", [&] { (void)syncWait(client.getLinkHistory()); }},
        {"/subscriptions/manage", [&] { (void)syncWait(client.getSubscriptionPortal()); }},
        {"/subscriptions/packages?country_code=",
         [&] { (void)syncWait(client.getSubscriptionPackages(Operations::getSubscriptionPackages::Query())); }},
        {"/analytics/link/?unit=hour&startDate=1970-01-01T00%3A00%3A00Z&endDate=1970-01-01T00%3A00%3A00Z",
         [&] {
             (void)syncWait(
                 client.getLinkAnalytics(Operations::getLinkAnalytics::Path(), Operations::getLinkAnalytics::Query())
             );
         }},
    };
    for (const auto& [path, call] : cases) {
        call();
        EXPECT_EQ(transport->request->path(), path);
        EXPECT_EQ(transport->request->headerFields.prettyDescription(), "accept: application/json");
    }
}

} // namespace
