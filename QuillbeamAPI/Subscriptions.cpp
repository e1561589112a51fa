#include "QuillbeamAPI/Subscriptions.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& SubscriptionPackageDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "SubscriptionPackageDTO",
        field("id", &SubscriptionPackageDTO::id),
        field("interval", &SubscriptionPackageDTO::interval),
        field("priceId", &SubscriptionPackageDTO::priceId),
        field("productId", &SubscriptionPackageDTO::productId),
        field("currency", &SubscriptionPackageDTO::currency),
        field("amount", &SubscriptionPackageDTO::amount)
    );
    return table;
}

const platform::RecordFields& SubscriptionPackagesResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "SubscriptionPackagesResponseDTO", field("packages", &SubscriptionPackagesResponseDTO::packages)
    );
    return table;
}

const platform::RecordFields& UserSubscriptionDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "UserSubscriptionDTO",
        field("store", &UserSubscriptionDTO::store),
        field("status", &UserSubscriptionDTO::status),
        field("plan", &UserSubscriptionDTO::plan),
        field("id", &UserSubscriptionDTO::id),
        field("expirationDate", &UserSubscriptionDTO::expirationDate)
    );
    return table;
}

const platform::RecordFields& GetSubscriptionResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "GetSubscriptionResponseDTO", field("subscription", &GetSubscriptionResponseDTO::subscription)
    );
    return table;
}

const platform::RecordFields& SubscriptionPortalDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("SubscriptionPortalDTO", field("url", &SubscriptionPortalDTO::url));
    return table;
}

const platform::RecordFields& CreateCheckoutDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "CreateCheckoutDTO",
        field("redirect", &CreateCheckoutDTO::redirect),
        field("priceId", &CreateCheckoutDTO::priceId)
    );
    return table;
}

const platform::RecordFields& CheckoutResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "CheckoutResponseDTO",
        field("subscriptionUpdated", &CheckoutResponseDTO::subscriptionUpdated),
        field("checkoutPageURL", &CheckoutResponseDTO::checkoutPageURL)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getSubscriptionPackages::Query::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Query", field("country_code", &getSubscriptionPackages::Query::country_code)
    );
    return table;
}

const platform::RecordFields& getSubscriptionPackages::Headers::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Headers",
        field(
            "x-app-version",
            &getSubscriptionPackages::Headers::x_hyphen_app_hyphen_version,
            "x_hyphen_app_hyphen_version"
        ),
        field("accept", &getSubscriptionPackages::Headers::accept)
    );
    return table;
}

const platform::RecordFields& getSubscriptionPackages::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getSubscriptionPackages.Input",
        field("query", &getSubscriptionPackages::Input::query),
        field("headers", &getSubscriptionPackages::Input::headers)
    );
    return table;
}

const platform::RecordFields& getSubscription::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getSubscription.Input", field("headers", &getSubscription::Input::headers)
    );
    return table;
}

const platform::RecordFields& getSubscriptionPortal::Query::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Query", field("redirect", &getSubscriptionPortal::Query::redirect));
    return table;
}

const platform::RecordFields& getSubscriptionPortal::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getSubscriptionPortal.Input",
        field("query", &getSubscriptionPortal::Input::query),
        field("headers", &getSubscriptionPortal::Input::headers)
    );
    return table;
}

const platform::RecordFields& beginCheckout::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "beginCheckout.Input",
        field("headers", &beginCheckout::Input::headers),
        field("body", &beginCheckout::Input::body)
    );
    return table;
}

} // namespace Operations

// --- getSubscriptionPackages

platform::Task<Operations::getSubscriptionPackages::Output>
Client::getSubscriptionPackages(Operations::getSubscriptionPackages::Input input) {
    return detail::call<Operations::getSubscriptionPackages::Output>(
        *client_,
        {Operations::getSubscriptionPackages::id, HTTPTypes::HTTPRequest::Method::get, "/subscriptions/packages"},
        std::move(input)
    );
}

platform::Task<Operations::getSubscriptionPackages::Output>
APIProtocol::getSubscriptionPackages(Operations::getSubscriptionPackages::Query query) {
    return getSubscriptionPackages(Operations::getSubscriptionPackages::Input(std::move(query)));
}

platform::Task<Operations::getSubscriptionPackages::Output> APIProtocol::getSubscriptionPackages(
    Operations::getSubscriptionPackages::Query query, Operations::getSubscriptionPackages::Headers headers
) {
    return getSubscriptionPackages(Operations::getSubscriptionPackages::Input(std::move(query), std::move(headers)));
}

// --- getSubscription

platform::Task<Operations::getSubscription::Output> Client::getSubscription(Operations::getSubscription::Input input) {
    return detail::call<Operations::getSubscription::Output>(
        *client_,
        {Operations::getSubscription::id, HTTPTypes::HTTPRequest::Method::get, "/subscriptions"},
        std::move(input)
    );
}

platform::Task<Operations::getSubscription::Output> APIProtocol::getSubscription() {
    return getSubscription(Operations::getSubscription::Input());
}

platform::Task<Operations::getSubscription::Output> APIProtocol::getSubscription(AcceptHeaders headers) {
    return getSubscription(Operations::getSubscription::Input(std::move(headers)));
}

// --- getSubscriptionPortal

platform::Task<Operations::getSubscriptionPortal::Output>
Client::getSubscriptionPortal(Operations::getSubscriptionPortal::Input input) {
    return detail::call<Operations::getSubscriptionPortal::Output>(
        *client_,
        {Operations::getSubscriptionPortal::id, HTTPTypes::HTTPRequest::Method::get, "/subscriptions/manage"},
        std::move(input)
    );
}

platform::Task<Operations::getSubscriptionPortal::Output> APIProtocol::getSubscriptionPortal() {
    return getSubscriptionPortal(Operations::getSubscriptionPortal::Input());
}

platform::Task<Operations::getSubscriptionPortal::Output>
APIProtocol::getSubscriptionPortal(Operations::getSubscriptionPortal::Query query) {
    return getSubscriptionPortal(Operations::getSubscriptionPortal::Input(std::move(query)));
}

platform::Task<Operations::getSubscriptionPortal::Output>
APIProtocol::getSubscriptionPortal(Operations::getSubscriptionPortal::Query query, AcceptHeaders headers) {
    return getSubscriptionPortal(Operations::getSubscriptionPortal::Input(std::move(query), std::move(headers)));
}

// --- beginCheckout

platform::Task<Operations::beginCheckout::Output> Client::beginCheckout(Operations::beginCheckout::Input input) {
    return detail::call<Operations::beginCheckout::Output>(
        *client_,
        {Operations::beginCheckout::id, HTTPTypes::HTTPRequest::Method::post, "/subscriptions/checkout"},
        std::move(input)
    );
}

platform::Task<Operations::beginCheckout::Output>
APIProtocol::beginCheckout(JSONBody<Components::Schemas::CreateCheckoutDTO> body) {
    return beginCheckout(Operations::beginCheckout::Input(std::move(body)));
}

platform::Task<Operations::beginCheckout::Output>
APIProtocol::beginCheckout(AcceptHeaders headers, JSONBody<Components::Schemas::CreateCheckoutDTO> body) {
    return beginCheckout(Operations::beginCheckout::Input(std::move(headers), std::move(body)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getSubscriptionPackages::Output&);
template void detail::failExpecting(std::string_view, const Operations::getSubscription::Output&);
template void detail::failExpecting(std::string_view, const Operations::getSubscriptionPortal::Output&);
template void detail::failExpecting(std::string_view, const Operations::beginCheckout::Output&);

} // namespace QuillbeamAPI::inline v1
