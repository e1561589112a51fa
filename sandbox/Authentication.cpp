#include "sandbox/Authentication.hpp"

#include "sandbox/Identifiers.hpp"
#include "sandbox/Problem.hpp"

#include <algorithm>
#include <utility>

namespace sandbox {

namespace {

// RFC 6750, section 2.1; the scheme's name has no case (RFC 9110, section 11.1).
std::string bearerKey(const Request& request) {
    constexpr std::string_view scheme = "bearer ";
    const std::string header = request.header("authorization").value_or("");
    const auto sameLetter = [](char left, char right) { return (left | 0x20) == (right | 0x20); };
    if (header.size() < scheme.size() || !std::equal(scheme.begin(), scheme.end(), header.begin(), sameLetter)) {
        throw Problem::unauthorized("An API key is required: send it as \"Authorization: Bearer KEY\".");
    }
    const std::size_t start = header.find_first_not_of(' ', scheme.size());
    return start == std::string::npos ? std::string() : header.substr(start);
}

Account authenticate(Session& database, const Request& request) {
    const std::string key = bearerKey(request);
    const auto row = database.first("SELECT account_id FROM api_keys WHERE key = ?", {key});
    if (!row) throw Problem::unauthorized("The API key is not known.");
    database.execute("UPDATE api_keys SET last_used_at = strftime('%Y-%m-%dT%H:%M:%fZ') WHERE key = ?", {key});
    return Account{row->text(0)};
}

} // namespace

Handler withAccount(AccountHandler handler) {
    return [handler = std::move(handler)](Session& database, const Request& request) {
        return handler(database, request, authenticate(database, request));
    };
}

NewAccount addAccount(Session& database, const std::string& keyName) {
    NewAccount account{makeIdentifier("acc"), makeIdentifier("qb", 20)};
    database.execute(
        "INSERT INTO accounts (id, email) VALUES (?, ?)", {account.id, account.id + "@users.quillbeam.example"}
    );
    database.execute(
        "INSERT INTO api_keys (id, account_id, key, name) VALUES (?, ?, ?, ?)",
        {makeIdentifier("key"), account.id, account.key, keyName}
    );
    return account;
}

std::optional<std::string> firstKey(Session& database) {
    const auto row = database.first(
        "SELECT key FROM api_keys WHERE account_id = (SELECT id FROM accounts ORDER BY rowid LIMIT 1) ORDER BY sequence"
    );
    if (!row) return std::nullopt;
    return row->text(0);
}

} // namespace sandbox
