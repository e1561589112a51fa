#pragma once

#include "platform/Export.hpp"
#include "platform/concurrency/Task.hpp"

/// The service as an abstract interface, and the index of its operations.
///
/// Its header names every operation and includes none of them: an application includes the headers of the resources it
/// calls, such as `QuillbeamAPI/Domains.hpp`, beside `QuillbeamAPI/Client.hpp`.
namespace QuillbeamAPI::inline v1 {

struct AcceptHeaders;
template <class Schema>
class JSONBody;

namespace Components {
/// The service's records; see the headers of the resources.
namespace Schemas {
struct BulkCreateLinksDTO;
struct ClaimLinksDTO;
struct CreateApiKeyDTO;
struct CreateCheckoutDTO;
struct CreateDomainDTO;
struct CreateLinkDTO;
struct EditLinkDTO;
struct TagDTO;
struct UpdateDomainDTO;
} // namespace Schemas

/// Empty: the service shares no parameters, request bodies, responses or headers between its operations.
namespace Parameters {}

namespace RequestBodies {}

namespace Responses {}

namespace Headers {}
} // namespace Components

namespace Operations {
namespace getDomains {
struct Input;
class Output;
} // namespace getDomains

namespace createDomain {
struct Input;
class Output;
} // namespace createDomain

namespace getDomain {
struct Path;
struct Input;
class Output;
} // namespace getDomain

namespace updateDomain {
struct Path;
struct Input;
class Output;
} // namespace updateDomain

namespace deleteDomain {
struct Path;
struct Input;
class Output;
} // namespace deleteDomain

namespace getSubscriptionPackages {
struct Query;
struct Headers;
struct Input;
class Output;
} // namespace getSubscriptionPackages

namespace getSubscription {
struct Input;
class Output;
} // namespace getSubscription

namespace getSubscriptionPortal {
struct Query;
struct Input;
class Output;
} // namespace getSubscriptionPortal

namespace beginCheckout {
struct Input;
class Output;
} // namespace beginCheckout

namespace getLinkHistory {
struct Query;
struct Input;
class Output;
} // namespace getLinkHistory

namespace createLink {
struct Input;
class Output;
} // namespace createLink

namespace createAnonymousLink {
struct Input;
class Output;
} // namespace createAnonymousLink

namespace createBulkLinks {
struct Input;
class Output;
} // namespace createBulkLinks

namespace importGoogleLinks {
struct Input;
class Output;
} // namespace importGoogleLinks

namespace updateLink {
struct Path;
struct Input;
class Output;
} // namespace updateLink

namespace deleteLink {
struct Path;
struct Input;
class Output;
} // namespace deleteLink

namespace claimLegacyLinks {
struct Input;
class Output;
} // namespace claimLegacyLinks

namespace getLinkAnalytics {
struct Path;
struct Query;
struct Input;
class Output;
} // namespace getLinkAnalytics

namespace getTags {
struct Input;
class Output;
} // namespace getTags

namespace updateTag {
struct Path;
struct Input;
class Output;
} // namespace updateTag

namespace removeTag {
struct Path;
struct Input;
class Output;
} // namespace removeTag

namespace getAccountPortal {
struct Input;
class Output;
} // namespace getAccountPortal

namespace getTierUsage {
struct Input;
class Output;
} // namespace getTierUsage

namespace getUserInfo {
struct Input;
class Output;
} // namespace getUserInfo

namespace getApiKeys {
struct Input;
class Output;
} // namespace getApiKeys

namespace createApiKey {
struct Input;
class Output;
} // namespace createApiKey

namespace deleteApiKey {
struct Path;
struct Input;
class Output;
} // namespace deleteApiKey

namespace getSocialCardUploadUrl {
struct Input;
class Output;
} // namespace getSocialCardUploadUrl
} // namespace Operations

/// The operations of the service. `Client` implements them over HTTP; an application that wants to be tested without a
/// server takes an `APIProtocol&` and hands in an implementation of its own.
///
/// An operation takes its `Input`. Beside each stands a convenience form that takes the parts of the input as separate
/// arguments, in the input's order, with and without the headers, which have defaults; where nothing is required, a
/// form without arguments. All forms return a task that does nothing until it is awaited. The task fails with
/// `OpenAPIRuntime::ClientError`, and with nothing else; a status that the service does not document is no failure but
/// the output's `Undocumented` case.
///
/// An implementing class brings the convenience forms into its own scope with `using APIProtocol::getDomains;` and so
/// on.
///
/// Thread safety: implementations are called from any number of threads at once.
class QUILLBEAM_EXPORT APIProtocol {
public:
    virtual ~APIProtocol();

    // --- QuillbeamAPI/Domains.hpp

    /// Lists the account's domains.
    virtual platform::Task<Operations::getDomains::Output> getDomains(Operations::getDomains::Input input) = 0;
    platform::Task<Operations::getDomains::Output> getDomains();
    platform::Task<Operations::getDomains::Output> getDomains(AcceptHeaders headers);

    /// Adds a domain to the account.
    virtual platform::Task<Operations::createDomain::Output> createDomain(Operations::createDomain::Input input) = 0;
    platform::Task<Operations::createDomain::Output> createDomain(JSONBody<Components::Schemas::CreateDomainDTO> body);
    platform::Task<Operations::createDomain::Output>
    createDomain(AcceptHeaders headers, JSONBody<Components::Schemas::CreateDomainDTO> body);

    /// Reads one domain.
    virtual platform::Task<Operations::getDomain::Output> getDomain(Operations::getDomain::Input input) = 0;
    platform::Task<Operations::getDomain::Output> getDomain(Operations::getDomain::Path path);
    platform::Task<Operations::getDomain::Output> getDomain(Operations::getDomain::Path path, AcceptHeaders headers);

    /// Changes the settings of a custom domain.
    virtual platform::Task<Operations::updateDomain::Output> updateDomain(Operations::updateDomain::Input input) = 0;
    platform::Task<Operations::updateDomain::Output>
    updateDomain(Operations::updateDomain::Path path, JSONBody<Components::Schemas::UpdateDomainDTO> body);
    platform::Task<Operations::updateDomain::Output> updateDomain(
        Operations::updateDomain::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::UpdateDomainDTO> body
    );

    /// Removes a domain from the account.
    virtual platform::Task<Operations::deleteDomain::Output> deleteDomain(Operations::deleteDomain::Input input) = 0;
    platform::Task<Operations::deleteDomain::Output> deleteDomain(Operations::deleteDomain::Path path);
    platform::Task<Operations::deleteDomain::Output>
    deleteDomain(Operations::deleteDomain::Path path, AcceptHeaders headers);

    // --- QuillbeamAPI/Subscriptions.hpp

    /// Lists the packages on sale in a country.
    virtual platform::Task<Operations::getSubscriptionPackages::Output>
    getSubscriptionPackages(Operations::getSubscriptionPackages::Input input) = 0;
    platform::Task<Operations::getSubscriptionPackages::Output>
    getSubscriptionPackages(Operations::getSubscriptionPackages::Query query);
    platform::Task<Operations::getSubscriptionPackages::Output> getSubscriptionPackages(
        Operations::getSubscriptionPackages::Query query, Operations::getSubscriptionPackages::Headers headers
    );

    /// Reads the account's subscription.
    virtual platform::Task<Operations::getSubscription::Output> getSubscription(Operations::getSubscription::Input input
    ) = 0;
    platform::Task<Operations::getSubscription::Output> getSubscription();
    platform::Task<Operations::getSubscription::Output> getSubscription(AcceptHeaders headers);

    /// Gives the page on which the subscription is managed.
    virtual platform::Task<Operations::getSubscriptionPortal::Output>
    getSubscriptionPortal(Operations::getSubscriptionPortal::Input input) = 0;
    platform::Task<Operations::getSubscriptionPortal::Output> getSubscriptionPortal();
    platform::Task<Operations::getSubscriptionPortal::Output>
    getSubscriptionPortal(Operations::getSubscriptionPortal::Query query);
    platform::Task<Operations::getSubscriptionPortal::Output>
    getSubscriptionPortal(Operations::getSubscriptionPortal::Query query, AcceptHeaders headers);

    /// Begins to buy a package.
    virtual platform::Task<Operations::beginCheckout::Output> beginCheckout(Operations::beginCheckout::Input input) = 0;
    platform::Task<Operations::beginCheckout::Output>
    beginCheckout(JSONBody<Components::Schemas::CreateCheckoutDTO> body);
    platform::Task<Operations::beginCheckout::Output>
    beginCheckout(AcceptHeaders headers, JSONBody<Components::Schemas::CreateCheckoutDTO> body);

    // --- QuillbeamAPI/Links.hpp

    /// Lists the account's links, filtered by text and tags.
    virtual platform::Task<Operations::getLinkHistory::Output> getLinkHistory(Operations::getLinkHistory::Input input
    ) = 0;
    platform::Task<Operations::getLinkHistory::Output> getLinkHistory(); ///< without a filter
    platform::Task<Operations::getLinkHistory::Output> getLinkHistory(Operations::getLinkHistory::Query query);
    platform::Task<Operations::getLinkHistory::Output>
    getLinkHistory(Operations::getLinkHistory::Query query, AcceptHeaders headers);

    /// Makes a link.
    virtual platform::Task<Operations::createLink::Output> createLink(Operations::createLink::Input input) = 0;
    platform::Task<Operations::createLink::Output> createLink(JSONBody<Components::Schemas::CreateLinkDTO> body);
    platform::Task<Operations::createLink::Output>
    createLink(AcceptHeaders headers, JSONBody<Components::Schemas::CreateLinkDTO> body);

    /// Makes a link without an account.
    virtual platform::Task<Operations::createAnonymousLink::Output>
    createAnonymousLink(Operations::createAnonymousLink::Input input) = 0;
    platform::Task<Operations::createAnonymousLink::Output>
    createAnonymousLink(JSONBody<Components::Schemas::CreateLinkDTO> body);
    platform::Task<Operations::createAnonymousLink::Output>
    createAnonymousLink(AcceptHeaders headers, JSONBody<Components::Schemas::CreateLinkDTO> body);

    /// Makes several links, all of them or none.
    virtual platform::Task<Operations::createBulkLinks::Output> createBulkLinks(Operations::createBulkLinks::Input input
    ) = 0;
    platform::Task<Operations::createBulkLinks::Output>
    createBulkLinks(JSONBody<Components::Schemas::BulkCreateLinksDTO> body);
    platform::Task<Operations::createBulkLinks::Output>
    createBulkLinks(AcceptHeaders headers, JSONBody<Components::Schemas::BulkCreateLinksDTO> body);

    /// Imports links of another service.
    virtual platform::Task<Operations::importGoogleLinks::Output>
    importGoogleLinks(Operations::importGoogleLinks::Input input) = 0;
    platform::Task<Operations::importGoogleLinks::Output>
    importGoogleLinks(JSONBody<Components::Schemas::ClaimLinksDTO> body);
    platform::Task<Operations::importGoogleLinks::Output>
    importGoogleLinks(AcceptHeaders headers, JSONBody<Components::Schemas::ClaimLinksDTO> body);

    /// Changes a link.
    virtual platform::Task<Operations::updateLink::Output> updateLink(Operations::updateLink::Input input) = 0;
    platform::Task<Operations::updateLink::Output>
    updateLink(Operations::updateLink::Path path, JSONBody<Components::Schemas::EditLinkDTO> body);
    platform::Task<Operations::updateLink::Output> updateLink(
        Operations::updateLink::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::EditLinkDTO> body
    );

    /// Deletes a link.
    virtual platform::Task<Operations::deleteLink::Output> deleteLink(Operations::deleteLink::Input input) = 0;
    platform::Task<Operations::deleteLink::Output> deleteLink(Operations::deleteLink::Path path);
    platform::Task<Operations::deleteLink::Output> deleteLink(Operations::deleteLink::Path path, AcceptHeaders headers);

    /// Moves links that were made without an account into the account.
    virtual platform::Task<Operations::claimLegacyLinks::Output>
    claimLegacyLinks(Operations::claimLegacyLinks::Input input) = 0;
    platform::Task<Operations::claimLegacyLinks::Output>
    claimLegacyLinks(JSONBody<Components::Schemas::ClaimLinksDTO> body);
    platform::Task<Operations::claimLegacyLinks::Output>
    claimLegacyLinks(AcceptHeaders headers, JSONBody<Components::Schemas::ClaimLinksDTO> body);

    // --- QuillbeamAPI/Analytics.hpp

    /// Reads a link's clicks in a range of time.
    virtual platform::Task<Operations::getLinkAnalytics::Output>
    getLinkAnalytics(Operations::getLinkAnalytics::Input input) = 0;
    platform::Task<Operations::getLinkAnalytics::Output>
    getLinkAnalytics(Operations::getLinkAnalytics::Path path, Operations::getLinkAnalytics::Query query);
    platform::Task<Operations::getLinkAnalytics::Output> getLinkAnalytics(
        Operations::getLinkAnalytics::Path path, Operations::getLinkAnalytics::Query query, AcceptHeaders headers
    );

    // --- QuillbeamAPI/Tags.hpp

    /// Lists the account's tags.
    virtual platform::Task<Operations::getTags::Output> getTags(Operations::getTags::Input input) = 0;
    platform::Task<Operations::getTags::Output> getTags();
    platform::Task<Operations::getTags::Output> getTags(AcceptHeaders headers);

    /// Renames a tag.
    virtual platform::Task<Operations::updateTag::Output> updateTag(Operations::updateTag::Input input) = 0;
    platform::Task<Operations::updateTag::Output>
    updateTag(Operations::updateTag::Path path, JSONBody<Components::Schemas::TagDTO> body);
    platform::Task<Operations::updateTag::Output>
    updateTag(Operations::updateTag::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::TagDTO> body);

    /// Removes a tag from the account and its links.
    virtual platform::Task<Operations::removeTag::Output> removeTag(Operations::removeTag::Input input) = 0;
    platform::Task<Operations::removeTag::Output> removeTag(Operations::removeTag::Path path);
    platform::Task<Operations::removeTag::Output> removeTag(Operations::removeTag::Path path, AcceptHeaders headers);

    // --- QuillbeamAPI/Users.hpp

    /// Gives the page on which the account is managed.
    virtual platform::Task<Operations::getAccountPortal::Output>
    getAccountPortal(Operations::getAccountPortal::Input input) = 0;
    platform::Task<Operations::getAccountPortal::Output> getAccountPortal();
    platform::Task<Operations::getAccountPortal::Output> getAccountPortal(AcceptHeaders headers);

    /// Reads what the account used of its plan's limits.
    virtual platform::Task<Operations::getTierUsage::Output> getTierUsage(Operations::getTierUsage::Input input) = 0;
    platform::Task<Operations::getTierUsage::Output> getTierUsage();
    platform::Task<Operations::getTierUsage::Output> getTierUsage(AcceptHeaders headers);

    /// Reads the user's own data.
    virtual platform::Task<Operations::getUserInfo::Output> getUserInfo(Operations::getUserInfo::Input input) = 0;
    platform::Task<Operations::getUserInfo::Output> getUserInfo();
    platform::Task<Operations::getUserInfo::Output> getUserInfo(AcceptHeaders headers);

    // --- QuillbeamAPI/APIKeys.hpp

    /// Lists the account's API keys.
    virtual platform::Task<Operations::getApiKeys::Output> getApiKeys(Operations::getApiKeys::Input input) = 0;
    platform::Task<Operations::getApiKeys::Output> getApiKeys();
    platform::Task<Operations::getApiKeys::Output> getApiKeys(AcceptHeaders headers);

    /// Makes an API key.
    virtual platform::Task<Operations::createApiKey::Output> createApiKey(Operations::createApiKey::Input input) = 0;
    platform::Task<Operations::createApiKey::Output> createApiKey(JSONBody<Components::Schemas::CreateApiKeyDTO> body);
    platform::Task<Operations::createApiKey::Output>
    createApiKey(AcceptHeaders headers, JSONBody<Components::Schemas::CreateApiKeyDTO> body);

    /// Deletes an API key, which stops working at once.
    virtual platform::Task<Operations::deleteApiKey::Output> deleteApiKey(Operations::deleteApiKey::Input input) = 0;
    platform::Task<Operations::deleteApiKey::Output> deleteApiKey(Operations::deleteApiKey::Path path);
    platform::Task<Operations::deleteApiKey::Output>
    deleteApiKey(Operations::deleteApiKey::Path path, AcceptHeaders headers);

    // --- QuillbeamAPI/Images.hpp

    /// Gives an address to upload an image to, for a link's social preview.
    virtual platform::Task<Operations::getSocialCardUploadUrl::Output>
    getSocialCardUploadUrl(Operations::getSocialCardUploadUrl::Input input) = 0;
    platform::Task<Operations::getSocialCardUploadUrl::Output> getSocialCardUploadUrl();
    platform::Task<Operations::getSocialCardUploadUrl::Output> getSocialCardUploadUrl(AcceptHeaders headers);

protected:
    APIProtocol() = default;
    APIProtocol(const APIProtocol&) = default;
    APIProtocol& operator=(const APIProtocol&) = default;
};

} // namespace QuillbeamAPI::inline v1
