#include "QuillbeamAPI/Links.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& RegionRedirect::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "RegionRedirect", field("countryCode", &RegionRedirect::countryCode), field("url", &RegionRedirect::url)
    );
    return table;
}

const platform::RecordFields& LinkDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "LinkDTO",
        field("id", &LinkDTO::id),
        field("createdAt", &LinkDTO::createdAt),
        field("destinationUrl", &LinkDTO::destinationUrl),
        field("title", &LinkDTO::title),
        field("description", &LinkDTO::description),
        field("imageUrl", &LinkDTO::imageUrl),
        field("slug", &LinkDTO::slug),
        field("domain", &LinkDTO::domain),
        field("shortUrl", &LinkDTO::shortUrl),
        field("clickCount", &LinkDTO::clickCount),
        field("tags", &LinkDTO::tags),
        field("utmSource", &LinkDTO::utmSource),
        field("utmMedium", &LinkDTO::utmMedium),
        field("utmCampaign", &LinkDTO::utmCampaign),
        field("utmTerm", &LinkDTO::utmTerm),
        field("utmContent", &LinkDTO::utmContent),
        field("iosRedirectUrl", &LinkDTO::iosRedirectUrl),
        field("androidRedirectUrl", &LinkDTO::androidRedirectUrl),
        field("regionRedirects", &LinkDTO::regionRedirects),
        field("expireAt", &LinkDTO::expireAt),
        field("expirationRedirect", &LinkDTO::expirationRedirect)
    );
    return table;
}

const platform::RecordFields& LinkHistoryDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "LinkHistoryDTO", field("links", &LinkHistoryDTO::links), field("tags", &LinkHistoryDTO::tags)
    );
    return table;
}

const platform::RecordFields& CreateLinkDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "CreateLinkDTO",
        field("tags", &CreateLinkDTO::tags),
        field("regionRedirects", &CreateLinkDTO::regionRedirects),
        field("expireAt", &CreateLinkDTO::expireAt),
        field("destinationUrl", &CreateLinkDTO::destinationUrl),
        field("domain", &CreateLinkDTO::domain),
        field("slug", &CreateLinkDTO::slug),
        field("utmSource", &CreateLinkDTO::utmSource),
        field("utmMedium", &CreateLinkDTO::utmMedium),
        field("utmCampaign", &CreateLinkDTO::utmCampaign),
        field("utmTerm", &CreateLinkDTO::utmTerm),
        field("utmContent", &CreateLinkDTO::utmContent),
        field("title", &CreateLinkDTO::title),
        field("description", &CreateLinkDTO::description),
        field("imageUrl", &CreateLinkDTO::imageUrl),
        field("iosRedirectUrl", &CreateLinkDTO::iosRedirectUrl),
        field("androidRedirectUrl", &CreateLinkDTO::androidRedirectUrl),
        field("expirationRedirectUrl", &CreateLinkDTO::expirationRedirectUrl)
    );
    return table;
}

const platform::RecordFields& EditLinkDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "EditLinkDTO",
        field("regionRedirects", &EditLinkDTO::regionRedirects),
        field("expireAt", &EditLinkDTO::expireAt),
        field("destinationUrl", &EditLinkDTO::destinationUrl),
        field("tags", &EditLinkDTO::tags),
        field("utmSource", &EditLinkDTO::utmSource),
        field("utmMedium", &EditLinkDTO::utmMedium),
        field("utmCampaign", &EditLinkDTO::utmCampaign),
        field("utmTerm", &EditLinkDTO::utmTerm),
        field("utmContent", &EditLinkDTO::utmContent),
        field("title", &EditLinkDTO::title),
        field("description", &EditLinkDTO::description),
        field("imageUrl", &EditLinkDTO::imageUrl),
        field("iosRedirectUrl", &EditLinkDTO::iosRedirectUrl),
        field("androidRedirectUrl", &EditLinkDTO::androidRedirectUrl),
        field("expirationRedirectUrl", &EditLinkDTO::expirationRedirectUrl)
    );
    return table;
}

const platform::RecordFields& AnonymousLinkResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "AnonymousLinkResponseDTO",
        field("link", &AnonymousLinkResponseDTO::link),
        field("claimToken", &AnonymousLinkResponseDTO::claimToken)
    );
    return table;
}

const platform::RecordFields& BulkCreateLinksDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("BulkCreateLinksDTO", field("links", &BulkCreateLinksDTO::links));
    return table;
}

const platform::RecordFields& BulkCreateLinksResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "BulkCreateLinksResponseDTO", field("links", &BulkCreateLinksResponseDTO::links)
    );
    return table;
}

const platform::RecordFields& ClaimLinksDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("ClaimLinksDTO", field("links", &ClaimLinksDTO::links));
    return table;
}

const platform::RecordFields& GoogleImportLinkDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "GoogleImportLinkDTO",
        field("originalUrl", &GoogleImportLinkDTO::originalUrl),
        field("newUrl", &GoogleImportLinkDTO::newUrl)
    );
    return table;
}

const platform::RecordFields& GoogleImportResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "GoogleImportResponseDTO", field("importedLinks", &GoogleImportResponseDTO::importedLinks)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getLinkHistory::Query::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "Query",
        field("query", &getLinkHistory::Query::query),
        field("tags", &getLinkHistory::Query::tags),
        field("tagIds", &getLinkHistory::Query::tagIds)
    );
    return table;
}

const platform::RecordFields& getLinkHistory::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getLinkHistory.Input",
        field("query", &getLinkHistory::Input::query),
        field("headers", &getLinkHistory::Input::headers)
    );
    return table;
}

const platform::RecordFields& createLink::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "createLink.Input", field("headers", &createLink::Input::headers), field("body", &createLink::Input::body)
    );
    return table;
}

const platform::RecordFields& createAnonymousLink::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "createAnonymousLink.Input",
        field("headers", &createAnonymousLink::Input::headers),
        field("body", &createAnonymousLink::Input::body)
    );
    return table;
}

const platform::RecordFields& createBulkLinks::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "createBulkLinks.Input",
        field("headers", &createBulkLinks::Input::headers),
        field("body", &createBulkLinks::Input::body)
    );
    return table;
}

const platform::RecordFields& importGoogleLinks::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "importGoogleLinks.Input",
        field("headers", &importGoogleLinks::Input::headers),
        field("body", &importGoogleLinks::Input::body)
    );
    return table;
}

const platform::RecordFields& updateLink::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &updateLink::Path::id));
    return table;
}

const platform::RecordFields& updateLink::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "updateLink.Input",
        field("path", &updateLink::Input::path),
        field("headers", &updateLink::Input::headers),
        field("body", &updateLink::Input::body)
    );
    return table;
}

const platform::RecordFields& deleteLink::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &deleteLink::Path::id));
    return table;
}

const platform::RecordFields& deleteLink::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "deleteLink.Input", field("path", &deleteLink::Input::path), field("headers", &deleteLink::Input::headers)
    );
    return table;
}

const platform::RecordFields& claimLegacyLinks::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "claimLegacyLinks.Input",
        field("headers", &claimLegacyLinks::Input::headers),
        field("body", &claimLegacyLinks::Input::body)
    );
    return table;
}

} // namespace Operations

// --- getLinkHistory

platform::Task<Operations::getLinkHistory::Output> Client::getLinkHistory(Operations::getLinkHistory::Input input) {
    return detail::call<Operations::getLinkHistory::Output>(
        *client_, {Operations::getLinkHistory::id, HTTPTypes::HTTPRequest::Method::get, "/links"}, std::move(input)
    );
}

platform::Task<Operations::getLinkHistory::Output> APIProtocol::getLinkHistory() {
    return getLinkHistory(Operations::getLinkHistory::Input());
}

platform::Task<Operations::getLinkHistory::Output> APIProtocol::getLinkHistory(Operations::getLinkHistory::Query query
) {
    return getLinkHistory(Operations::getLinkHistory::Input(std::move(query)));
}

platform::Task<Operations::getLinkHistory::Output>
APIProtocol::getLinkHistory(Operations::getLinkHistory::Query query, AcceptHeaders headers) {
    return getLinkHistory(Operations::getLinkHistory::Input(std::move(query), std::move(headers)));
}

// --- createLink

platform::Task<Operations::createLink::Output> Client::createLink(Operations::createLink::Input input) {
    return detail::call<Operations::createLink::Output>(
        *client_, {Operations::createLink::id, HTTPTypes::HTTPRequest::Method::post, "/links"}, std::move(input)
    );
}

platform::Task<Operations::createLink::Output> APIProtocol::createLink(JSONBody<Components::Schemas::CreateLinkDTO> body
) {
    return createLink(Operations::createLink::Input(std::move(body)));
}

platform::Task<Operations::createLink::Output>
APIProtocol::createLink(AcceptHeaders headers, JSONBody<Components::Schemas::CreateLinkDTO> body) {
    return createLink(Operations::createLink::Input(std::move(headers), std::move(body)));
}

// --- createAnonymousLink

platform::Task<Operations::createAnonymousLink::Output>
Client::createAnonymousLink(Operations::createAnonymousLink::Input input) {
    return detail::call<Operations::createAnonymousLink::Output>(
        *client_,
        {Operations::createAnonymousLink::id, HTTPTypes::HTTPRequest::Method::post, "/links/public"},
        std::move(input)
    );
}

platform::Task<Operations::createAnonymousLink::Output>
APIProtocol::createAnonymousLink(JSONBody<Components::Schemas::CreateLinkDTO> body) {
    return createAnonymousLink(Operations::createAnonymousLink::Input(std::move(body)));
}

platform::Task<Operations::createAnonymousLink::Output>
APIProtocol::createAnonymousLink(AcceptHeaders headers, JSONBody<Components::Schemas::CreateLinkDTO> body) {
    return createAnonymousLink(Operations::createAnonymousLink::Input(std::move(headers), std::move(body)));
}

// --- createBulkLinks

platform::Task<Operations::createBulkLinks::Output> Client::createBulkLinks(Operations::createBulkLinks::Input input) {
    return detail::call<Operations::createBulkLinks::Output>(
        *client_,
        {Operations::createBulkLinks::id, HTTPTypes::HTTPRequest::Method::post, "/links/bulk"},
        std::move(input)
    );
}

platform::Task<Operations::createBulkLinks::Output>
APIProtocol::createBulkLinks(JSONBody<Components::Schemas::BulkCreateLinksDTO> body) {
    return createBulkLinks(Operations::createBulkLinks::Input(std::move(body)));
}

platform::Task<Operations::createBulkLinks::Output>
APIProtocol::createBulkLinks(AcceptHeaders headers, JSONBody<Components::Schemas::BulkCreateLinksDTO> body) {
    return createBulkLinks(Operations::createBulkLinks::Input(std::move(headers), std::move(body)));
}

// --- importGoogleLinks

platform::Task<Operations::importGoogleLinks::Output>
Client::importGoogleLinks(Operations::importGoogleLinks::Input input) {
    return detail::call<Operations::importGoogleLinks::Output>(
        *client_,
        {Operations::importGoogleLinks::id, HTTPTypes::HTTPRequest::Method::post, "/links/google-import"},
        std::move(input)
    );
}

platform::Task<Operations::importGoogleLinks::Output>
APIProtocol::importGoogleLinks(JSONBody<Components::Schemas::ClaimLinksDTO> body) {
    return importGoogleLinks(Operations::importGoogleLinks::Input(std::move(body)));
}

platform::Task<Operations::importGoogleLinks::Output>
APIProtocol::importGoogleLinks(AcceptHeaders headers, JSONBody<Components::Schemas::ClaimLinksDTO> body) {
    return importGoogleLinks(Operations::importGoogleLinks::Input(std::move(headers), std::move(body)));
}

// --- updateLink

platform::Task<Operations::updateLink::Output> Client::updateLink(Operations::updateLink::Input input) {
    return detail::call<Operations::updateLink::Output>(
        *client_, {Operations::updateLink::id, HTTPTypes::HTTPRequest::Method::put, "/links/{}"}, std::move(input)
    );
}

platform::Task<Operations::updateLink::Output>
APIProtocol::updateLink(Operations::updateLink::Path path, JSONBody<Components::Schemas::EditLinkDTO> body) {
    return updateLink(Operations::updateLink::Input(std::move(path), std::move(body)));
}

platform::Task<Operations::updateLink::Output> APIProtocol::updateLink(
    Operations::updateLink::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::EditLinkDTO> body
) {
    return updateLink(Operations::updateLink::Input(std::move(path), std::move(headers), std::move(body)));
}

// --- deleteLink

platform::Task<Operations::deleteLink::Output> Client::deleteLink(Operations::deleteLink::Input input) {
    return detail::call<Operations::deleteLink::Output>(
        *client_, {Operations::deleteLink::id, HTTPTypes::HTTPRequest::Method::_delete, "/links/{}"}, std::move(input)
    );
}

platform::Task<Operations::deleteLink::Output> APIProtocol::deleteLink(Operations::deleteLink::Path path) {
    return deleteLink(Operations::deleteLink::Input(std::move(path)));
}

platform::Task<Operations::deleteLink::Output>
APIProtocol::deleteLink(Operations::deleteLink::Path path, AcceptHeaders headers) {
    return deleteLink(Operations::deleteLink::Input(std::move(path), std::move(headers)));
}

// --- claimLegacyLinks

platform::Task<Operations::claimLegacyLinks::Output> Client::claimLegacyLinks(Operations::claimLegacyLinks::Input input
) {
    return detail::call<Operations::claimLegacyLinks::Output>(
        *client_,
        {Operations::claimLegacyLinks::id, HTTPTypes::HTTPRequest::Method::post, "/links/claim"},
        std::move(input)
    );
}

platform::Task<Operations::claimLegacyLinks::Output>
APIProtocol::claimLegacyLinks(JSONBody<Components::Schemas::ClaimLinksDTO> body) {
    return claimLegacyLinks(Operations::claimLegacyLinks::Input(std::move(body)));
}

platform::Task<Operations::claimLegacyLinks::Output>
APIProtocol::claimLegacyLinks(AcceptHeaders headers, JSONBody<Components::Schemas::ClaimLinksDTO> body) {
    return claimLegacyLinks(Operations::claimLegacyLinks::Input(std::move(headers), std::move(body)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getLinkHistory::Output&);
template void detail::failExpecting(std::string_view, const Operations::createLink::Output&);
template void detail::failExpecting(std::string_view, const Operations::createAnonymousLink::Output&);
template void detail::failExpecting(std::string_view, const Operations::createBulkLinks::Output&);
template void detail::failExpecting(std::string_view, const Operations::importGoogleLinks::Output&);
template void detail::failExpecting(std::string_view, const Operations::updateLink::Output&);
template void detail::failExpecting(std::string_view, const Operations::deleteLink::Output&);
template void detail::failExpecting(std::string_view, const Operations::claimLegacyLinks::Output&);

} // namespace QuillbeamAPI::inline v1
