#include "QuillbeamAPI/Domains.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& DNSRecordName::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "DNSRecordName", field("name", &DNSRecordName::name), field("subdomain", &DNSRecordName::subdomain)
    );
    return table;
}

const platform::RecordFields& DNSRecord::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "DNSRecord",
        field("name", &DNSRecord::name),
        field("type", &DNSRecord::_type, "_type"),
        field("value", &DNSRecord::value)
    );
    return table;
}

const platform::RecordFields& CustomDomainMetadata::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "CustomDomainMetadata",
        field("redirectUrl", &CustomDomainMetadata::redirectUrl),
        field("status", &CustomDomainMetadata::status),
        field("dnsRecords", &CustomDomainMetadata::dnsRecords),
        field("verificationErrors", &CustomDomainMetadata::verificationErrors)
    );
    return table;
}

const platform::RecordFields& DomainDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "DomainDTO",
        field("id", &DomainDTO::id),
        field("name", &DomainDTO::name),
        field("customDomainMetadata", &DomainDTO::customDomainMetadata)
    );
    return table;
}

const platform::RecordFields& DomainListDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("DomainListDTO", field("domains", &DomainListDTO::domains));
    return table;
}

const platform::RecordFields& DomainResponseDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "DomainResponseDTO", field("ready", &DomainResponseDTO::ready), field("domain", &DomainResponseDTO::domain)
    );
    return table;
}

const platform::RecordFields& CreateDomainDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("CreateDomainDTO", field("name", &CreateDomainDTO::name));
    return table;
}

const platform::RecordFields& UpdateDomainDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("UpdateDomainDTO", field("redirectUrl", &UpdateDomainDTO::redirectUrl));
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getDomains::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table("getDomains.Input", field("headers", &getDomains::Input::headers));
    return table;
}

const platform::RecordFields& createDomain::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "createDomain.Input", field("headers", &createDomain::Input::headers), field("body", &createDomain::Input::body)
    );
    return table;
}

const platform::RecordFields& getDomain::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &getDomain::Path::id));
    return table;
}

const platform::RecordFields& getDomain::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getDomain.Input", field("path", &getDomain::Input::path), field("headers", &getDomain::Input::headers)
    );
    return table;
}

const platform::RecordFields& updateDomain::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &updateDomain::Path::id));
    return table;
}

const platform::RecordFields& updateDomain::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "updateDomain.Input",
        field("path", &updateDomain::Input::path),
        field("headers", &updateDomain::Input::headers),
        field("body", &updateDomain::Input::body)
    );
    return table;
}

const platform::RecordFields& deleteDomain::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &deleteDomain::Path::id));
    return table;
}

const platform::RecordFields& deleteDomain::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "deleteDomain.Input", field("path", &deleteDomain::Input::path), field("headers", &deleteDomain::Input::headers)
    );
    return table;
}

} // namespace Operations

// --- getDomains

platform::Task<Operations::getDomains::Output> Client::getDomains(Operations::getDomains::Input input) {
    return detail::call<Operations::getDomains::Output>(
        *client_, {Operations::getDomains::id, HTTPTypes::HTTPRequest::Method::get, "/domains"}, std::move(input)
    );
}

platform::Task<Operations::getDomains::Output> APIProtocol::getDomains() {
    return getDomains(Operations::getDomains::Input());
}

platform::Task<Operations::getDomains::Output> APIProtocol::getDomains(AcceptHeaders headers) {
    return getDomains(Operations::getDomains::Input(std::move(headers)));
}

// --- createDomain

platform::Task<Operations::createDomain::Output> Client::createDomain(Operations::createDomain::Input input) {
    return detail::call<Operations::createDomain::Output>(
        *client_, {Operations::createDomain::id, HTTPTypes::HTTPRequest::Method::post, "/domains"}, std::move(input)
    );
}

platform::Task<Operations::createDomain::Output>
APIProtocol::createDomain(JSONBody<Components::Schemas::CreateDomainDTO> body) {
    return createDomain(Operations::createDomain::Input(std::move(body)));
}

platform::Task<Operations::createDomain::Output>
APIProtocol::createDomain(AcceptHeaders headers, JSONBody<Components::Schemas::CreateDomainDTO> body) {
    return createDomain(Operations::createDomain::Input(std::move(headers), std::move(body)));
}

// --- getDomain

platform::Task<Operations::getDomain::Output> Client::getDomain(Operations::getDomain::Input input) {
    return detail::call<Operations::getDomain::Output>(
        *client_, {Operations::getDomain::id, HTTPTypes::HTTPRequest::Method::get, "/domains/{}"}, std::move(input)
    );
}

platform::Task<Operations::getDomain::Output> APIProtocol::getDomain(Operations::getDomain::Path path) {
    return getDomain(Operations::getDomain::Input(std::move(path)));
}

platform::Task<Operations::getDomain::Output>
APIProtocol::getDomain(Operations::getDomain::Path path, AcceptHeaders headers) {
    return getDomain(Operations::getDomain::Input(std::move(path), std::move(headers)));
}

// --- updateDomain

platform::Task<Operations::updateDomain::Output> Client::updateDomain(Operations::updateDomain::Input input) {
    return detail::call<Operations::updateDomain::Output>(
        *client_, {Operations::updateDomain::id, HTTPTypes::HTTPRequest::Method::put, "/domains/{}"}, std::move(input)
    );
}

platform::Task<Operations::updateDomain::Output>
APIProtocol::updateDomain(Operations::updateDomain::Path path, JSONBody<Components::Schemas::UpdateDomainDTO> body) {
    return updateDomain(Operations::updateDomain::Input(std::move(path), std::move(body)));
}

platform::Task<Operations::updateDomain::Output> APIProtocol::updateDomain(
    Operations::updateDomain::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::UpdateDomainDTO> body
) {
    return updateDomain(Operations::updateDomain::Input(std::move(path), std::move(headers), std::move(body)));
}

// --- deleteDomain

platform::Task<Operations::deleteDomain::Output> Client::deleteDomain(Operations::deleteDomain::Input input) {
    return detail::call<Operations::deleteDomain::Output>(
        *client_,
        {Operations::deleteDomain::id, HTTPTypes::HTTPRequest::Method::_delete, "/domains/{}"},
        std::move(input)
    );
}

platform::Task<Operations::deleteDomain::Output> APIProtocol::deleteDomain(Operations::deleteDomain::Path path) {
    return deleteDomain(Operations::deleteDomain::Input(std::move(path)));
}

platform::Task<Operations::deleteDomain::Output>
APIProtocol::deleteDomain(Operations::deleteDomain::Path path, AcceptHeaders headers) {
    return deleteDomain(Operations::deleteDomain::Input(std::move(path), std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getDomains::Output&);
template void detail::failExpecting(std::string_view, const Operations::createDomain::Output&);
template void detail::failExpecting(std::string_view, const Operations::getDomain::Output&);
template void detail::failExpecting(std::string_view, const Operations::updateDomain::Output&);
template void detail::failExpecting(std::string_view, const Operations::deleteDomain::Output&);

} // namespace QuillbeamAPI::inline v1
