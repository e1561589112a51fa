#pragma once

#include "sandbox/Router.hpp"

#include <functional>
#include <optional>
#include <string>

namespace sandbox {

/// Whose data a request works on.
struct Account {
    std::string id;
};

using AccountHandler = std::function<Response(Session&, const Request&, const Account&)>;

/// A handler for callers with a key: answers 401 before it looks at anything else of the request.
Handler withAccount(AccountHandler handler);

/// A key just made: nothing but this tells it in full again.
struct NewKey {
    std::string id;
    std::string key;
};

NewKey addKey(Session& database, const std::string& account, const std::optional<std::string>& name);

struct NewAccount {
    std::string id;
    std::string key;
};

/// Makes an account with one key.
NewAccount addAccount(Session& database, const std::string& keyName);

/// Has `firstKey` find this key.
void keepClearText(Session& database, const std::string& key);

/// The key that was made with the database, if it has not been deleted.
std::optional<std::string> firstKey(Session& database);

} // namespace sandbox
