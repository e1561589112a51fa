#pragma once

#include "QuillbeamAPI/AcceptableContentType.hpp"
#include "QuillbeamAPI/ErrorResponseDTO.hpp"
#include "QuillbeamAPI/Responses.hpp"
#include "platform/Export.hpp"
#include "platform/coding/RawValues.hpp"
#include "platform/coding/Record.hpp"
#include "platform/date/Date.hpp"

#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

/// Subscriptions: the packages on sale, the account's subscription, the page to manage it and the checkout.
namespace QuillbeamAPI::inline v1::Components::Schemas {

/// A package on sale.
struct QUILLBEAM_EXPORT SubscriptionPackageDTO {
    /// The packages; those with "legacy" are no longer on sale but still in use.
    enum class idPayload {
        lite_monthly,
        lite_annual,
        pro_monthly,
        pro_annual,
        growth_monthly,
        growth_annual,
        lite_monthly_legacy,
        lite_annual_legacy,
        pro_monthly_legacy,
        pro_annual_legacy,
        growth_monthly_legacy,
        growth_annual_legacy
    };
    /// How often a package is paid.
    enum class intervalPayload { month, year };

    idPayload id = idPayload::lite_monthly;
    intervalPayload interval = intervalPayload::month;
    std::string priceId{}; ///< what a checkout is begun with
    std::string productId{};
    std::string currency{}; ///< ISO 4217
    double amount = 0;      ///< in the minor unit of the currency

    SubscriptionPackageDTO() = default;

    SubscriptionPackageDTO(
        idPayload id_,
        intervalPayload interval_,
        std::string priceId_,
        std::string productId_,
        std::string currency_,
        double amount_
    )
        : id(id_)
        , interval(interval_)
        , priceId(std::move(priceId_))
        , productId(std::move(productId_))
        , currency(std::move(currency_))
        , amount(amount_) {}

    friend bool operator==(const SubscriptionPackageDTO&, const SubscriptionPackageDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The packages on sale in a country.
struct QUILLBEAM_EXPORT SubscriptionPackagesResponseDTO {
    std::vector<SubscriptionPackageDTO> packages{};

    SubscriptionPackagesResponseDTO() = default;

    explicit SubscriptionPackagesResponseDTO(std::vector<SubscriptionPackageDTO> packages_)
        : packages(std::move(packages_)) {}

    friend bool operator==(const SubscriptionPackagesResponseDTO&, const SubscriptionPackagesResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The account's subscription.
struct QUILLBEAM_EXPORT UserSubscriptionDTO {
    /// Where the subscription was bought, and so where it is managed.
    enum class storePayload { appStore, macAppStore, stripe };
    enum class statusPayload { active, canceled, expired };
    enum class planPayload { lite, pro, growth };

    storePayload store = storePayload::appStore;
    statusPayload status = statusPayload::active;
    planPayload plan = planPayload::lite;
    std::string id{};
    platform::Date expirationDate{};

    UserSubscriptionDTO() = default;

    UserSubscriptionDTO(
        storePayload store_, statusPayload status_, planPayload plan_, std::string id_, platform::Date expirationDate_
    )
        : store(store_)
        , status(status_)
        , plan(plan_)
        , id(std::move(id_))
        , expirationDate(expirationDate_) {}

    friend bool operator==(const UserSubscriptionDTO&, const UserSubscriptionDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The account's subscription, if it has one.
struct QUILLBEAM_EXPORT GetSubscriptionResponseDTO {
    std::optional<UserSubscriptionDTO> subscription{}; ///< absent on the free plan

    GetSubscriptionResponseDTO() = default;

    explicit GetSubscriptionResponseDTO(std::optional<UserSubscriptionDTO> subscription_)
        : subscription(std::move(subscription_)) {}

    friend bool operator==(const GetSubscriptionResponseDTO&, const GetSubscriptionResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// The address of the page on which a subscription is managed.
struct QUILLBEAM_EXPORT SubscriptionPortalDTO {
    std::string url{};

    SubscriptionPortalDTO() = default;

    explicit SubscriptionPortalDTO(std::string url_)
        : url(std::move(url_)) {}

    friend bool operator==(const SubscriptionPortalDTO&, const SubscriptionPortalDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// What it takes to begin a checkout.
struct QUILLBEAM_EXPORT CreateCheckoutDTO {
    /// Where the checkout page leads when it is done.
    enum class redirectPayload { app, webOnboarding, webManage };

    redirectPayload redirect = redirectPayload::app;
    std::string priceId{}; ///< of the package to buy

    CreateCheckoutDTO() = default;

    CreateCheckoutDTO(redirectPayload redirect_, std::string priceId_)
        : redirect(redirect_)
        , priceId(std::move(priceId_)) {}

    friend bool operator==(const CreateCheckoutDTO&, const CreateCheckoutDTO&) = default;

    static const platform::RecordFields& recordFields();
};

/// How a checkout goes on.
struct QUILLBEAM_EXPORT CheckoutResponseDTO {
    bool subscriptionUpdated = false; ///< whether the subscription was changed at once, without a checkout page
    std::optional<std::string> checkoutPageURL{}; ///< the page to open, where there is something to pay

    CheckoutResponseDTO() = default;

    explicit CheckoutResponseDTO(bool subscriptionUpdated_, std::optional<std::string> checkoutPageURL_ = std::nullopt)
        : subscriptionUpdated(subscriptionUpdated_)
        , checkoutPageURL(std::move(checkoutPageURL_)) {}

    friend bool operator==(const CheckoutResponseDTO&, const CheckoutResponseDTO&) = default;

    static const platform::RecordFields& recordFields();
};

} // namespace QuillbeamAPI::inline v1::Components::Schemas

namespace QuillbeamAPI::inline v1::Operations {

/// `GET /subscriptions/packages`: lists the packages on sale in a country.
///
/// 200 `ok` with the packages. It needs no key.
namespace getSubscriptionPackages {

inline constexpr std::string_view id = "getSubscriptionPackages";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Query {
    std::string country_code{}; ///< ISO 3166-1 alpha-2; decides on the currency

    Query() = default;

    explicit Query(std::string country_code_)
        : country_code(std::move(country_code_)) {}

    friend bool operator==(const Query&, const Query&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Headers {
    using AcceptList = AcceptHeaders::AcceptList;

    std::optional<std::string> x_hyphen_app_hyphen_version{}; ///< "x-app-version": the calling application's version
    AcceptList accept = AcceptHeaders().accept;

    Headers() = default;

    explicit Headers(
        std::optional<std::string> x_hyphen_app_hyphen_version_, AcceptList accept_ = AcceptHeaders().accept
    )
        : x_hyphen_app_hyphen_version(std::move(x_hyphen_app_hyphen_version_))
        , accept(std::move(accept_)) {}

    friend bool operator==(const Headers&, const Headers&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Input {
    using Query = getSubscriptionPackages::Query;
    using Headers = getSubscriptionPackages::Headers;

    Query query{};
    Headers headers{};

    Input() = default;

    explicit Input(Query query_, Headers headers_ = Headers())
        : query(std::move(query_))
        , headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::SubscriptionPackagesResponseDTO>> {
    using Responses::Responses;
};

} // namespace getSubscriptionPackages

/// `GET /subscriptions`: reads the account's subscription.
///
/// 200 `ok` with the subscription, if there is one; 401 `unauthorized` without a valid key.
namespace getSubscription {

inline constexpr std::string_view id = "getSubscription";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;

    Headers headers{};

    Input() = default;

    explicit Input(Headers headers_)
        : headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::GetSubscriptionResponseDTO>, Unauthorized> {
    using Responses::Responses;
};

} // namespace getSubscription

/// `GET /subscriptions/manage`: gives the page on which the subscription is managed.
///
/// 200 `ok` with its address; 401 `unauthorized` without a valid key; 404 `notFound` without a subscription.
namespace getSubscriptionPortal {

inline constexpr std::string_view id = "getSubscriptionPortal";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Query {
    /// Where the portal leads when it is left.
    enum class redirectPayload { app, webOnboarding, webManage };

    std::optional<redirectPayload> redirect{};

    Query() = default;

    explicit Query(std::optional<redirectPayload> redirect_)
        : redirect(redirect_) {}

    friend bool operator==(const Query&, const Query&) = default;

    static const platform::RecordFields& recordFields();
};

struct QUILLBEAM_EXPORT Input {
    using Query = getSubscriptionPortal::Query;
    using Headers = AcceptHeaders;

    Query query{};
    Headers headers{};

    Input() = default;

    explicit Input(Query query_, Headers headers_ = Headers())
        : query(std::move(query_))
        , headers(std::move(headers_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output : public Responses<Output, Ok<Components::Schemas::SubscriptionPortalDTO>, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace getSubscriptionPortal

/// `POST /subscriptions/checkout`: begins to buy a package.
///
/// 201 `created` with the page to open, or the news that nothing is left to do; 400 `badRequest`; 401 `unauthorized`
/// without a valid key; 404 `notFound` for an unknown price.
namespace beginCheckout {

inline constexpr std::string_view id = "beginCheckout";

using AcceptableContentType = QuillbeamAPI::AcceptableContentType;

struct QUILLBEAM_EXPORT Input {
    using Headers = AcceptHeaders;
    using Body = JSONBody<Components::Schemas::CreateCheckoutDTO>;

    Headers headers{};
    Body body{};

    Input() = default;

    explicit Input(Body body_)
        : body(std::move(body_)) {}

    Input(Headers headers_, Body body_)
        : headers(std::move(headers_))
        , body(std::move(body_)) {}

    friend bool operator==(const Input&, const Input&) = default;

    static const platform::RecordFields& recordFields();
};

class Output
    : public Responses<Output, Created<Components::Schemas::CheckoutResponseDTO>, BadRequest, Unauthorized, NotFound> {
    using Responses::Responses;
};

} // namespace beginCheckout

} // namespace QuillbeamAPI::inline v1::Operations

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::SubscriptionPackageDTO::idPayload> {
    static constexpr std::string_view values[] = {
        "lite_monthly",
        "lite_annual",
        "pro_monthly",
        "pro_annual",
        "growth_monthly",
        "growth_annual",
        "lite_monthly_legacy",
        "lite_annual_legacy",
        "pro_monthly_legacy",
        "pro_annual_legacy",
        "growth_monthly_legacy",
        "growth_annual_legacy"
    };
};

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::SubscriptionPackageDTO::intervalPayload> {
    static constexpr std::string_view values[] = {"month", "year"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::UserSubscriptionDTO::storePayload> {
    static constexpr std::string_view values[] = {"appStore", "macAppStore", "stripe"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::UserSubscriptionDTO::statusPayload> {
    static constexpr std::string_view values[] = {"active", "canceled", "expired"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::UserSubscriptionDTO::planPayload> {
    static constexpr std::string_view values[] = {"lite", "pro", "growth"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Components::Schemas::CreateCheckoutDTO::redirectPayload> {
    static constexpr std::string_view values[] = {"app", "webOnboarding", "webManage"};
};

template <>
struct platform::RawValues<QuillbeamAPI::Operations::getSubscriptionPortal::Query::redirectPayload> {
    static constexpr std::string_view values[] = {"app", "webOnboarding", "webManage"};
};
