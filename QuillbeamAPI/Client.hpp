#pragma once

#include "OpenAPIRuntime/Conversion/Configuration.hpp"
#include "QuillbeamAPI/APIProtocol.hpp"
#include "platform/Export.hpp"
#include "platform/url/URL.hpp"

#include <memory>
#include <vector>

namespace OpenAPIRuntime::inline v1 {
class ClientMiddleware;
class ClientTransport;
class UniversalClient;
} // namespace OpenAPIRuntime::inline v1

namespace QuillbeamAPI::inline v1 {

/// The client of the service: one HTTP request a call.
///
///     QuillbeamAPI::Client client(QuillbeamAPI::Servers::Server1::url(), transport);
///     auto output = co_await client.getDomains();
///     for (const auto& domain : output.ok().body.json().domains) use(domain);
///
/// A value without a lifecycle: it is built once, holds no connection and needs no closing. Copies share the transport
/// and the middlewares.
///
/// Thread safety: any number of calls may run at once on one client, from any threads.
class QUILLBEAM_EXPORT Client final : public APIProtocol {
public:
    /// @param serverURL the address that every operation's path is appended to; see `Servers`
    /// @param transport carries the requests; shared, and called concurrently
    /// @param middlewares stand between the operations and the transport: the first sees a request first and its
    /// response
    ///        last; shared, and called concurrently
    Client(
        platform::URL serverURL,
        OpenAPIRuntime::Configuration configuration,
        std::shared_ptr<OpenAPIRuntime::ClientTransport> transport,
        std::vector<std::shared_ptr<OpenAPIRuntime::ClientMiddleware>> middlewares = {}
    );

    /// The same with the default configuration: dates without fractional seconds.
    Client(
        platform::URL serverURL,
        std::shared_ptr<OpenAPIRuntime::ClientTransport> transport,
        std::vector<std::shared_ptr<OpenAPIRuntime::ClientMiddleware>> middlewares = {}
    );

    Client(const Client&);
    Client& operator=(const Client&);
    ~Client() override;

    /// The pipeline that every operation goes through.
    [[nodiscard]] const OpenAPIRuntime::UniversalClient& client() const noexcept { return *client_; }

    using APIProtocol::beginCheckout;
    using APIProtocol::claimLegacyLinks;
    using APIProtocol::createAnonymousLink;
    using APIProtocol::createApiKey;
    using APIProtocol::createBulkLinks;
    using APIProtocol::createDomain;
    using APIProtocol::createLink;
    using APIProtocol::deleteApiKey;
    using APIProtocol::deleteDomain;
    using APIProtocol::deleteLink;
    using APIProtocol::getAccountPortal;
    using APIProtocol::getApiKeys;
    using APIProtocol::getDomain;
    using APIProtocol::getDomains;
    using APIProtocol::getLinkAnalytics;
    using APIProtocol::getLinkHistory;
    using APIProtocol::getSocialCardUploadUrl;
    using APIProtocol::getSubscription;
    using APIProtocol::getSubscriptionPackages;
    using APIProtocol::getSubscriptionPortal;
    using APIProtocol::getTags;
    using APIProtocol::getTierUsage;
    using APIProtocol::getUserInfo;
    using APIProtocol::importGoogleLinks;
    using APIProtocol::removeTag;
    using APIProtocol::updateDomain;
    using APIProtocol::updateLink;
    using APIProtocol::updateTag;

    platform::Task<Operations::getDomains::Output> getDomains(Operations::getDomains::Input input) override;
    platform::Task<Operations::createDomain::Output> createDomain(Operations::createDomain::Input input) override;
    platform::Task<Operations::getDomain::Output> getDomain(Operations::getDomain::Input input) override;
    platform::Task<Operations::updateDomain::Output> updateDomain(Operations::updateDomain::Input input) override;
    platform::Task<Operations::deleteDomain::Output> deleteDomain(Operations::deleteDomain::Input input) override;
    platform::Task<Operations::getSubscriptionPackages::Output>
    getSubscriptionPackages(Operations::getSubscriptionPackages::Input input) override;
    platform::Task<Operations::getSubscription::Output> getSubscription(Operations::getSubscription::Input input
    ) override;
    platform::Task<Operations::getSubscriptionPortal::Output>
    getSubscriptionPortal(Operations::getSubscriptionPortal::Input input) override;
    platform::Task<Operations::beginCheckout::Output> beginCheckout(Operations::beginCheckout::Input input) override;
    platform::Task<Operations::getLinkHistory::Output> getLinkHistory(Operations::getLinkHistory::Input input) override;
    platform::Task<Operations::createLink::Output> createLink(Operations::createLink::Input input) override;
    platform::Task<Operations::createAnonymousLink::Output>
    createAnonymousLink(Operations::createAnonymousLink::Input input) override;
    platform::Task<Operations::createBulkLinks::Output> createBulkLinks(Operations::createBulkLinks::Input input
    ) override;
    platform::Task<Operations::importGoogleLinks::Output> importGoogleLinks(Operations::importGoogleLinks::Input input
    ) override;
    platform::Task<Operations::updateLink::Output> updateLink(Operations::updateLink::Input input) override;
    platform::Task<Operations::deleteLink::Output> deleteLink(Operations::deleteLink::Input input) override;
    platform::Task<Operations::claimLegacyLinks::Output> claimLegacyLinks(Operations::claimLegacyLinks::Input input
    ) override;
    platform::Task<Operations::getLinkAnalytics::Output> getLinkAnalytics(Operations::getLinkAnalytics::Input input
    ) override;
    platform::Task<Operations::getTags::Output> getTags(Operations::getTags::Input input) override;
    platform::Task<Operations::updateTag::Output> updateTag(Operations::updateTag::Input input) override;
    platform::Task<Operations::removeTag::Output> removeTag(Operations::removeTag::Input input) override;
    platform::Task<Operations::getAccountPortal::Output> getAccountPortal(Operations::getAccountPortal::Input input
    ) override;
    platform::Task<Operations::getTierUsage::Output> getTierUsage(Operations::getTierUsage::Input input) override;
    platform::Task<Operations::getUserInfo::Output> getUserInfo(Operations::getUserInfo::Input input) override;
    platform::Task<Operations::getApiKeys::Output> getApiKeys(Operations::getApiKeys::Input input) override;
    platform::Task<Operations::createApiKey::Output> createApiKey(Operations::createApiKey::Input input) override;
    platform::Task<Operations::deleteApiKey::Output> deleteApiKey(Operations::deleteApiKey::Input input) override;
    platform::Task<Operations::getSocialCardUploadUrl::Output>
    getSocialCardUploadUrl(Operations::getSocialCardUploadUrl::Input input) override;

private:
    std::shared_ptr<const OpenAPIRuntime::UniversalClient> client_;
};

} // namespace QuillbeamAPI::inline v1
