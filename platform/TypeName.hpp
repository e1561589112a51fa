#pragma once

#include "platform/Export.hpp"

#include <string>
#include <typeinfo>

namespace platform::inline v1 {

/// The name of a type as its source spells it, with its namespaces; the implementation's own spelling where that cannot
/// be told.
[[nodiscard]] QUILLBEAM_EXPORT std::string typeName(const std::type_info& type);

/// The name of a type without the namespaces and classes it stands in: "Logger" for `app::net::Logger`. The arguments
/// of a template keep theirs.
[[nodiscard]] QUILLBEAM_EXPORT std::string unqualifiedTypeName(const std::type_info& type);

} // namespace platform::inline v1
