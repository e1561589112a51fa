#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace sandbox {

/// A plan at a price.
struct Package {
    /// Such as "pro_annual".
    std::string id;

    /// Such as "pro".
    std::string plan;

    /// "month" or "year".
    std::string interval;

    /// ISO 4217.
    std::string currency;

    /// In the currency's minor unit.
    std::int64_t amount = 0;

    std::string productID() const { return "prod_" + plan; }

    std::string priceID() const { return "price_" + id + "_" + currency; }
};

/// What is on sale in a country. Applications before version 2 were made for the legacy packages and still get those.
/// @param country ISO 3166-1 alpha-2, in capitals.
std::vector<Package> packagesOnSale(std::string_view country, const std::optional<std::string>& applicationVersion);

std::optional<Package> packageOfPrice(std::string_view priceID);

} // namespace sandbox
