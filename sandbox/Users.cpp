#include "sandbox/Users.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Pages.hpp"
#include "sandbox/Plan.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

namespace {

constexpr const char* pageKind = "account";

struct User {
    std::string email;
    std::optional<std::string> firstName;
    std::optional<std::string> lastName;
};

User userOf(Session& database, const std::string& account) {
    const auto row = database.first("SELECT email, first_name, last_name FROM accounts WHERE id = ?", {account});
    return User{row->text(0), row->optionalText(1), row->optionalText(2)};
}

Response getUserInfo(Session& database, const Request&, const Account& account) {
    const User user = userOf(database, account.id);
    Json body{{"email", user.email}};
    if (user.firstName) body["firstName"] = *user.firstName;
    if (user.lastName) body["lastName"] = *user.lastName;
    return Response::json(200, body);
}

Response getTierUsage(Session& database, const Request&, const Account& account) {
    const Usage usage = usageOf(database, account.id);
    const Limits limits = limitsOf(database, account.id);
    return Response::json(
        200,
        {{"linksCreated", usage.links},
         {"clicksTracked", usage.clicks},
         {"linkLimit", limits.links},
         {"clickLimit", limits.clicks}}
    );
}

Response getAccountPortal(Session& database, const Request& request, const Account& account) {
    return Response::json(200, {{"url", openPage(database, request, pageKind, account.id)}});
}

std::string formField(const char* label, const char* name, const std::string& value) {
    return std::string("<label>") + label + "<br><input name=\"" + name + "\" value=\"" + escaped(value) +
           "\"></label>\n";
}

Response showAccount(Session& database, const Request& request) {
    const User user = userOf(database, requirePage(database, request, pageKind).account);
    return htmlResponse(
        "Your account",
        "<form method=\"post\">\n" + formField("E-mail", "email", user.email) +
            formField("First name", "firstName", user.firstName.value_or("")) +
            formField("Last name", "lastName", user.lastName.value_or("")) + "<p><button>Save</button></p></form>\n"
    );
}

// A field that is left empty has no value; one that is not sent stays as it is.
Response changeAccount(Session& database, const Request& request) {
    const std::string account = requirePage(database, request, pageKind).account;
    User user = userOf(database, account);
    const auto field = [&request](const char* name, std::optional<std::string> current) {
        const auto sent = request.queryText(name);
        if (!sent) return current;
        return sent->empty() ? std::nullopt : sent;
    };
    user.email = field("email", user.email).value_or("");
    if (user.email.find('@') == std::string::npos) throw Problem::badRequest("An e-mail address is required.");
    database.execute(
        "UPDATE accounts SET email = ?, first_name = ?, last_name = ? WHERE id = ?",
        {user.email, valueOf(field("firstName", user.firstName)), valueOf(field("lastName", user.lastName)), account}
    );
    return seeSamePage(request);
}

} // namespace

void addUserRoutes(Router& router) {
    router.add("GET", "/users/me", withAccount(getUserInfo));
    router.add("GET", "/users/tier", withAccount(getTierUsage));
    router.add("GET", "/users/account-portal", withAccount(getAccountPortal));
    router.add("GET", "/account/{}", showAccount);
    router.add("POST", "/account/{}", changeAccount);
}

} // namespace sandbox
