#include "OpenAPIRuntime/Interface/ServerURL.hpp"

#include "OpenAPIRuntime/Errors/RuntimeError.hpp"
#include "platform/ProgrammingError.hpp"

#include <algorithm>
#include <optional>
#include <string>
#include <utility>

namespace OpenAPIRuntime::inline v1 {

platform::URL validatingOpenAPIServerURL(std::string_view text) {
    std::optional<platform::URL> url = platform::URL::make(text);
    if (!url) throw RuntimeError::invalidServerURL(text);
    return std::move(*url);
}

platform::URL validatingOpenAPIServerURL(std::string_view text, const std::vector<ServerVariable>& variables) {
    std::string finished(text);
    for (const auto& variable : variables) {
        const auto& allowed = variable.allowedValues;
        if (allowed && std::find(allowed->begin(), allowed->end(), variable.value) == allowed->end()) {
            throw RuntimeError::invalidServerVariableValue(variable.name, variable.value, *allowed);
        }
        const std::string placeholder = "{" + variable.name + "}";
        for (auto at = finished.find(placeholder); at != std::string::npos;
             at = finished.find(placeholder, at + variable.value.size())) {
            finished.replace(at, placeholder.size(), variable.value);
        }
    }
    return validatingOpenAPIServerURL(finished);
}

platform::URL defaultOpenAPIServerURL() {
    std::optional<platform::URL> url = platform::URL::make("/");
    if (!url) platform::stopOnProgrammingError("The default server URL \"/\" is no URL.");
    return std::move(*url);
}

} // namespace OpenAPIRuntime::inline v1
