#include "QuillbeamAPI/APIKeys.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& CreateApiKeyDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("CreateApiKeyDTO", field("name", &CreateApiKeyDTO::name));
    return table;
}

const platform::RecordFields& APIKeyDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "APIKeyDTO",
        field("id", &APIKeyDTO::id),
        field("key", &APIKeyDTO::key),
        field("name", &APIKeyDTO::name),
        field("createdAt", &APIKeyDTO::createdAt),
        field("lastUsedAt", &APIKeyDTO::lastUsedAt)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getApiKeys::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table("getApiKeys.Input", field("headers", &getApiKeys::Input::headers));
    return table;
}

const platform::RecordFields& createApiKey::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "createApiKey.Input", field("headers", &createApiKey::Input::headers), field("body", &createApiKey::Input::body)
    );
    return table;
}

const platform::RecordFields& deleteApiKey::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &deleteApiKey::Path::id));
    return table;
}

const platform::RecordFields& deleteApiKey::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "deleteApiKey.Input", field("path", &deleteApiKey::Input::path), field("headers", &deleteApiKey::Input::headers)
    );
    return table;
}

} // namespace Operations

// --- getApiKeys

platform::Task<Operations::getApiKeys::Output> Client::getApiKeys(Operations::getApiKeys::Input input) {
    return detail::call<Operations::getApiKeys::Output>(
        *client_, {Operations::getApiKeys::id, HTTPTypes::HTTPRequest::Method::get, "/api-keys"}, std::move(input)
    );
}

platform::Task<Operations::getApiKeys::Output> APIProtocol::getApiKeys() {
    return getApiKeys(Operations::getApiKeys::Input());
}

platform::Task<Operations::getApiKeys::Output> APIProtocol::getApiKeys(AcceptHeaders headers) {
    return getApiKeys(Operations::getApiKeys::Input(std::move(headers)));
}

// --- createApiKey

platform::Task<Operations::createApiKey::Output> Client::createApiKey(Operations::createApiKey::Input input) {
    return detail::call<Operations::createApiKey::Output>(
        *client_, {Operations::createApiKey::id, HTTPTypes::HTTPRequest::Method::post, "/api-keys"}, std::move(input)
    );
}

platform::Task<Operations::createApiKey::Output>
APIProtocol::createApiKey(JSONBody<Components::Schemas::CreateApiKeyDTO> body) {
    return createApiKey(Operations::createApiKey::Input(std::move(body)));
}

platform::Task<Operations::createApiKey::Output>
APIProtocol::createApiKey(AcceptHeaders headers, JSONBody<Components::Schemas::CreateApiKeyDTO> body) {
    return createApiKey(Operations::createApiKey::Input(std::move(headers), std::move(body)));
}

// --- deleteApiKey

platform::Task<Operations::deleteApiKey::Output> Client::deleteApiKey(Operations::deleteApiKey::Input input) {
    return detail::call<Operations::deleteApiKey::Output>(
        *client_,
        {Operations::deleteApiKey::id, HTTPTypes::HTTPRequest::Method::_delete, "/api-keys/{}"},
        std::move(input)
    );
}

platform::Task<Operations::deleteApiKey::Output> APIProtocol::deleteApiKey(Operations::deleteApiKey::Path path) {
    return deleteApiKey(Operations::deleteApiKey::Input(std::move(path)));
}

platform::Task<Operations::deleteApiKey::Output>
APIProtocol::deleteApiKey(Operations::deleteApiKey::Path path, AcceptHeaders headers) {
    return deleteApiKey(Operations::deleteApiKey::Input(std::move(path), std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getApiKeys::Output&);
template void detail::failExpecting(std::string_view, const Operations::createApiKey::Output&);
template void detail::failExpecting(std::string_view, const Operations::deleteApiKey::Output&);

} // namespace QuillbeamAPI::inline v1
