#pragma once

#include "sandbox/Database.hpp"

#include <cstdint>
#include <optional>
#include <string>

namespace sandbox {

/// What a plan allows. Links and clicks count by calendar month (UTC), domains while they exist.
struct Limits {
    std::int64_t links = 0;
    std::int64_t clicks = 0;
    std::int64_t customDomains = 0;
};

/// What an account used in the current month. What is deleted stays counted.
struct Usage {
    std::int64_t links = 0;
    std::int64_t clicks = 0;
};

/// The limits of the account's plan, which is the one of its running subscription or else the free one, or those that
/// were set for the account in their place.
Limits limitsOf(Session& database, const std::string& account);

/// Limits that one account has instead of its plan's.
struct LimitsOfAccount {
    std::optional<std::int64_t> links;
    std::optional<std::int64_t> clicks;
    std::optional<std::int64_t> customDomains;
};

/// Replaces the account's own limits; those without a value are its plan's again.
void setLimits(Session& database, const std::string& account, const LimitsOfAccount& limits);

Usage usageOf(Session& database, const std::string& account);

/// Counts links that the account is about to make.
/// @throws Problem with LINK_LIMIT_REACHED if they are more than the account may make.
void takeRoomForLinks(Session& database, const std::string& account, std::int64_t more);

/// Counts a click on one of the account's links.
/// @return false, counting nothing, if the account's clicks are used up: the link works, but its click is not tracked.
bool takeRoomForClick(Session& database, const std::string& account);

/// @throws Problem with CUSTOM_DOMAIN_LIMIT_REACHED if the account has as many domains as it may.
void requireRoomForCustomDomain(Session& database, const std::string& account);

} // namespace sandbox
