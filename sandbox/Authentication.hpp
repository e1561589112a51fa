#pragma once

#include "sandbox/Router.hpp"

#include <functional>
#include <string>

namespace sandbox {

/// Whose data a request works on.
struct Account {
    std::string id;
};

using AccountHandler = std::function<Response(Session&, const Request&, const Account&)>;

/// A handler for callers with a key: answers 401 before it looks at anything else of the request.
Handler withAccount(AccountHandler handler);

struct NewAccount {
    std::string id;
    std::string key;
};

/// Makes an account with one key.
NewAccount addAccount(Session& database, const std::string& keyName);

/// The oldest key of the oldest account, if it has not been deleted.
std::optional<std::string> firstKey(Session& database);

} // namespace sandbox
