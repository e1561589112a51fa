#include "QuillbeamAPI/Tags.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& TagDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("TagDTO", field("id", &TagDTO::id), field("name", &TagDTO::name));
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getTags::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table("getTags.Input", field("headers", &getTags::Input::headers));
    return table;
}

const platform::RecordFields& updateTag::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &updateTag::Path::id));
    return table;
}

const platform::RecordFields& updateTag::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "updateTag.Input",
        field("path", &updateTag::Input::path),
        field("headers", &updateTag::Input::headers),
        field("body", &updateTag::Input::body)
    );
    return table;
}

const platform::RecordFields& removeTag::Path::recordFields() {
    using platform::field;
    static const platform::RecordTable table("Path", field("id", &removeTag::Path::id));
    return table;
}

const platform::RecordFields& removeTag::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "removeTag.Input", field("path", &removeTag::Input::path), field("headers", &removeTag::Input::headers)
    );
    return table;
}

} // namespace Operations

// --- getTags

platform::Task<Operations::getTags::Output> Client::getTags(Operations::getTags::Input input) {
    return detail::call<Operations::getTags::Output>(
        *client_, {Operations::getTags::id, HTTPTypes::HTTPRequest::Method::get, "/tags"}, std::move(input)
    );
}

platform::Task<Operations::getTags::Output> APIProtocol::getTags() {
    return getTags(Operations::getTags::Input());
}

platform::Task<Operations::getTags::Output> APIProtocol::getTags(AcceptHeaders headers) {
    return getTags(Operations::getTags::Input(std::move(headers)));
}

// --- updateTag

platform::Task<Operations::updateTag::Output> Client::updateTag(Operations::updateTag::Input input) {
    return detail::call<Operations::updateTag::Output>(
        *client_, {Operations::updateTag::id, HTTPTypes::HTTPRequest::Method::put, "/tags/{}"}, std::move(input)
    );
}

platform::Task<Operations::updateTag::Output>
APIProtocol::updateTag(Operations::updateTag::Path path, JSONBody<Components::Schemas::TagDTO> body) {
    return updateTag(Operations::updateTag::Input(std::move(path), std::move(body)));
}

platform::Task<Operations::updateTag::Output> APIProtocol::updateTag(
    Operations::updateTag::Path path, AcceptHeaders headers, JSONBody<Components::Schemas::TagDTO> body
) {
    return updateTag(Operations::updateTag::Input(std::move(path), std::move(headers), std::move(body)));
}

// --- removeTag

platform::Task<Operations::removeTag::Output> Client::removeTag(Operations::removeTag::Input input) {
    return detail::call<Operations::removeTag::Output>(
        *client_, {Operations::removeTag::id, HTTPTypes::HTTPRequest::Method::_delete, "/tags/{}"}, std::move(input)
    );
}

platform::Task<Operations::removeTag::Output> APIProtocol::removeTag(Operations::removeTag::Path path) {
    return removeTag(Operations::removeTag::Input(std::move(path)));
}

platform::Task<Operations::removeTag::Output>
APIProtocol::removeTag(Operations::removeTag::Path path, AcceptHeaders headers) {
    return removeTag(Operations::removeTag::Input(std::move(path), std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getTags::Output&);
template void detail::failExpecting(std::string_view, const Operations::updateTag::Output&);
template void detail::failExpecting(std::string_view, const Operations::removeTag::Output&);

} // namespace QuillbeamAPI::inline v1
