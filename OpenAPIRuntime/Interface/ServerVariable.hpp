#pragma once

#include <cstddef>
#include <functional>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace OpenAPIRuntime::inline v1 {

/// A variable of a server's address: "{name}" in the address stands for `value`.
struct ServerVariable {
    std::string name{};
    std::string value{};
    std::optional<std::vector<std::string>> allowedValues{}; ///< none: any value is allowed

    ServerVariable() = default;

    ServerVariable(
        std::string name_, std::string value_, std::optional<std::vector<std::string>> allowedValues_ = std::nullopt
    )
        : name(std::move(name_))
        , value(std::move(value_))
        , allowedValues(std::move(allowedValues_)) {}

    friend bool operator==(const ServerVariable&, const ServerVariable&) = default;
};

} // namespace OpenAPIRuntime::inline v1

template <>
struct std::hash<OpenAPIRuntime::ServerVariable> {
    std::size_t operator()(const OpenAPIRuntime::ServerVariable& variable) const noexcept {
        const std::hash<std::string> text;
        std::size_t result = text(variable.name) * 31 + text(variable.value);
        if (!variable.allowedValues) return result;
        result = result * 31 + variable.allowedValues->size() + 1;
        for (const auto& value : *variable.allowedValues) {
            result = result * 31 + text(value);
        }
        return result;
    }
};
