#pragma once

#include "sandbox/Database.hpp"

namespace sandbox {

/// Makes the tables, the built-in domain and a first account with a key, each unless it exists.
/// @throws DatabaseError if the file holds another program's data or that of a newer sandbox.
void prepareSchema(Session& database);

} // namespace sandbox
