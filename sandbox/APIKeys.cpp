#include "sandbox/APIKeys.hpp"

#include "sandbox/Authentication.hpp"
#include "sandbox/Body.hpp"
#include "sandbox/Problem.hpp"

#include <nlohmann/json.hpp>

namespace sandbox {

namespace {

#define KEY_COLUMNS "id, hint, name, created_at, last_used_at"

// With the key's hint in the place of the key, of which only a digest is kept.
Json keyBody(const Row& row) {
    Json body{{"id", row.text(0)}, {"key", row.text(1)}};
    if (const auto name = row.optionalText(2)) body["name"] = *name;
    body["createdAt"] = row.text(3);
    if (const auto lastUsedAt = row.optionalText(4)) body["lastUsedAt"] = *lastUsedAt;
    return body;
}

Response getKeys(Session& database, const Request&, const Account& account) {
    Json bodies = Json::array();
    for (const Row& row :
         database.rows("SELECT " KEY_COLUMNS " FROM api_keys WHERE account_id = ? ORDER BY sequence", {account.id})) {
        bodies.push_back(keyBody(row));
    }
    return Response::json(200, bodies);
}

Response createKey(Session& database, const Request& request, const Account& account) {
    const NewKey key = addKey(database, account.id, Body(request).optionalText("name"));
    Json body = keyBody(*database.first("SELECT " KEY_COLUMNS " FROM api_keys WHERE id = ?", {key.id}));
    body["key"] = key.key;
    return Response::json(201, body);
}

Response deleteKey(Session& database, const Request& request, const Account& account) {
    const std::string& id = request.parameters.at(0);
    if (database.execute("DELETE FROM api_keys WHERE id = ? AND account_id = ?", {id, account.id}) == 0) {
        throw Problem::notFound("There is no API key with the id \"" + id + "\".");
    }
    return Response::empty(200);
}

} // namespace

void addAPIKeyRoutes(Router& router) {
    router.add("GET", "/api-keys", withAccount(getKeys));
    router.add("POST", "/api-keys", withAccount(createKey));
    router.add("DELETE", "/api-keys/{}", withAccount(deleteKey));
}

} // namespace sandbox
