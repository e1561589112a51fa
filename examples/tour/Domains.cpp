#include "QuillbeamAPI/Domains.hpp"

#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "examples/tour/Chapters.hpp"

namespace examples {

namespace {

using platform::rawValue;

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

} // namespace

Task<void> addADomain(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("A domain");
    const CreateDomainDTO newDomain("go.tour.example");

    report.step("List the account's domains");
    auto listed = co_await guide->client.getDomains();
    guide->show(Operations::getDomains::id, listed, 200);
    guide->story.domainsBefore = listed.ok().body.json();
    showDomains(report, guide->story.domainsBefore);

    report.step("Add a domain: it is pending until its DNS records are found");
    auto created = co_await guide->client.createDomain(newDomain);
    guide->show(Operations::createDomain::id, created, 201);
    showDomain(report, created.created().body.json());
    const std::string id = created.created().body.json().domain.id;

    report.step("Add it once more");
    auto duplicate = co_await guide->client.createDomain(newDomain);
    guide->show(Operations::createDomain::id, duplicate, 409);
    guide->showError(duplicate.conflict().body.json());

    report.step("Add one with a bad name");
    auto misnamed = co_await guide->client.createDomain(CreateDomainDTO("not a host name"));
    guide->show(Operations::createDomain::id, misnamed, 400);
    guide->showError(misnamed.badRequest().body.json());

    report.step("Look at it until it is ready");
    bool isReady = false;
    for (int look = 0; look < 5 && !isReady; ++look) {
        auto read = co_await guide->client.getDomain(Operations::getDomain::Path(id));
        guide->show(Operations::getDomain::id, read, 200);
        isReady = read.ok().body.json().ready;
        if (!isReady) report.detail("ready", "no");
        if (isReady) showDomain(report, read.ok().body.json());
    }
    if (!isReady) report.mismatch("the domain did not become ready");

    report.step("Look at one that does not exist");
    auto unknown = co_await guide->client.getDomain(Operations::getDomain::Path("no/such domain"));
    guide->show(Operations::getDomain::id, unknown, 404);
    guide->showError(unknown.notFound().body.json());

    report.step("Change its settings");
    const UpdateDomainDTO settings("https://www.tour.example/welcome");
    auto updated = co_await guide->client.updateDomain(Operations::updateDomain::Path(id), settings);
    guide->show(Operations::updateDomain::id, updated, 200);
    const DomainDTO& changed = updated.ok().body.json();
    report.detail("name", changed.name);
    if (!changed.customDomainMetadata || changed.customDomainMetadata->redirectUrl != settings.redirectUrl) {
        report.mismatch("the redirect is another than the one that was set");
    } else {
        report.detail("redirectUrl", *changed.customDomainMetadata->redirectUrl);
    }

    report.step("Change the settings of a domain that has none");
    const std::string builtIn = guide->story.domainsBefore.domains.at(0).id;
    auto refused = co_await guide->client.updateDomain(Operations::updateDomain::Path(builtIn), settings);
    guide->show(Operations::updateDomain::id, refused, 400);
    guide->showError(refused.badRequest().body.json());
    guide->story.domain = changed;
}

Task<void> removeTheDomain(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;

    report.step("Delete the domain, and list what is left");
    auto deleted = co_await guide->client.deleteDomain(Operations::deleteDomain::Path(guide->story.domain.id));
    guide->show(Operations::deleteDomain::id, deleted, 200);
    auto remaining = co_await guide->client.getDomains();
    guide->show(Operations::getDomains::id, remaining, 200);
    showDomains(report, remaining.ok().body.json());
    report.expect(remaining.ok().body.json() == guide->story.domainsBefore, "the list is not what it was at first");
}

} // namespace examples
