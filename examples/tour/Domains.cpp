#include "examples/tour/Domains.hpp"

#include "OpenAPIRuntime/Interface/ClientError.hpp"
#include "QuillbeamAPI/Domains.hpp"

#include <exception>
#include <string>
#include <string_view>

namespace examples {

namespace {

namespace Operations = QuillbeamAPI::Operations;
using namespace QuillbeamAPI::Components::Schemas;
using OpenAPIRuntime::ClientError;
using platform::rawValue;

constexpr std::size_t longestShownBody = 4096;

std::string_view nameOf(int documentedStatus) {
    switch (documentedStatus) {
    case 200:
        return "ok";
    case 201:
        return "created";
    case 400:
        return "badRequest";
    case 401:
        return "unauthorized";
    case 404:
        return "notFound";
    case 409:
        return "conflict";
    default:
        return "";
    }
}

template <class Output>
void showCall(Guide& guide, std::string_view operation, const Output& output, int expectedStatus) {
    const bool isDocumented = !output.template is<QuillbeamAPI::Undocumented>();
    const int status = output.statusCode();
    guide.report.call(
        operation, guide.trace->latest(), status, isDocumented ? nameOf(status) : "undocumented", expectedStatus
    );
}

void showError(Report& report, const ErrorResponseDTO& error) {
    if (error.code) report.detail("code", rawValue(*error.code));
    report.detail("error", error.errorDescription);
}

void showDomain(Report& report, const DomainDTO& domain) {
    report.detail("id", domain.id);
    report.detail("name", domain.name);
    if (!domain.customDomainMetadata) return;
    const CustomDomainMetadata& metadata = *domain.customDomainMetadata;
    report.detail("status", rawValue(metadata.status));
    if (metadata.redirectUrl) report.detail("redirectUrl", *metadata.redirectUrl);
    for (const DNSRecord& record : metadata.dnsRecords) {
        const std::string subdomain = record.name.subdomain ? *record.name.subdomain + "." : "";
        report.detail("DNS record", subdomain + record.name.name + "  " + record._type + "  " + record.value);
    }
    for (const std::string& error : metadata.verificationErrors) {
        report.detail("not verified", error);
    }
}

void showDomain(Report& report, const DomainResponseDTO& response) {
    report.detail("ready", response.ready ? "yes" : "no");
    showDomain(report, response.domain);
}

void showDomains(Report& report, const DomainListDTO& list) {
    for (const DomainDTO& domain : list.domains) {
        const auto& metadata = domain.customDomainMetadata;
        report.detail(metadata ? rawValue(metadata->status) : "built in", domain.name);
    }
}

std::string textOf(const std::exception_ptr& error) {
    try {
        std::rethrow_exception(error);
    } catch (const std::exception& exception) {
        return exception.what();
    } catch (...) {
        return "unknown";
    }
}

void showFailure(Report& report, const ClientError& error) {
    report.detail("operationID", error.operationID);
    report.detail("cause", error.causeDescription);
    report.detail("underlying", textOf(error.underlyingError));
    report.detail("baseURL", error.baseURL ? error.baseURL->absoluteString() : "none");
    report.detail("request", error.request ? error.request->prettyDescription() : "none");
    report.detail("response", error.response ? error.response->prettyDescription() : "none");
}

} // namespace

platform::Task<void> walkDomains(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    const CreateDomainDTO newDomain("go.tour.example");

    report.step("List the account's domains");
    auto listed = co_await guide->client.getDomains();
    showCall(*guide, Operations::getDomains::id, listed, 200);
    const DomainListDTO before = listed.ok().body.json();
    showDomains(report, before);

    report.step("Add a domain: it is pending until its DNS records are found");
    auto created = co_await guide->client.createDomain(newDomain);
    showCall(*guide, Operations::createDomain::id, created, 201);
    showDomain(report, created.created().body.json());
    const std::string id = created.created().body.json().domain.id;

    report.step("Add it once more");
    auto duplicate = co_await guide->client.createDomain(newDomain);
    showCall(*guide, Operations::createDomain::id, duplicate, 409);
    showError(report, duplicate.conflict().body.json());

    report.step("Add one with a bad name");
    auto misnamed = co_await guide->client.createDomain(CreateDomainDTO("not a host name"));
    showCall(*guide, Operations::createDomain::id, misnamed, 400);
    showError(report, misnamed.badRequest().body.json());

    report.step("Look at it until it is ready");
    bool isReady = false;
    for (int look = 0; look < 5 && !isReady; ++look) {
        auto read = co_await guide->client.getDomain(Operations::getDomain::Path(id));
        showCall(*guide, Operations::getDomain::id, read, 200);
        isReady = read.ok().body.json().ready;
        if (!isReady) report.detail("ready", "no");
        if (isReady) showDomain(report, read.ok().body.json());
    }
    if (!isReady) report.mismatch("the domain did not become ready");

    report.step("Look at one that does not exist");
    auto unknown = co_await guide->client.getDomain(Operations::getDomain::Path("no/such domain"));
    showCall(*guide, Operations::getDomain::id, unknown, 404);
    showError(report, unknown.notFound().body.json());

    report.step("Change its settings");
    const UpdateDomainDTO settings("https://www.tour.example/welcome");
    auto updated = co_await guide->client.updateDomain(Operations::updateDomain::Path(id), settings);
    showCall(*guide, Operations::updateDomain::id, updated, 200);
    const DomainDTO& changed = updated.ok().body.json();
    report.detail("name", changed.name);
    if (!changed.customDomainMetadata || changed.customDomainMetadata->redirectUrl != settings.redirectUrl) {
        report.mismatch("the redirect is another than the one that was set");
    } else {
        report.detail("redirectUrl", *changed.customDomainMetadata->redirectUrl);
    }

    report.step("Change the settings of a domain that has none");
    const std::string builtIn = before.domains.at(0).id;
    auto refused = co_await guide->client.updateDomain(Operations::updateDomain::Path(builtIn), settings);
    showCall(*guide, Operations::updateDomain::id, refused, 400);
    showError(report, refused.badRequest().body.json());

    report.step("Delete it, and list what is left");
    auto deleted = co_await guide->client.deleteDomain(Operations::deleteDomain::Path(id));
    showCall(*guide, Operations::deleteDomain::id, deleted, 200);
    auto remaining = co_await guide->client.getDomains();
    showCall(*guide, Operations::getDomains::id, remaining, 200);
    showDomains(report, remaining.ok().body.json());
    if (remaining.ok().body.json() != before) report.mismatch("the list is not what it was at first");

    report.step("Call without a key");
    auto keyless = co_await guide->keyless.getDomains();
    showCall(*guide, Operations::getDomains::id, keyless, 401);
    showError(report, keyless.unauthorized().body.json());

    report.step("Meet a status that the service does not document: a result like any other");
    auto strange = co_await guide->undocumented.getDomains();
    showCall(*guide, Operations::getDomains::id, strange, 418);
    if (const auto* undocumented = strange.getIf<QuillbeamAPI::Undocumented>()) {
        for (const HTTPField& field : undocumented->payload.headerFields) {
            report.detail("header field", std::string(field.name.rawName()) + ": " + field.value());
        }
        if (undocumented->payload.body) {
            const HTTPBody body = *undocumented->payload.body;
            auto text = co_await OpenAPIRuntime::collect<std::string>(body, longestShownBody);
            report.detail("body", text);
        }
    } else {
        report.mismatch("the status passed for a documented one");
    }

    report.step("Call a server that is gone: the one error that a call throws tells all of it");
    std::optional<ClientError> failure;
    try {
        auto impossible = co_await guide->unreachable.getDomains();
        report.mismatch("somebody answered with status " + std::to_string(impossible.statusCode()));
    } catch (const ClientError& error) {
        failure = error;
    }
    if (failure) {
        report.failedCall(failure->operationID, guide->trace->latest());
        showFailure(report, *failure);
    }
}

} // namespace examples
