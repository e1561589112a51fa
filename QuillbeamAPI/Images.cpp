#include "QuillbeamAPI/Images.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& ImageUploadResponse::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "ImageUploadResponse",
        field("uploadUrl", &ImageUploadResponse::uploadUrl),
        field("publicUrl", &ImageUploadResponse::publicUrl)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getSocialCardUploadUrl::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getSocialCardUploadUrl.Input", field("headers", &getSocialCardUploadUrl::Input::headers)
    );
    return table;
}

} // namespace Operations

// --- getSocialCardUploadUrl

platform::Task<Operations::getSocialCardUploadUrl::Output>
Client::getSocialCardUploadUrl(Operations::getSocialCardUploadUrl::Input input) {
    return detail::call<Operations::getSocialCardUploadUrl::Output>(
        *client_,
        {Operations::getSocialCardUploadUrl::id, HTTPTypes::HTTPRequest::Method::post, "/images/social-card"},
        std::move(input)
    );
}

platform::Task<Operations::getSocialCardUploadUrl::Output> APIProtocol::getSocialCardUploadUrl() {
    return getSocialCardUploadUrl(Operations::getSocialCardUploadUrl::Input());
}

platform::Task<Operations::getSocialCardUploadUrl::Output> APIProtocol::getSocialCardUploadUrl(AcceptHeaders headers) {
    return getSocialCardUploadUrl(Operations::getSocialCardUploadUrl::Input(std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getSocialCardUploadUrl::Output&);

} // namespace QuillbeamAPI::inline v1
