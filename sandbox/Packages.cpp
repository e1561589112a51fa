#include "sandbox/Packages.hpp"

#include <algorithm>
#include <array>
#include <charconv>

namespace sandbox {

namespace {

struct Price {
    const char* plan;
    std::int64_t monthly;
    std::int64_t legacyMonthly;
};

constexpr std::array prices{Price{"lite", 900, 700}, Price{"pro", 2900, 1900}, Price{"growth", 9900, 7900}};
constexpr std::int64_t monthsPaidOfYear = 10;

constexpr std::array currencies{"USD", "EUR", "GBP"};
constexpr std::array<std::string_view, 20> euroCountries{"AT", "BE", "CY", "DE", "EE", "ES", "FI", "FR", "GR", "HR",
                                                         "IE", "IT", "LT", "LU", "LV", "MT", "NL", "PT", "SI", "SK"};

const char* currencyOf(std::string_view country) {
    if (country == "GB") return "GBP";
    return std::find(euroCountries.begin(), euroCountries.end(), country) == euroCountries.end() ? "USD" : "EUR";
}

std::vector<Package> packages(const std::string& currency, bool isLegacy) {
    const std::string suffix = isLegacy ? "_legacy" : "";
    std::vector<Package> result;
    for (const Price& price : prices) {
        const std::string plan = price.plan;
        const std::int64_t amount = isLegacy ? price.legacyMonthly : price.monthly;
        result.push_back({plan + "_monthly" + suffix, plan, "month", currency, amount});
        result.push_back({plan + "_annual" + suffix, plan, "year", currency, amount * monthsPaidOfYear});
    }
    return result;
}

} // namespace

std::vector<Package> packagesOnSale(std::string_view country, const std::optional<std::string>& applicationVersion) {
    bool isLegacy = false;
    if (applicationVersion) {
        unsigned major = 0;
        const char* const begin = applicationVersion->data();
        const auto [rest, error] = std::from_chars(begin, begin + applicationVersion->size(), major);
        isLegacy = error == std::errc() && major < 2;
    }
    return packages(currencyOf(country), isLegacy);
}

std::optional<Package> packageOfPrice(std::string_view priceID) {
    for (const char* const currency : currencies) {
        for (const bool isLegacy : {false, true}) {
            for (Package& package : packages(currency, isLegacy)) {
                if (package.priceID() == priceID) return std::move(package);
            }
        }
    }
    return std::nullopt;
}

} // namespace sandbox
