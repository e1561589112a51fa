#pragma once

#include "OpenAPIRuntime/Interface/ServerVariable.hpp"
#include "platform/Export.hpp"
#include "platform/url/URL.hpp"

#include <string_view>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// The server's address that `text` tells.
/// @throws RuntimeError (invalidServerURL) where `text` is no URL
[[nodiscard]] QUILLBEAM_EXPORT platform::URL validatingOpenAPIServerURL(std::string_view text);

/// The same after every "{name}" in `text` has been replaced by the value of the variable of that name. A variable that
/// the text does not name is checked all the same; a name without a variable stays in the text.
/// @throws RuntimeError (invalidServerVariableValue) for the first variable whose value is not among its allowed ones;
///         (invalidServerURL) where the finished text is no URL
[[nodiscard]] QUILLBEAM_EXPORT platform::URL
validatingOpenAPIServerURL(std::string_view text, const std::vector<ServerVariable>& variables);

/// The address of a service whose definition names no server: "/".
[[nodiscard]] QUILLBEAM_EXPORT platform::URL defaultOpenAPIServerURL();

} // namespace OpenAPIRuntime::inline v1
