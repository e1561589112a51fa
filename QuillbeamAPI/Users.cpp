#include "QuillbeamAPI/Users.hpp"

#include "QuillbeamAPI/Client.hpp"
#include "QuillbeamAPI/detail/Call.hpp"
#include "platform/coding/Fields.hpp"

#include <utility>

namespace QuillbeamAPI::inline v1 {

namespace Components::Schemas {

const platform::RecordFields& AccountPortalDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table("AccountPortalDTO", field("url", &AccountPortalDTO::url));
    return table;
}

const platform::RecordFields& TierUsageDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "TierUsageDTO",
        field("linksCreated", &TierUsageDTO::linksCreated),
        field("clicksTracked", &TierUsageDTO::clicksTracked),
        field("linkLimit", &TierUsageDTO::linkLimit),
        field("clickLimit", &TierUsageDTO::clickLimit)
    );
    return table;
}

const platform::RecordFields& UserInfoDTO::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "UserInfoDTO",
        field("email", &UserInfoDTO::email),
        field("firstName", &UserInfoDTO::firstName),
        field("lastName", &UserInfoDTO::lastName)
    );
    return table;
}

} // namespace Components::Schemas

namespace Operations {

const platform::RecordFields& getAccountPortal::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table(
        "getAccountPortal.Input", field("headers", &getAccountPortal::Input::headers)
    );
    return table;
}

const platform::RecordFields& getTierUsage::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table("getTierUsage.Input", field("headers", &getTierUsage::Input::headers));
    return table;
}

const platform::RecordFields& getUserInfo::Input::recordFields() {
    using platform::field;
    static const platform::RecordTable table("getUserInfo.Input", field("headers", &getUserInfo::Input::headers));
    return table;
}

} // namespace Operations

// --- getAccountPortal

platform::Task<Operations::getAccountPortal::Output> Client::getAccountPortal(Operations::getAccountPortal::Input input
) {
    return detail::call<Operations::getAccountPortal::Output>(
        *client_,
        {Operations::getAccountPortal::id, HTTPTypes::HTTPRequest::Method::get, "/users/account-portal"},
        std::move(input)
    );
}

platform::Task<Operations::getAccountPortal::Output> APIProtocol::getAccountPortal() {
    return getAccountPortal(Operations::getAccountPortal::Input());
}

platform::Task<Operations::getAccountPortal::Output> APIProtocol::getAccountPortal(AcceptHeaders headers) {
    return getAccountPortal(Operations::getAccountPortal::Input(std::move(headers)));
}

// --- getTierUsage

platform::Task<Operations::getTierUsage::Output> Client::getTierUsage(Operations::getTierUsage::Input input) {
    return detail::call<Operations::getTierUsage::Output>(
        *client_, {Operations::getTierUsage::id, HTTPTypes::HTTPRequest::Method::get, "/users/tier"}, std::move(input)
    );
}

platform::Task<Operations::getTierUsage::Output> APIProtocol::getTierUsage() {
    return getTierUsage(Operations::getTierUsage::Input());
}

platform::Task<Operations::getTierUsage::Output> APIProtocol::getTierUsage(AcceptHeaders headers) {
    return getTierUsage(Operations::getTierUsage::Input(std::move(headers)));
}

// --- getUserInfo

platform::Task<Operations::getUserInfo::Output> Client::getUserInfo(Operations::getUserInfo::Input input) {
    return detail::call<Operations::getUserInfo::Output>(
        *client_, {Operations::getUserInfo::id, HTTPTypes::HTTPRequest::Method::get, "/users/me"}, std::move(input)
    );
}

platform::Task<Operations::getUserInfo::Output> APIProtocol::getUserInfo() {
    return getUserInfo(Operations::getUserInfo::Input());
}

platform::Task<Operations::getUserInfo::Output> APIProtocol::getUserInfo(AcceptHeaders headers) {
    return getUserInfo(Operations::getUserInfo::Input(std::move(headers)));
}

// --- how the accessors of outputs fail

template void detail::failExpecting(std::string_view, const Operations::getAccountPortal::Output&);
template void detail::failExpecting(std::string_view, const Operations::getTierUsage::Output&);
template void detail::failExpecting(std::string_view, const Operations::getUserInfo::Output&);

} // namespace QuillbeamAPI::inline v1
