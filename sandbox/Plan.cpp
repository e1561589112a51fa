#include "sandbox/Plan.hpp"

#include "sandbox/Problem.hpp"

#include <array>
#include <string_view>

namespace sandbox {

namespace {

struct Plan {
    std::string_view name;
    Limits limits;
};

constexpr Plan freePlan{"free", {.links = 1'000, .clicks = 10'000, .customDomains = 3}};
constexpr std::array plans{
    Plan{"lite", {.links = 5'000, .clicks = 100'000, .customDomains = 5}},
    Plan{"pro", {.links = 50'000, .clicks = 1'000'000, .customDomains = 20}},
    Plan{"growth", {.links = 500'000, .clicks = 10'000'000, .customDomains = 100}},
};

#define THIS_MONTH "strftime('%Y-%m')"

Plan planOf(Session& database, const std::string& account) {
    const auto row =
        database.first("SELECT plan FROM subscription_states WHERE account_id = ? AND status = 'active'", {account});
    for (const Plan& plan : plans) {
        if (row && row->text(0) == plan.name) return plan;
    }
    return freePlan;
}

std::string allows(std::int64_t limit, const char* what) {
    return "The account's limit of " + std::to_string(limit) + " " + what + " is reached.";
}

} // namespace

Limits limitsOf(Session& database, const std::string& account) {
    const Limits limits = planOf(database, account).limits;
    const auto row = database.first(
        "SELECT coalesce(link_limit, ?), coalesce(click_limit, ?), coalesce(custom_domain_limit, ?) FROM accounts "
        "WHERE id = ?",
        {limits.links, limits.clicks, limits.customDomains, account}
    );
    return row ? Limits{row->integer(0), row->integer(1), row->integer(2)} : limits;
}

void setLimits(Session& database, const std::string& account, const LimitsOfAccount& limits) {
    const auto value = [](const std::optional<std::int64_t>& limit) { return limit ? Value(*limit) : Value(nullptr); };
    database.execute(
        "UPDATE accounts SET link_limit = ?, click_limit = ?, custom_domain_limit = ? WHERE id = ?",
        {value(limits.links), value(limits.clicks), value(limits.customDomains), account}
    );
}

Usage usageOf(Session& database, const std::string& account) {
    const auto row =
        database.first("SELECT links, clicks FROM usage WHERE account_id = ? AND month = " THIS_MONTH, {account});
    return row ? Usage{row->integer(0), row->integer(1)} : Usage{};
}

void takeRoomForLinks(Session& database, const std::string& account, std::int64_t more) {
    const std::int64_t limit = limitsOf(database, account).links;
    if (more > limit - usageOf(database, account).links) {
        throw Problem(400, allows(limit, "links a month"), ErrorCode::linkLimitReached);
    }
    database.execute(
        "INSERT INTO usage (account_id, month, links) VALUES (?, " THIS_MONTH ", ?) "
        "ON CONFLICT DO UPDATE SET links = links + excluded.links",
        {account, more}
    );
}

bool takeRoomForClick(Session& database, const std::string& account) {
    if (usageOf(database, account).clicks >= limitsOf(database, account).clicks) return false;
    database.execute(
        "INSERT INTO usage (account_id, month, clicks) VALUES (?, " THIS_MONTH ", 1) "
        "ON CONFLICT DO UPDATE SET clicks = clicks + 1",
        {account}
    );
    return true;
}

void requireRoomForCustomDomain(Session& database, const std::string& account) {
    const std::int64_t limit = limitsOf(database, account).customDomains;
    const auto count = database.first("SELECT count(*) FROM domains WHERE account_id = ?", {account})->integer(0);
    if (count >= limit) throw Problem(400, allows(limit, "custom domains"), ErrorCode::customDomainLimitReached);
}

} // namespace sandbox
