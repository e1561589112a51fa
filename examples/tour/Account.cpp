#include "QuillbeamAPI/Users.hpp"
#include "examples/tour/Chapters.hpp"

namespace examples {

Task<void> meetTheAccount(std::shared_ptr<Guide> guide) {
    Report& report = guide->report;
    report.chapter("The account");

    report.step("Ask whose key this is");
    auto user = co_await guide->client.getUserInfo();
    guide->show(Operations::getUserInfo::id, user, 200);
    const UserInfoDTO& info = user.ok().body.json();
    report.detail("email", info.email);
    if (info.firstName || info.lastName) {
        report.detail("name", info.firstName.value_or("") + " " + info.lastName.value_or(""));
    }

    report.step("Ask for the page on which a person changes it");
    auto portal = co_await guide->client.getAccountPortal();
    guide->show(Operations::getAccountPortal::id, portal, 200);
    report.detail("page", portal.ok().body.json().url);
    auto page = co_await guide->browser.visit(HTTPRequest::Method::get, portal.ok().body.json().url);
    report.visit("GET (account page)", page.status, 200);
}

} // namespace examples
