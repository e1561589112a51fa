#include "sandbox/Domains.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Body.hpp"
#include "sandbox/HostName.hpp"
#include "sandbox/Identifiers.hpp"
#include "sandbox/Plan.hpp"
#include "sandbox/Problem.hpp"
#include "sandbox/WebAddress.hpp"

#include <nlohmann/json.hpp>

#include <array>
#include <utility>

namespace sandbox {

namespace {

constexpr const char* aliasTarget = "domains.quillbeam.example";
// An address for documentation (RFC 5737): a zone itself cannot be an alias.
constexpr const char* zoneAddress = "203.0.113.80";

// The check that finds a new domain's DNS records. The first one does not, so that a program meets both states.
constexpr std::int64_t successfulCheck = 2;

struct Domain {
    std::string id;
    std::string name;
    std::optional<std::string> redirectUrl;
    std::string status;
    std::int64_t checks = 0;
    std::optional<std::string> verificationToken;
    bool isCustom = false;

    bool isActive() const { return status == "ACTIVE"; }
};

#define DOMAIN_COLUMNS "id, name, redirect_url, status, checks, verification_token, account_id IS NOT NULL"

Domain domainOf(const Row& row) {
    return Domain{
        row.text(0),
        row.text(1),
        row.optionalText(2),
        row.text(3),
        row.integer(4),
        row.optionalText(5),
        row.integer(6) != 0
    };
}

Domain requireDomain(Session& database, const Request& request, const Account& account) {
    const std::string& id = request.parameters.at(0);
    const auto row = database.first(
        "SELECT " DOMAIN_COLUMNS " FROM domains WHERE id = ? AND (account_id = ? OR account_id IS NULL)",
        {id, account.id}
    );
    if (!row) throw Problem::notFound("There is no domain with the id \"" + id + "\".");
    return domainOf(*row);
}

Json dnsRecord(const std::string& zone, const std::string& subdomain, const char* type, const std::string& value) {
    Json name{{"name", zone}};
    if (!subdomain.empty()) name["subdomain"] = subdomain;
    return {{"name", std::move(name)}, {"type", type}, {"value", value}};
}

Json dnsRecords(const Domain& domain) {
    const auto [zone, subdomain] = partsOfHostName(domain.name);
    Json records = Json::array();
    records.push_back(
        subdomain.empty() ? dnsRecord(zone, subdomain, "A", zoneAddress)
                          : dnsRecord(zone, subdomain, "CNAME", aliasTarget)
    );
    const std::string proof = subdomain.empty() ? "_quillbeam" : "_quillbeam." + subdomain;
    records.push_back(dnsRecord(zone, proof, "TXT", "quillbeam-verification=" + domain.verificationToken.value_or("")));
    return records;
}

Json verificationErrors(const Domain& domain, const Json& records) {
    Json errors = Json::array();
    if (domain.status == "BLOCKED") {
        errors.push_back("The domain " + domain.name + " is blocked.");
    } else if (!domain.isActive()) {
        for (const Json& record : records) {
            std::string name = record["name"].value("subdomain", "");
            if (!name.empty()) name += '.';
            name += record["name"]["name"].get<std::string>();
            errors.push_back(
                "No " + record["type"].get<std::string>() + " record of " + name + " has the value \"" +
                record["value"].get<std::string>() + "\"."
            );
        }
    }
    return errors;
}

Json domainBody(const Domain& domain) {
    Json body{{"id", domain.id}, {"name", domain.name}};
    if (!domain.isCustom) return body;
    Json metadata = Json::object();
    if (domain.redirectUrl) metadata["redirectUrl"] = *domain.redirectUrl;
    metadata["status"] = domain.status;
    metadata["dnsRecords"] = dnsRecords(domain);
    metadata["verificationErrors"] = verificationErrors(domain, metadata["dnsRecords"]);
    body["customDomainMetadata"] = std::move(metadata);
    return body;
}

Json domainResponseBody(const Domain& domain) {
    return {{"ready", domain.isActive()}, {"domain", domainBody(domain)}};
}

Response getDomains(Session& database, const Request&, const Account& account) {
    Json domains = Json::array();
    const auto rows = database.rows(
        "SELECT " DOMAIN_COLUMNS " FROM domains WHERE account_id = ? OR account_id IS NULL ORDER BY sequence",
        {account.id}
    );
    for (const Row& row : rows) {
        domains.push_back(domainBody(domainOf(row)));
    }
    return Response::json(200, {{"domains", std::move(domains)}});
}

Response createDomain(Session& database, const Request& request, const Account& account) {
    const std::string name = checkedHostName(Body(request).text("name"));
    if (database.first("SELECT 1 FROM domains WHERE name = ?", {name})) {
        throw Problem::conflict("The domain " + name + " is in use.");
    }
    requireRoomForCustomDomain(database, account.id);
    const Domain domain{
        makeIdentifier("dom"),
        name,
        std::nullopt,
        "PENDING",
        0,
        makeIdentifier("proof"),
        /*isCustom=*/true
    };
    database.execute(
        "INSERT INTO domains (id, account_id, name, status, verification_token) VALUES (?, ?, ?, ?, ?)",
        {domain.id, account.id, domain.name, domain.status, valueOf(domain.verificationToken)}
    );
    return Response::json(201, domainResponseBody(domain));
}

// Looks up the DNS records of a pending domain, as far as a stand-in can; a request may dictate the outcome.
void verify(Session& database, const Request& request, Domain& domain) {
    if (!domain.isCustom) return;
    if (const auto dictated = request.header("x-sandbox-domain-status")) {
        if (*dictated != "ACTIVE" && *dictated != "PENDING" && *dictated != "BLOCKED") {
            throw Problem::badRequest("\"X-Sandbox-Domain-Status\" takes ACTIVE, PENDING or BLOCKED.");
        }
        domain.status = *dictated;
        domain.checks = 0;
    } else if (domain.status == "PENDING") {
        ++domain.checks;
        if (domain.checks >= successfulCheck) domain.status = "ACTIVE";
    } else {
        return;
    }
    database.execute(
        "UPDATE domains SET status = ?, checks = ? WHERE id = ?", {domain.status, domain.checks, domain.id}
    );
}

Response getDomain(Session& database, const Request& request, const Account& account) {
    Domain domain = requireDomain(database, request, account);
    verify(database, request, domain);
    return Response::json(200, domainResponseBody(domain));
}

Response updateDomain(Session& database, const Request& request, const Account& account) {
    Domain domain = requireDomain(database, request, account);
    const auto redirectUrl = Body(request).optionalText("redirectUrl");
    if (!domain.isCustom) {
        throw Problem(
            400,
            "The domain " + domain.name + " is built in and has no settings.",
            ErrorCode::domainSettingsNotAvailable
        );
    }
    if (redirectUrl) {
        requireWebAddress("redirectUrl", *redirectUrl);
        domain.redirectUrl = redirectUrl;
        database.execute("UPDATE domains SET redirect_url = ? WHERE id = ?", {*redirectUrl, domain.id});
    }
    return Response::json(200, domainBody(domain));
}

Response deleteDomain(Session& database, const Request& request, const Account& account) {
    const Domain domain = requireDomain(database, request, account);
    if (!domain.isCustom) throw Problem::badRequest("The domain " + domain.name + " is built in and stays.");
    database.execute("DELETE FROM domains WHERE id = ?", {domain.id});
    return Response::empty(200);
}

} // namespace

void addDomainRoutes(Router& router) {
    router.add("GET", "/domains", withAccount(getDomains));
    router.add("POST", "/domains", withAccount(createDomain));
    router.add("GET", "/domains/{}", withAccount(getDomain));
    router.add("PUT", "/domains/{}", withAccount(updateDomain));
    router.add("DELETE", "/domains/{}", withAccount(deleteDomain));
}

void addBuiltInDomain(Session& database) {
    database.execute(
        "INSERT INTO domains (id, name, status) VALUES (?, ?, 'ACTIVE')", {makeIdentifier("dom"), builtInDomainName}
    );
}

std::string requireReadyDomain(Session& database, const std::string& account, const std::string& domain) {
    const auto row = database.first(
        "SELECT id, status FROM domains WHERE (id = ?1 OR name = lower(?1)) AND (account_id = ?2 OR account_id IS "
        "NULL)",
        {domain, account}
    );
    if (!row) throw Problem::notFound("There is no domain \"" + domain + "\".");
    if (row->text(1) != "ACTIVE") throw Problem::badRequest("The domain " + domain + " is not active.");
    return row->text(0);
}

Json domainBodyOf(Session& database, const std::string& id) {
    return domainBody(domainOf(*database.first("SELECT " DOMAIN_COLUMNS " FROM domains WHERE id = ?", {id})));
}

} // namespace sandbox
