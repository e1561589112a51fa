#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "OpenAPIRuntime/Interface/HTTPBody.hpp"
#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/Domains.hpp"
#include "QuillbeamAPI/Servers.hpp"
#include "platform/coding/CodingError.hpp"
#include "platform/concurrency/SyncWait.hpp"
#include "tests/QuillbeamAPI/RecordingTransport.hpp"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace {

using namespace QuillbeamAPI;
using namespace QuillbeamAPI::Components::Schemas;
using OpenAPIRuntime::ClientError;
using OpenAPIRuntime::HTTPBody;
using OpenAPIRuntime::RuntimeError;
using platform::syncWait;
using testing_support::RecordingTransport;

const std::string customJSON =
    R"({"id": "d2", "name": "go.example", "customDomainMetadata": {"status": "PENDING", "verificationErrors": ["no CNAME"],)"
    R"( "dnsRecords": [{"name": {"name": "example", "subdomain": "go"}, "type": "CNAME", "value": "edge.example"}]}})";

class Domains : public testing::Test {
protected:
    std::shared_ptr<RecordingTransport> transport = std::make_shared<RecordingTransport>();
    Client client{Servers::Server1::url(), transport};

    void answer(int status, std::optional<std::string> body) {
        transport->status = status;
        transport->answer = std::move(body);
    }
};

TEST_F(Domains, RecordsDecodeWithAllTheirFields) {
    answer(200, R"({"domain": )" + customJSON + R"(, "ready": true, "unknown": [1, null]})");
    const auto output = syncWait(client.getDomain(Operations::getDomain::Path("d2")));
    const CustomDomainMetadata metadata(
        std::nullopt,
        CustomDomainMetadata::statusPayload::PENDING,
        {DNSRecord(DNSRecordName("example", "go"), "CNAME", "edge.example")},
        {"no CNAME"}
    );
    EXPECT_EQ(output.ok().body.json(), DomainResponseDTO(true, DomainDTO("d2", "go.example", metadata)));

    answer(400, R"({"errorDescription": "x", "code": null})");
    const auto refused = syncWait(client.getDomain(Operations::getDomain::Path("d2")));
    EXPECT_EQ(refused.badRequest().body.json(), ErrorResponseDTO(std::nullopt, "x"));
}

TEST_F(Domains, ABodyThatBreaksTheSchemaIsAClientErrorWithTheWholeContext) {
    struct Case {
        int status;
        std::string contentType;
        std::optional<std::string> body;
        std::string cause;
        std::string underlying;
    };

    const std::vector<Case> cases = {
        {200, "application/json", R"({})", "Unknown", "keyNotFound domains"},
        {200, "application/json", R"({"domains": null})", "Unknown", "valueNotFound"},
        {200, "application/json", R"({"domains": [{"id": 1, "name": "x"}]})", "Unknown", "typeMismatch"},
        {200, "application/json", R"({"domains": )", "Unknown", "dataCorrupted"},
        {200, "application/json", "", "Unknown", "dataCorrupted"},
        {200, "application/json", std::nullopt, "Missing required response body", "Missing required response body"},
        {200, "text/html", R"({"domains": []})", "Unexpected Content-Type header: application/json", "Unexpected"},
        {401, "application/json", R"({"errorDescription": "x", "code": "OTHER"})", "Unknown", "dataCorrupted"},
        {401, "application/json", R"({"code": "LINK_LIMIT_REACHED"})", "Unknown", "keyNotFound errorDescription"},
    };
    for (const auto& [status, contentType, body, cause, underlying] : cases) {
        SCOPED_TRACE(body.value_or("<nil>") + " as " + contentType);
        answer(status, body);
        transport->contentType = contentType;
        try {
            (void)syncWait(client.getDomains());
            ADD_FAILURE() << "no error";
        } catch (const ClientError& error) {
            EXPECT_EQ(error.operationID, "getDomains");
            EXPECT_EQ(error.causeDescription, cause);
            EXPECT_TRUE(error.request && error.baseURL && error.response && !error.requestBody);
            EXPECT_EQ(error.responseBody.has_value(), body.has_value());
            EXPECT_NE(platform::prettyDescription(error.underlyingError).find(underlying), std::string::npos)
                << platform::prettyDescription(error.underlyingError);
        }
    }
}

TEST_F(Domains, AResponseWithoutAUsableContentTypeIsReadAsTheDocumentedOne) {
    for (const std::string contentType : {"", "*/*", "garbage", "APPLICATION/JSON; charset=utf-8"}) {
        SCOPED_TRACE(contentType);
        answer(200, R"({"domains": []})");
        transport->contentType = contentType;
        EXPECT_EQ(syncWait(client.getDomains()).ok().body.json().domains.size(), 0u);
    }
}

TEST_F(Domains, AnUndocumentedStatusKeepsTheHeadAndTheUnreadBody) {
    answer(418, "short and stout");
    const auto output = syncWait(client.getDomains());
    const auto* undocumented = output.getIf<Undocumented>();
    ASSERT_NE(undocumented, nullptr);
    EXPECT_EQ(undocumented->payload.headerFields[HTTPTypes::HTTPField::Name::contentType], "application/json");
    EXPECT_EQ(syncWait(OpenAPIRuntime::collect<std::string>(*undocumented->payload.body, 100)), "short and stout");
    try {
        (void)output.ok();
        ADD_FAILURE() << "no error";
    } catch (const RuntimeError& error) {
        EXPECT_EQ(
            std::string(error.what()).find("Unexpected response, expected status code: ok, response: undocumented("), 0u
        ) << error.what();
    }
}

TEST_F(Domains, TheAcceptHeaderFollowsTheInput) {
    using Accept = OpenAPIRuntime::AcceptHeaderContentType<AcceptableContentType>;
    answer(200, R"({"domains": []})");
    const AcceptHeaders headers(
        {Accept(AcceptableContentType("Application/JSON")),
         Accept(AcceptableContentType("text/Plain"), OpenAPIRuntime::QualityValue(0.5))}
    );
    (void)syncWait(client.getDomains(headers));
    EXPECT_EQ(
        transport->request->headerFields[HTTPTypes::HTTPField::Name::accept], "application/json, text/Plain; q=0.500"
    );
}

TEST(DomainRecords, EqualValuesHashAlikeAndEnumerationsAreExact) {
    using Status = CustomDomainMetadata::statusPayload;
    const DomainDTO domain("d", "n", CustomDomainMetadata("u", Status::BLOCKED, {}, {"e"}));
    DomainDTO other = domain;
    EXPECT_EQ(std::hash<DomainDTO>()(domain), std::hash<DomainDTO>()(other));
    other.customDomainMetadata->redirectUrl.reset();
    EXPECT_NE(domain, other);
    EXPECT_NE(std::hash<DomainDTO>()(domain), std::hash<DomainDTO>()(other));

    const auto output = Operations::getDomain::Output::ok(DomainResponseDTO(true, domain));
    EXPECT_EQ(output, Operations::getDomain::Output(output));
    EXPECT_NE(output, Operations::getDomain::Output::undocumented(200, {}));
    const auto deleted = Operations::deleteDomain::Output::ok({});
    const auto hashed = []<class Value>(const Value& value) { return std::hash<Value>()(value); };
    EXPECT_EQ(hashed(output), hashed(Operations::getDomain::Output(output)));
    EXPECT_EQ(hashed(output.ok()), hashed(Operations::getDomain::Output::Ok(DomainResponseDTO(true, domain))));
    EXPECT_NE(hashed(output.ok()), hashed(Operations::getDomain::Output::Ok(DomainResponseDTO(true, other))));
    EXPECT_NE(hashed(deleted.ok()), hashed(Undocumented(418, {})));
}

} // namespace
