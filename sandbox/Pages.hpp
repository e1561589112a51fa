#pragma once

#include "sandbox/Database.hpp"
#include "sandbox/Messages.hpp"

#include <optional>
#include <string>

namespace sandbox {

/// A web page for a person. Who knows its address may use it: an unguessable token in it stands for the account's key.
struct Page {
    std::string token;
    std::string account;

    /// Where the person came from: "app", "webOnboarding" or "webManage".
    std::optional<std::string> redirect;

    /// What a checkout is about.
    std::optional<std::string> priceID;

    bool isDone = false;
};

/// Makes a page of a kind, which is also the first segment of its path.
/// @return its address.
std::string openPage(
    Session& database,
    const Request& request,
    const std::string& kind,
    const std::string& account,
    const std::optional<std::string>& redirect = std::nullopt,
    const std::optional<std::string>& priceID = std::nullopt
);

/// The page of the kind whose token is the request's first parameter.
/// @throws Problem with status 404 if there is none.
Page requirePage(Session& database, const Request& request, const std::string& kind);

/// @param body HTML; what comes from elsewhere in it must be `escaped`.
Response htmlResponse(const std::string& title, const std::string& body);

/// After a form was sent: has the browser load the page of the same path, so that a reload sends nothing twice.
Response seeSamePage(const Request& request);

/// Text for HTML and for its quoted attributes.
std::string escaped(const std::string& text);

} // namespace sandbox
